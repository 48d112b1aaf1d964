// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QWidget>

namespace velun {

/// An ordinary window of a given content size around one view; Escape does nothing, closing hides
/// it. Stands in the middle of the screen when it is first shown, unless it was placed before.
class TitledWindow final : public QWidget {
  Q_OBJECT

 public:
  /// A window that is not resizable keeps `size`; it is larger only where the view's texts need
  /// more, as with large fonts. Both kinds are clamped to what a title bar leaves of the
  /// screen.
  TitledWindow(std::unique_ptr<QWidget> view, QSize size, bool resizable);

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void fit();

  QWidget* view_;
  QSize size_;
  bool resizable_;
  bool placed_ = false;
};

}  // namespace velun
