// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/session_files.h"

#include "language/localization.h"
#include "model/file_error_text.h"
#include "model/legacy_markdown.h"
#include "model/session_file/session_file.h"
#include "model/session_file/session_problem.h"
#include "platform/foundation/failure.h"
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
    return readSessionFile(path, legacyTitle);
  } catch (const SessionProblem&) {
    return std::nullopt;  // the caller counts it; the text could only be made on the main thread
  } catch (const std::exception&) {
    return std::nullopt;
  }
}

}  // namespace

bool isLegacyFile(const QString& path) {
  return extensionOf(path) == QLatin1String("md");
}

CaptionSession readSessionFile(const QString& path, const QString& legacyTitle) {
  const QByteArray bytes = readWholeFile(path, kMaxSessionFileSize, kSessionFilePadding);
  return isLegacyFile(path) ? parseLegacyMarkdown(bytes, legacyStart(path), legacyTitle)
                            : decodeSession(bytes);
}

QString remoteFileText(const QUrl& url) {
  return L("“%1” is not a file on this computer.", "“%1” 항목은 이 컴퓨터에 있는 파일이 아닙니다.")
      .arg(url.toDisplayString());
}

QString readingErrorText(std::exception_ptr error, const QString& path) {
  try {
    std::rethrow_exception(error);
  } catch (const FileError& failed) {
    return fileErrorText(failed);
  } catch (const SessionProblem& problem) {
    return describe(problem, QFileInfo(path).fileName());
  } catch (const std::exception& other) {
    return descriptionOf(other);
  }
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

void readSessionFiles(const std::vector<QString>& paths, const QString& legacyTitle,
                      const std::stop_token& stop, const UseSession& use) {
  std::atomic<std::size_t> next = 0;
  const auto work = [&] {
    for (std::size_t i = next++; i < paths.size() && !stop.stop_requested(); i = next++) {
      if (auto session = readQuietly(paths[i], legacyTitle)) use(i, std::move(*session));
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
}

std::vector<std::optional<CaptionSession>> readSessionFiles(const std::vector<QString>& paths,
                                                            const QString& legacyTitle) {
  std::vector<std::optional<CaptionSession>> sessions(paths.size());
  readSessionFiles(paths, legacyTitle, {}, [&sessions](std::size_t i, CaptionSession session) {
    sessions[i] = std::move(session);
  });
  return sessions;
}

}  // namespace velun
