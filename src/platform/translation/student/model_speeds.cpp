// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/model_speeds.h"

#include "platform/foundation/atomic_file.h"
#include "platform/foundation/file_error.h"

#include <QFile>

namespace velun {

namespace {

QString recordPath(const QString& folder) {
  return folder + QStringLiteral("/measured-speed");
}

}  // namespace

void ModelSpeeds::add(const QString& folder, double millisecondsPerToken) {
  const std::lock_guard guard(lock_);
  Measured& measured = measured_[folder];
  if (measured.texts == kTexts) return;
  ++measured.texts;
  measured.sum += millisecondsPerToken;
  if (measured.texts < kTexts) return;
  const QByteArray record = QByteArray::number(measured.sum / kTexts) + " ms per token\n";
  try {
    writeFileAtomically(recordPath(folder), record, false);
  } catch (const FileError&) {
    // Measured again at the next start.
  }
}

bool ModelSpeeds::isTooSlow(const QString& folder) {
  const std::lock_guard guard(lock_);
  const auto found = measured_.find(folder);
  if (found != measured_.end() && found->second.texts == kTexts) {
    return found->second.sum / kTexts > kMaxMillisecondsPerToken;
  }
  QFile file(recordPath(folder));
  if (!file.open(QIODevice::ReadOnly)) return false;
  return file.readLine().split(' ').front().toDouble() > kMaxMillisecondsPerToken;
}

}  // namespace velun
