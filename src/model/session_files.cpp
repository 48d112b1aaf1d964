// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_files.h"

#include "model/legacy_markdown.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/file_access.h"
#include "platform/foundation/file_error.h"

#include <algorithm>
#include <atomic>
#include <filesystem>
#include <QFile>
#include <QFileInfo>
#include <system_error>
#include <thread>

namespace velun {

namespace {

QString extensionOf(const QString& name) {
  return QFileInfo(name).suffix().toLower();
}

/// More threads than this read no faster from one disk.
constexpr std::size_t kMaxThreads = 4;

std::optional<CaptionSession> readQuietly(const QString& path, const QString& legacyTitle) {
  try {
    const QByteArray bytes = readWholeFile(path, kMaxSessionFileSize, kSessionFilePadding);
    if (!isLegacyFile(path)) return decodeReadableSession(bytes);
    return parseLegacyMarkdown(bytes, legacyStart(path), legacyTitle);
  } catch (const std::exception&) {
    return std::nullopt;  // the caller counts it; the text could only be made on the main thread
  }
}

}  // namespace

bool isLegacyFile(const QString& path) {
  return extensionOf(path) == QLatin1String("md");
}

std::vector<QString> sessionFiles(const QString& folder) {
  namespace fs = std::filesystem;
  std::error_code error;
  std::vector<QString> paths;
  const auto check = [&error, &folder] {
    if (error) throw FileError(FileError::Operation::list, error.value(), folder);
  };
  const fs::path location(QFile::encodeName(folder).toStdString());
  fs::directory_iterator entry(location, error);
  // Not a folder without permission or behind a broken disk, of which that is unknown.
  std::error_code unused;
  if (error && fs::status(location, unused).type() == fs::file_type::not_found) return {};
  for (check(); entry != fs::directory_iterator(); entry.increment(error), check()) {
    const QString name =
        QFile::decodeName(QByteArray::fromStdString(entry->path().filename().string()));
    const QString extension = extensionOf(name);
    if (name.startsWith(QLatin1Char('.'))) continue;
    if (extension != QLatin1String("json") && extension != QLatin1String("md")) continue;
    paths.push_back(folder + QLatin1Char('/') + name);
  }
  std::sort(paths.begin(), paths.end());
  return paths;
}

std::vector<std::optional<CaptionSession>> readSessionFiles(const std::vector<QString>& paths,
                                                            const QString& legacyTitle) {
  std::vector<std::optional<CaptionSession>> sessions(paths.size());
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t i = next++; i < paths.size(); i = next++) {
      sessions[i] = readQuietly(paths[i], legacyTitle);
    }
  };
  const std::size_t threads = std::min<std::size_t>(
      {kMaxThreads, std::max(1u, std::thread::hardware_concurrency()), paths.size()});
  std::vector<std::jthread> helpers;
  try {
    for (std::size_t i = 1; i < threads; ++i) helpers.emplace_back(work);
  } catch (const std::system_error&) {
    // The system is out of threads; the existing ones read all files.
  }
  work();
  helpers.clear();
  return sessions;
}

}  // namespace velun
