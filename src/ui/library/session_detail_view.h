// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "platform/foundation/clock.h"
#include "settings/app_settings.h"

#include <memory>
#include <QWidget>

class QComboBox;
class QGridLayout;
class QLabel;

namespace velun {

class CopyTranscriptButton;
class TranscriptView;
struct SavedSession;

/// One saved session's transcript, with the choice of what of it is shown. Main thread.
class SessionDetailView final : public QWidget {
  Q_OBJECT

 public:
  /// The settings and the clock must outlive the view.
  SessionDetailView(AppSettings& settings, Clock& clock, QWidget* parent = nullptr);
  ~SessionDetailView() override;

  /// Shows a session; null shows none. The chosen content stays, the language returns to all.
  void show(std::shared_ptr<const SavedSession> session);

  /// Marks every place where `text` stands and, when it is a new text or session, brings the first
  /// one into view. An empty text marks nothing.
  void highlight(const QString& text);

  TranscriptContent content() const { return content_; }
  /// The chosen translation language; none is all.
  const std::optional<QString>& language() const { return language_; }
  TranscriptView& transcript() const { return *transcript_; }

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  /// The pickers stand beside each other where there is room for both.
  void arrangeBar();
  void translate();
  void fillContents();
  void fillLanguages();
  void present();
  QString text() const;

  AppSettings& settings_;
  std::shared_ptr<const SavedSession> session_;
  TranscriptContent content_ = TranscriptContent::both;
  std::optional<QString> language_;
  QString highlighted_;
  QGridLayout* bar_;
  QWidget* contentGroup_;
  QWidget* languageGroup_;
  QLabel* contentLabel_;
  QComboBox* contents_;
  QLabel* languageLabel_;
  QComboBox* languages_;
  CopyTranscriptButton* copy_;
  TranscriptView* transcript_;
};

}  // namespace velun
