// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QWidget>
#include <vector>

class QGridLayout;
class QKeySequenceEdit;
class QLabel;

namespace velun {

class ShortcutSet;

/// Chooses the keys that work in every window, or says how the desktop can be given such keys where
/// programs cannot have them. Main thread.
class ShortcutsEditor final : public QWidget {
  Q_OBJECT

 public:
  /// `shortcuts` must outlive the editor.
  explicit ShortcutsEditor(ShortcutSet& shortcuts, QWidget* parent = nullptr);

 private:
  struct Line {
    QString id;
    QLabel* label;
    QKeySequenceEdit* keys;
  };

  void addLines(QGridLayout& grid);
  void present();
  QString noteText() const;

  ShortcutSet& shortcuts_;
  QLabel* heading_;
  std::vector<Line> lines_;
  QLabel* note_;
};

}  // namespace velun
