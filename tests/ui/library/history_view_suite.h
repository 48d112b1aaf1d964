// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "support/manual_clock.h"
#include "support/session_samples.h"
#include "support/suite.h"
#include "ui/caption/selectable_transcript_text_view.h"
#include "ui/caption/transcript_view.h"
#include "ui/library/empty_state_view.h"
#include "ui/library/history_view.h"
#include "ui/library/session_detail_view.h"

#include <memory>
#include <QAbstractItemModelTester>
#include <QAction>
#include <QApplication>
#include <QLineEdit>
#include <QListView>
#include <QMenu>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTimer>

namespace velun::test {

/// A saved-sessions view of 960 by 620 on a folder of its own, whose file operations are written
/// to `calls_`.
class HistoryViewSuite : public Suite {
  Q_OBJECT

 protected:
  std::unique_ptr<QTemporaryDir> folder_;
  test::ManualClock clock_;
  std::unique_ptr<AppSettings> settings_;
  std::unique_ptr<HistoryViewModel> library_;
  std::unique_ptr<HistoryView> view_;
  QStringList calls_;
  std::optional<LineRange> selected_;
  QString printed_;
  /// The text that a correction gives a line.
  QString correction_;
  /// The name that is given to speakers.
  QString speaker_;

  /// Writes a session that started `daysAgo` days ago.
  QUrl write(const QString& title, int daysAgo, const QString& text,
             const QString& translation = {}, const QString& language = "ko") {
    CaptionSession session;
    session.title = title;
    session.startedAt = clock_.now() - std::chrono::days(daysAgo);
    Line line;
    line.text = text;
    if (!translation.isEmpty()) line.translations[language] = translation;
    session.lines.push_back(line);
    return write(session);
  }

  QUrl write(const CaptionSession& session) {
    const QString path = folder_->filePath(session.title + ".json");
    QFile file(path);
    if (file.open(QFile::WriteOnly)) file.write(encodeSession(session));
    return QUrl::fromLocalFile(path);
  }

  void reload() {
    QSignalSpy reloaded(library_.get(), &HistoryViewModel::reloaded);
    library_->reload();
    QVERIFY(reloaded.wait());
  }

  QListView* list() const { return view_->findChild<QListView*>("sessions"); }
  QLineEdit* search() const { return view_->findChild<QLineEdit*>("search"); }
  EmptyStateView* emptyList() const { return view_->findChild<EmptyStateView*>("emptyList"); }
  SessionDetailView* detail() const { return view_->findChild<SessionDetailView*>(); }
  QString transcript() const { return detail()->transcript().textView().toPlainText(); }

  QStringList rows() const {
    QStringList texts;
    for (int row = 0; row < list()->model()->rowCount(); ++row) {
      texts.append(list()->model()->index(row, 0).data().toString());
    }
    return texts;
  }

  /// Chooses an entry of a row's context menu; returns the texts of the menu.
  QStringList choose(const QModelIndex& row, int entry) const {
    QStringList offered;
    QTimer::singleShot(0, qApp, [&offered, entry] {
      auto* menu = qobject_cast<QMenu*>(QApplication::activePopupWidget());
      QVERIFY(menu);
      for (const QAction* each : menu->actions()) offered.append(each->text());
      menu->setActiveAction(menu->actions().at(entry));
      QTest::keyClick(menu, Qt::Key_Return);
    });
    QTest::ignoreMessage(QtWarningMsg, "This plugin does not support grabbing the keyboard");
    Q_EMIT list()->customContextMenuRequested(list()->visualRect(row).center());
    return offered;
  }

  QAction* action(const QString& text) const {
    for (QAction* each : view_->findChildren<QAction*>()) {
      if (each->text() == text) return each;
    }
    return nullptr;
  }

 protected Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
    folder_ = std::make_unique<QTemporaryDir>();
    settings_ = std::make_unique<AppSettings>();
    SessionStore store;
    store.directory = QUrl::fromLocalFile(folder_->path());
    library_ = std::make_unique<HistoryViewModel>(
        store, [](const QUrl& url) { QFile::remove(url.toLocalFile()); });
    calls_.clear();
    HistoryActions actions;
    actions.openFile = [this] {
      calls_.append("open");
    };
    actions.saveFile = [this](const CaptionSession& s) {
      calls_.append("save " + s.title);
    };
    actions.revealFile = [this](const QUrl& url) {
      calls_.append("reveal " + url.fileName());
    };
    actions.exportSession = [this](const CaptionSession& s, const std::optional<LineRange>& lines) {
      calls_.append("export " + s.title);
      selected_ = lines;
    };
    actions.openFiles = [this](const QList<QUrl>& urls) {
      for (const QUrl& url : urls) calls_.append("open " + url.fileName());
    };
    actions.deleteSelection = [this](const QList<QUrl>& visible) {
      library_->deleteSelection(visible);
    };
    actions.printSession = [this](const CaptionSession& s, const ExportOptions& options) {
      calls_.append("print " + s.title);
      printed_ = QString::fromUtf8(s.exportAs(options));
    };
    actions.correctLine = [this](const SavedSession& saved, const Line& line) {
      library_->correctLine(saved.url, line, correction_);
    };
    actions.undoCorrection = [this](const SavedSession& saved, const Line& line) {
      library_->correctLine(saved.url, line, line.original.value_or(line.text));
    };
    actions.renameSpeaker = [this](const SavedSession& saved, const Line& line) {
      library_->renameSpeaker(saved.url, *line.speaker, speaker_);
    };
    view_ = std::make_unique<HistoryView>(*library_, *settings_, actions, clock_);
    view_->resize(960, 620);
    view_->show();
    // Checks the model on every change.
    auto* list = view_->findChild<QListView*>("sessions");
    new QAbstractItemModelTester(list->model(),
                                 QAbstractItemModelTester::FailureReportingMode::QtTest, list);
  }
  void cleanup() {
    view_.reset();
    library_.reset();
  }
};

}  // namespace velun::test
