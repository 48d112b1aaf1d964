// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/file_sums.h"

#include <QCryptographicHash>
#include <QFile>
#include <QFileInfo>

namespace velun {

namespace {

const auto kListName = QStringLiteral("SHA256SUMS");
constexpr int kSumLength = 64;
/// Between the sum and the path.
constexpr auto kSeparator = "  ";

bool hasSum(const QString& path, const QByteArray& sha256) {
  QFile file(path);
  QCryptographicHash hash(QCryptographicHash::Sha256);
  return QFileInfo(path).isFile() && file.open(QIODevice::ReadOnly) && hash.addData(&file) &&
         hash.result().toHex() == sha256;
}

}  // namespace

void checkFile(const QString& path, const QByteArray& sha256) {
  if (!hasSum(path, sha256)) throw DamagedFile(QFileInfo(path).fileName());
}

void checkFiles(const QString& folder, const QByteArray& sums) {
  if (sums.isEmpty()) throw DamagedFile(kListName);
  for (const QByteArray& line : sums.trimmed().split('\n')) {
    const QString name = QString::fromUtf8(line.mid(kSumLength + 2));
    if (name.isEmpty() || line.mid(kSumLength, 2) != kSeparator) throw DamagedFile(kListName);
    if (!hasSum(folder + u'/' + name, line.left(kSumLength))) throw DamagedFile(name);
  }
}

}  // namespace velun
