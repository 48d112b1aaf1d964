// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QWidget>

namespace velun {

/// An ordinary window with a given content size around one view. Ctrl+W closes it, Escape only one
/// that is not resizable, which is used like a dialogue; closing hides it. Centred on the screen
/// when first shown, unless it was positioned before.
class TitledWindow final : public QWidget {
  Q_OBJECT

 public:
  /// A window that is not resizable keeps `size`, or grows to fit the view's texts, for example
  /// with large fonts. Every window is limited to the screen's size without a title bar.
  TitledWindow(std::unique_ptr<QWidget> view, QSize size, bool resizable);

 protected:
  bool event(QEvent* event) override;
  void showEvent(QShowEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fit();

  QWidget* view_;
  QSize size_;
  bool resizable_;
  bool placed_ = false;
};

}  // namespace velun
