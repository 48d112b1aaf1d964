// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

class QWidget;

namespace velun {

class PreferenceStore;

/// Remembers the size and the place of an ordinary window, under the window's object name. Owned by
/// the window. Main thread.
class FrameKeeper final : public QObject {
  Q_OBJECT

 public:
  /// Restores the stored frame at once. `frames` must outlive the window.
  FrameKeeper(QWidget& window, PreferenceStore& frames);

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  QWidget& window_;
  PreferenceStore& frames_;
};

}  // namespace velun
