// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/file_panels.h"

#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace velun {

class CaptionFile;
class SharingSettings;

/// The settings of what other programs get of the captions: the live feed and the caption file.
/// Main thread.
class SharingSection final : public QWidget {
  Q_OBJECT

 public:
  /// `settings` and `file` must outlive the section; `file` may be null.
  SharingSection(SharingSettings& settings, const CaptionFile* file, FilePanels panels);

 private:
  void chooseFile();
  void present();

  SharingSettings& settings_;
  const CaptionFile* file_;
  FilePanels panels_;
  QLabel* heading_;
  QCheckBox* offers_;
  QLabel* offersNote_;
  QLabel* fileLabel_;
  QLabel* path_;
  QPushButton* choose_;
  QPushButton* none_;
  QLabel* fileNote_;
  QLabel* error_;
  QLabel* linesLabel_;
  QComboBox* lines_;
  QLabel* endLabel_;
  QComboBox* end_;
};

}  // namespace velun
