// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/file_error_text.h"

#include "language/localization.h"

#include <cerrno>
#include <cstring>
#include <QFileInfo>

namespace velun {

namespace {

QString writingText(int code, const QString& name) {
  switch (code) {
    case ENOSPC:
    case EDQUOT:
      return L("There is not enough disk space to write “%1”.",
               "디스크 공간이 부족하여 “%1” 항목을 쓸 수 없습니다.")
          .arg(name);
    case EACCES:
    case EPERM:
      return L("You don’t have permission to write “%1”.", "“%1” 항목을 쓸 권한이 없습니다.")
          .arg(name);
    case EROFS:
      return L("“%1” is on a read-only disk.", "“%1” 항목은 읽기 전용 디스크에 있습니다.")
          .arg(name);
    case EFBIG:
      return L("“%1” is too large for this file system.",
               "“%1” 항목이 이 파일 시스템에 저장하기에는 너무 큽니다.")
          .arg(name);
    default:
      return L("“%1” couldn’t be written: %2.", "“%1” 항목을 쓸 수 없습니다: %2.")
          .arg(name, QString::fromLocal8Bit(std::strerror(code)));
  }
}

QString readingText(int code, const QString& name) {
  switch (code) {
    case ENOENT:
      return L("“%1” doesn’t exist.", "“%1” 항목이 없습니다.").arg(name);
    case EACCES:
    case EPERM:
      return L("You don’t have permission to read “%1”.", "“%1” 항목을 읽을 권한이 없습니다.")
          .arg(name);
    case EISDIR:
    case EINVAL:
      return L("“%1” is not a file.", "“%1” 항목은 파일이 아닙니다.").arg(name);
    case EFBIG:
      return L("“%1” is larger than 256 MB, more than a session can be.",
               "“%1” 파일이 256MB보다 커서 기록으로 읽을 수 없습니다.")
          .arg(name);
    default:
      return L("“%1” couldn’t be read: %2.", "“%1” 항목을 읽을 수 없습니다: %2.")
          .arg(name, QString::fromLocal8Bit(std::strerror(code)));
  }
}

}  // namespace

QString fileErrorText(const FileError& error) {
  const int code = error.code().value();
  const QString name = QFileInfo(error.path()).fileName();
  return error.operation() == FileError::Operation::write ? writingText(code, name)
                                                          : readingText(code, name);
}

}  // namespace velun
