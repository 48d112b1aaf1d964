// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QPointer>
#include <QWidget>

namespace velun {

/// Lets input methods write into a field of a popup of another window. Under Wayland a popup has
/// no keyboard of its own: Qt passes on the keys that its window gets, but input methods only
/// write into the widget that has the focus in that window. This one takes it and hands everything
/// over. It is not seen. Main thread.
class InputMethodRelay final : public QWidget {
  Q_OBJECT

 public:
  /// `field` is in `popup`, which has a parent.
  InputMethodRelay(QWidget& popup, QWidget& field);

  /// Before the popup is shown.
  void begin();
  /// Gives the focus in the window back.
  void end();

 protected:
  void inputMethodEvent(QInputMethodEvent* event) override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;

 private:
  QRect inThisWidget(const QRectF& ofField) const;

  QWidget& popup_;
  QWidget& field_;
  QPointer<QWidget> before_;
};

}  // namespace velun
