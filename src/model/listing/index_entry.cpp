// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/listing/index_entry.h"

#include <array>
#include <QUrl>

namespace velun {

namespace {

/// Far more than a session file can hold; the difference of two such times is still a number.
constexpr qint64 kMaxMicroseconds = qint64{1} << 61;

void write(QDataStream& stream, const FileStamp& stamp) {
  stream << quint64(stamp.device) << quint64(stamp.inode) << qint64(stamp.size)
         << qint64(stamp.modified.count()) << qint64(stamp.changed.count());
}

FileStamp readStamp(QDataStream& stream) {
  quint64 device = 0;
  quint64 inode = 0;
  std::array<qint64, 3> rest{};
  stream >> device >> inode >> rest[0] >> rest[1] >> rest[2];
  return {.device = device,
          .inode = inode,
          .size = rest[0],
          .modified = std::chrono::nanoseconds(rest[1]),
          .changed = std::chrono::nanoseconds(rest[2])};
}

Instant readTime(QDataStream& stream) {
  qint64 microseconds = 0;
  stream >> microseconds;
  if (qAbs(microseconds / 2) > kMaxMicroseconds / 2) stream.setStatus(QDataStream::ReadCorruptData);
  return Instant(std::chrono::microseconds(microseconds));
}

void write(QDataStream& stream, const SessionSummary& summary) {
  stream << summary.title << qint64(summary.startedAt.time_since_epoch().count())
         << summary.endedAt.has_value();
  if (summary.endedAt) stream << qint64(summary.endedAt->time_since_epoch().count());
  stream << quint64(summary.lineCount) << summary.hasTranslations << summary.firstWords;
  stream << quint32(summary.languages.size());
  for (const QString& language : summary.languages) stream << language;
  for (const AudioInput input : allAudioInputs) stream << summary.inputs.contains(input);
}

bool readFlag(QDataStream& stream) {
  bool flag = false;
  stream >> flag;
  return flag;
}

SessionSummary readSummary(QDataStream& stream) {
  SessionSummary summary;
  stream >> summary.title;
  summary.startedAt = readTime(stream);
  if (readFlag(stream)) summary.endedAt = readTime(stream);
  quint64 lines = 0;
  stream >> lines >> summary.hasTranslations >> summary.firstWords;
  summary.lineCount = lines;
  quint32 languages = 0;
  stream >> languages;
  for (quint32 i = 0; i < languages && stream.status() == QDataStream::Ok; ++i) {
    stream >> summary.languages.emplace_back();
  }
  for (const AudioInput input : allAudioInputs) {
    if (readFlag(stream)) summary.inputs.insert(input);
  }
  return summary;
}

}  // namespace

void writeEntry(QDataStream& stream, const ListedSession& session) {
  stream << session.url.fileName();
  write(stream, *session.stamp);
  write(stream, session.summary);
  const QByteArrayView signature = session.signature.bytes();
  stream.writeRawData(signature.data(), static_cast<int>(signature.size()));
}

std::optional<ListedSession> readEntry(QDataStream& stream, const QString& folder) {
  ListedSession session;
  QString name;
  stream >> name;
  session.stamp = readStamp(stream);
  session.summary = readSummary(stream);
  const bool isWhole = session.signature.read([&stream](char* bytes, qsizetype size) {
    return stream.readRawData(bytes, static_cast<int>(size)) == size;
  });
  if (!isWhole || stream.status() != QDataStream::Ok) return std::nullopt;
  session.url = QUrl::fromLocalFile(folder + QLatin1Char('/') + name);
  // A name with a slash would be a file elsewhere.
  const bool isName = !name.isEmpty() && session.url.fileName() == name;
  return isName ? std::optional(std::move(session)) : std::nullopt;
}

}  // namespace velun
