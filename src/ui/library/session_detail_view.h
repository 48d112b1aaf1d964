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
class QTextCursor;

namespace velun {

class CopyTranscriptButton;
class TranscriptView;
struct SavedSession;

/// A saved session's transcript, with choosers for content and language. Main thread.
class SessionDetailView final : public QWidget {
  Q_OBJECT

 public:
  /// `settings` and `clock` must outlive the view.
  SessionDetailView(AppSettings& settings, Clock& clock, QWidget* parent = nullptr);
  ~SessionDetailView() override;

  /// Shows a session; null shows none. Keeps the chosen content and resets the language to all.
  void show(std::shared_ptr<const SavedSession> session);

  /// Highlights every match of `text` and, for a new text or session, scrolls to the first one. An
  /// empty text removes the highlights.
  void highlight(const QString& text);

  /// Scrolls to the next highlighted match, or to the one before. Returns whether there is one.
  bool stepToMatch(bool forward);
  /// Scrolls to the first highlighted match, or to the last one, if there is one.
  void showMatchAtEnd(bool last);

  TranscriptContent content() const { return content_; }
  /// The chosen translation language; nullopt means all.
  const std::optional<QString>& language() const { return language_; }
  TranscriptView& transcript() const { return *transcript_; }

  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showMatch(QTextCursor match);
  /// Puts both choosers into one row where there is room.
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
