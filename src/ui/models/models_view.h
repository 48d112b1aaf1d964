// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_section.h"

#include <QWidget>

class QLabel;
class QLineEdit;
class QProgressBar;
class QPushButton;

namespace velun {

class ModelFiles;
class NoticeLabel;

/// The settings page "Languages & Models": a search field, one section per list of models, the disk
/// space that all models take, and the button that adds a model from a file. Main thread.
class ModelsView final : public QWidget {
  Q_OBJECT

 public:
  /// `lists` and `files` must outlive the view.
  ModelsView(const std::vector<ModelList*>& lists, ModelFiles& files, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void addSections(const std::vector<ModelList*>& lists);
  QLayout* makeFooter();
  void translate();
  void showFiles();
  void search();
  void updateTabOrder();

  ModelFiles& files_;
  QLineEdit* search_;
  QLabel* nothingFound_;
  std::vector<ModelSection*> sections_;
  NoticeLabel* outcome_;
  QProgressBar* progress_;
  QLabel* diskUse_;
  QPushButton* add_;
};

}  // namespace velun
