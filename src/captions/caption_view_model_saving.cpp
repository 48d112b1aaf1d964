// SPDX-License-Identifier: GPL-3.0-or-later
// Keeping the session's file.
#include "captions/caption_view_model.h"
#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <exception>
#include <QFileInfo>

namespace velun {

bool CaptionViewModel::persistIfNeeded() {
  return persist(SessionStore::Flush::no);
}

bool CaptionViewModel::persist(SessionStore::Flush flush) {
  if (!isSavingSession_ || lines().empty()) return true;
  try {
    const QUrl url = store_.save(session_, flush, &encoder_);
    assign(savedURL_, url, &CaptionViewModel::savedURLChanged);
    clear(saveError_, &CaptionViewModel::saveErrorChanged);
    return true;
  } catch (const std::exception& error) {
    const QString description = descriptionOf(error);
    const QString message =
        L("Couldn’t save the session: " + description, "기록 저장 실패: " + description);
    assign(saveError_, message, &CaptionViewModel::saveErrorChanged);
    return false;
  }
}

namespace {

/// A file's path with its folder's links resolved; the file itself may be gone.
QString pathInFolder(const QUrl& url) {
  const QFileInfo file(url.toLocalFile());
  return QFileInfo(file.path()).canonicalFilePath() + QLatin1Char('/') + file.fileName();
}

}  // namespace

bool CaptionViewModel::saveCurrentSession() {
  if (lines().empty()) return false;
  assign(isSavingSession_, true, &CaptionViewModel::isSavingSessionChanged);
  return persist(SessionStore::Flush::yes);
}

void CaptionViewModel::savedFileWasDeleted(const QUrl& url) {
  if (!savedURL_ || pathInFolder(*savedURL_) != pathInFolder(url)) return;
  clear(savedURL_, &CaptionViewModel::savedURLChanged);
  assign(isSavingSession_, false, &CaptionViewModel::isSavingSessionChanged);
}

bool CaptionViewModel::hasUnsavedSession() const {
  return !lines().empty() && (!savedURL_ || saveError_);
}

}  // namespace velun
