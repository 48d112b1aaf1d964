// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <functional>
#include <QWidget>

class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;

namespace velun {

/// The choices of an export: format, content, translation language, times and lines. Main thread.
class ExportView final : public QWidget {
  Q_OBJECT

 public:
  using Export = std::function<void(const ExportOptions& options)>;

  /// `selected` are the lines that may be exported alone; absent: only the whole session may.
  ExportView(CaptionSession session, std::optional<LineRange> selected,
             std::function<void()> cancel, Export onExport, QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fillChoosers();
  QLabel* addRow(QComboBox* chooser);
  void translate();
  void present();
  void presentLanguages();
  ExportOptions options() const;
  SessionFormat format() const;
  TranscriptContent content() const;
  std::optional<QString> language() const;

  CaptionSession session_;
  std::optional<LineRange> selected_;
  QComboBox* formats_;
  QComboBox* contents_;
  QComboBox* languages_;
  QLabel* formatLabel_;
  QLabel* contentLabel_;
  QLabel* languageLabel_;
  QCheckBox* times_;
  QCheckBox* onlySelected_;
  QLabel* description_;
  QPushButton* cancel_;
  QPushButton* export_;
};

}  // namespace velun
