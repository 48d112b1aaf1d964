// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_list.h"

#include <QFrame>

class QLabel;
class QProgressBar;
class QPushButton;

namespace velun {

class NoticeLabel;

/// A card with one model: its facts, the progress of its download, and buttons. Main thread.
class ModelRowView final : public QFrame {
  Q_OBJECT

 public:
  explicit ModelRowView(QWidget* parent = nullptr);

  /// Shows a row. A button that had the keyboard focus keeps it, or passes it to the first one.
  void setRow(const ModelRow& row);

  const std::vector<QPushButton*>& buttons() const { return buttons_; }

 Q_SIGNALS:
  void triggered(ModelAction action);

 protected:
  void changeEvent(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;

 private:
  void setActions(const std::vector<ModelRowAction>& actions);
  void showTexts();
  void showProgress();
  void fade();

  ModelRow row_;
  QLabel* title_;
  QLabel* mark_;
  QLabel* facts_;
  QProgressBar* progress_;
  QLabel* progressText_;
  NoticeLabel* notice_;
  QWidget* bar_;
  std::vector<QPushButton*> buttons_;
};

}  // namespace velun
