// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <functional>
#include <QWidget>

class QComboBox;
class QLabel;
class QPushButton;

namespace velun {

/// The choices of an export: format, content and translation language. Main thread.
class ExportView final : public QWidget {
  Q_OBJECT

 public:
  /// Called with the chosen options; an absent language means all translations.
  using Export = std::function<void(SessionFormat format, TranscriptContent content,
                                    const std::optional<QString>& language)>;

  ExportView(CaptionSession session, std::function<void()> cancel, Export onExport,
             QWidget* parent = nullptr);

 protected:
  void keyPressEvent(QKeyEvent* event) override;

 private:
  void fillChoosers();
  QLabel* addRow(QComboBox* chooser);
  void translate();
  void present();
  SessionFormat format() const;
  TranscriptContent content() const;
  std::optional<QString> language() const;

  CaptionSession session_;
  QComboBox* formats_;
  QComboBox* contents_;
  QComboBox* languages_;
  QLabel* formatLabel_;
  QLabel* contentLabel_;
  QLabel* languageLabel_;
  QLabel* description_;
  QPushButton* cancel_;
  QPushButton* export_;
};

}  // namespace velun
