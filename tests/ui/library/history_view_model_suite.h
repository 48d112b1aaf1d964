// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/failure.h"
#include "support/suite.h"
#include "ui/library/history_view_model.h"

#include <QSignalSpy>
#include <QTemporaryDir>

namespace velun::test {

/// A library in a folder of its own, whose trash can refuse files.
class HistoryViewModelSuite : public Suite {
  Q_OBJECT

 protected:
  std::unique_ptr<QTemporaryDir> folder_;
  std::unique_ptr<HistoryViewModel> library_;
  std::optional<QString> trashRefuses_;

  QString path(const QString& name) const { return folder_->filePath(name); }

  /// Writes a session that started `hour` hours into the day; returns its file.
  QUrl write(const QString& name, int hour) const {
    CaptionSession session;
    session.title = name;
    session.startedAt = Instant(std::chrono::hours(24 * 365 + hour));
    session.lines.push_back({});
    QDir().mkpath(QFileInfo(path(name)).path());
    QFile file(path(name));
    if (!file.open(QFile::WriteOnly)) return {};
    file.write(encodeSession(session));
    return QUrl::fromLocalFile(path(name));
  }

  void reload() {
    QSignalSpy reloaded(library_.get(), &HistoryViewModel::reloaded);
    library_->reload();
    QVERIFY(reloaded.wait());
  }

  /// Opens the files; returns why some could not be read.
  QStringList open(const QList<QUrl>& urls) {
    QSignalSpy opened(library_.get(), &HistoryViewModel::filesOpened);
    library_->open(urls);
    if (!opened.wait()) qFatal("The files were not read");
    return opened[0][1].toStringList();
  }
  QStringList open(const QUrl& url) { return open(QList<QUrl>{url}); }

  QStringList titles() const {
    QStringList titles;
    for (const auto& each : library_->sessions()) titles.append(each->summary.title);
    return titles;
  }

  QList<QUrl> visible() const {
    QList<QUrl> urls;
    for (const auto& each : library_->sessions()) urls.append(each->url);
    return urls;
  }

 protected Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
    folder_ = std::make_unique<QTemporaryDir>();
    QVERIFY(QDir(folder_->path()).mkpath("Sessions"));
    trashRefuses_.reset();
    SessionStore store;
    store.directory = QUrl::fromLocalFile(path("Sessions"));
    library_ = std::make_unique<HistoryViewModel>(store, [this](const QUrl& url) {
      if (trashRefuses_) throw Failure(*trashRefuses_);
      QVERIFY(QFile::remove(url.toLocalFile()));
    });
  }
};

}  // namespace velun::test
