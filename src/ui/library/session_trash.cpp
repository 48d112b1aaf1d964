// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/session_trash.h"

#include "language/localization.h"
#include "model/file_error_text.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/trash.h"

#include <cerrno>
#include <QFileInfo>

namespace velun {

void moveSessionToTrash(const QUrl& url) {
  const QString path = url.toLocalFile();
  if (!QFileInfo::exists(path)) {
    throw Failure(fileErrorText(FileError(FileError::Operation::read, ENOENT, path)));
  }
  const std::optional<QString> reason = moveToTrash(path);
  if (!reason) return;
  throw Failure(L("“%1” couldn’t be moved to the Trash (%2). The file is still where it was.",
                  "“%1” 파일을 휴지통으로 옮기지 못했습니다(%2). 파일은 그대로 있습니다.")
                    .arg(QFileInfo(path).fileName(), *reason));
}

}  // namespace velun
