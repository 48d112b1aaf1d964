// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/session_saver.h"

#include "captions/update.h"
#include "language/localization.h"
#include "model/file_error_text.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/file_access.h"

#include <exception>
#include <utility>

namespace velun {

namespace {

QString failureText(const QString& description) {
  return L("Couldn’t save the session: " + description, "기록 저장 실패: " + description);
}

}  // namespace

SessionSaver::SessionSaver(const CaptionSession& session, SessionStore store, bool isSaving,
                           const Clock& clock)
    : session_(session), store_(std::move(store)), isSaving_(isSaving), sync_(clock) {
  connect(&sync_, &SessionSync::failed, this, &SessionSaver::syncFailed);
  connect(&sync_, &SessionSync::succeeded, this, [this] { setFailure(syncFailure_, {}); });
}

bool SessionSaver::hasUnsavedLines() const {
  return !session_.lines.empty() && (!url_ || error());
}

void SessionSaver::reset(bool isSaving) {
  encoder_.reset();
  sync_.endSession();
  setUrl(std::nullopt);
  setFailure(writeFailure_, {});
  setFailure(syncFailure_, {});
  setSaving(isSaving);
}

bool SessionSaver::saveIfNeeded(Sync sync) {
  if (!isSaving_ || session_.lines.empty()) return true;
  try {
    setUrl(store_.save(session_, &encoder_, [this](const QString& path) { sync_.protect(path); }));
    setFailure(writeFailure_, {});
    sync_.fileWritten(sync == Sync::now);
    return true;
  } catch (const std::exception& error) {
    setFailure(writeFailure_, failureText(descriptionOf(error)));
    return false;
  }
}

void SessionSaver::syncFailed(const FileError& error) {
  setFailure(syncFailure_, failureText(fileErrorText(error)));
}

void SessionSaver::setFailure(std::optional<QString>& failure, const std::optional<QString>& text) {
  const std::optional<QString> shown = error();
  failure = text;
  if (error() != shown) Q_EMIT errorChanged();
}

bool SessionSaver::save() {
  if (session_.lines.empty()) return false;
  setSaving(true);
  return saveIfNeeded(Sync::now);
}

void SessionSaver::fileWasDeleted(const QUrl& url) {
  if (!url_ || canonicalPath(*url_) != canonicalPath(url)) return;
  sync_.fileDeleted();
  setFailure(syncFailure_, {});
  const QUrl deleted = *url_;
  setUrl(std::nullopt);
  deletedUrl_ = deleted;
  setSaving(false);
}

void SessionSaver::fileIsBack(const QUrl& url) {
  if (deletedUrl_ && canonicalPath(*deletedUrl_) == canonicalPath(url)) save();
}

void SessionSaver::setSaving(bool isSaving) {
  if (update(isSaving_, isSaving)) Q_EMIT isSavingChanged();
}

void SessionSaver::setUrl(const std::optional<QUrl>& url) {
  deletedUrl_.reset();
  if (update(url_, url)) Q_EMIT urlChanged();
}

}  // namespace velun
