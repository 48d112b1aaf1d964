// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "platform/foundation/clock.h"
#include "settings/app_settings.h"

#include <memory>
#include <QWidget>

class QAction;
class QComboBox;
class QGridLayout;
class QLabel;
class QMenu;
class QStackedWidget;
class QTextCursor;

namespace velun {

class BilingualView;
class CopyTranscriptButton;
class TranscriptView;
struct SavedSession;

/// A saved session's transcript, or its original and translations side by side, with choosers for
/// content and language. Main thread.
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
  /// The line in which the cursor of the transcript is; null without one.
  const Line* currentLine() const;
  /// Copies that line as it is shown.
  void copyCurrentLine();
  /// Added to the menu of a right click on a line.
  void setLineActions(const QList<QAction*>& actions);
  TranscriptView& transcript() const { return *transcript_; }
  bool isSideBySide() const { return isSideBySide_; }
  /// The lines that the selection touches; nullopt without a selection.
  std::optional<LineRange> selectedLines() const;
  /// Opens the bar that searches the transcript. Returns whether there is one.
  bool openFindBar();
  /// Goes to the bar's next or previous match if the bar has the keyboard; whether it has.
  bool stepInFindBar(bool forward);
  /// For a page that shows what is chosen here.
  ExportOptions printOptions() const;

  QSize minimumSizeHint() const override;

 Q_SIGNALS:
  /// The cursor may be in another line.
  void currentLineChanged();
  /// The speaker of the current line was clicked.
  void labelClicked();

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void showMatch(QTextCursor match);
  ExportOptions tableOptions() const;
  /// Puts both choosers into one row where there is room.
  void arrangeBar();
  void translate();
  void fillContents();
  void fillLanguages();
  void present();
  QString text() const;
  void addLineActions(QMenu& menu, const QPoint& position);

  QList<QAction*> lineActions_;
  AppSettings& settings_;
  std::shared_ptr<const SavedSession> session_;
  TranscriptContent content_ = TranscriptContent::both;
  std::optional<QString> language_;
  bool isSideBySide_ = false;
  QString highlighted_;
  QGridLayout* bar_;
  QWidget* contentGroup_;
  QWidget* languageGroup_;
  QLabel* contentLabel_;
  QComboBox* contents_;
  QLabel* languageLabel_;
  QComboBox* languages_;
  CopyTranscriptButton* copy_;
  QStackedWidget* pages_;
  TranscriptView* transcript_;
  BilingualView* table_;
};

}  // namespace velun
