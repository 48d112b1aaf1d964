// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/recorded_files.h"

#include <atomic>
#include <cerrno>
#include <cstdarg>
#include <cstdio>
#include <dlfcn.h>
#include <fcntl.h>
#include <map>
#include <mutex>
#include <optional>
#include <QFile>
#include <sys/stat.h>
#include <unistd.h>

namespace velun::test {

namespace {

struct Recording {
  QByteArray folder;
  std::vector<FileOperation> operations;
  /// The files by name and by open descriptor.
  std::map<QByteArray, int> named;
  std::map<int, int> opened;
  int fileCount = 0;
  int folderDescriptor = -1;
};

/// Held during a recorded call, so that the order is the real one.
std::recursive_mutex& mutex() {
  static std::recursive_mutex mutex;
  return mutex;
}

Recording* recording = nullptr;

std::atomic<int> nextSyncFailure = 0;

template <class Function>
Function original(const char* name) {
  return reinterpret_cast<Function>(dlsym(RTLD_NEXT, name));
}

/// The name of a file in the recorded folder.
std::optional<QByteArray> nameOf(const char* path) {
  if (!recording) return std::nullopt;
  const QByteArray prefix = recording->folder + '/';
  const QByteArray whole(path);
  if (!whole.startsWith(prefix) || whole.indexOf('/', prefix.size()) >= 0) return std::nullopt;
  return whole.mid(prefix.size());
}

std::optional<int> fileOf(int descriptor) {
  if (!recording) return std::nullopt;
  const auto found = recording->opened.find(descriptor);
  return found == recording->opened.end() ? std::nullopt : std::optional(found->second);
}

void record(FileOperation operation) {
  recording->operations.push_back(std::move(operation));
}

int recordOpen(int (*open)(const char*, int, ...), const char* path, int flags, mode_t mode) {
  const std::lock_guard guard(mutex());
  const int descriptor = open(path, flags, mode);
  if (descriptor < 0 || !recording) return descriptor;
  if (path == recording->folder) recording->folderDescriptor = descriptor;
  const std::optional<QByteArray> name = nameOf(path);
  if (!name) return descriptor;
  if (!recording->named.contains(*name)) {
    recording->named[*name] = recording->fileCount++;
    record({FileOperation::create, recording->named[*name], *name, {}, {}});
  }
  recording->opened[descriptor] = recording->named[*name];
  return descriptor;
}

int recordSync(const char* function, int descriptor) {
  const std::lock_guard guard(mutex());
  if (const int code = nextSyncFailure.exchange(0)) {
    errno = code;
    return -1;
  }
  const int result = original<int (*)(int)>(function)(descriptor);
  if (result != 0 || !recording) return result;
  if (descriptor == recording->folderDescriptor)
    record({FileOperation::syncFolder, -1, {}, {}, {}});
  if (const auto file = fileOf(descriptor)) record({FileOperation::syncFile, *file, {}, {}, {}});
  return result;
}

mode_t modeOf(int flags, va_list arguments) {
  return flags & O_CREAT ? static_cast<mode_t>(va_arg(arguments, unsigned)) : 0;
}

}  // namespace

RecordedFiles::RecordedFiles(const QString& folder) {
  const std::lock_guard guard(mutex());
  recording = new Recording{QFile::encodeName(folder), {}, {}, {}, 0, -1};
}

RecordedFiles::~RecordedFiles() {
  const std::lock_guard guard(mutex());
  delete std::exchange(recording, nullptr);
}

std::vector<FileOperation> RecordedFiles::operations() const {
  const std::lock_guard guard(mutex());
  return recording->operations;
}

void RecordedFiles::failNextSync(int code) {
  nextSyncFailure = code;
}

}  // namespace velun::test

using namespace velun::test;

extern "C" {

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return recordOpen(original<int (*)(const char*, int, ...)>("open"), path, flags, mode);
}

int close(int descriptor) {
  const std::lock_guard guard(mutex());
  if (recording) {
    recording->opened.erase(descriptor);
    if (recording->folderDescriptor == descriptor) recording->folderDescriptor = -1;
  }
  return original<int (*)(int)>("close")(descriptor);
}

int ftruncate(int descriptor, off_t size) noexcept {
  const std::lock_guard guard(mutex());
  const int result = original<int (*)(int, off_t)>("ftruncate")(descriptor, size);
  const auto file = fileOf(descriptor);
  if (result == 0 && file) record({FileOperation::truncate, *file, {}, {}, {}});
  return result;
}

ssize_t write(int descriptor, const void* bytes, size_t count) {
  static const auto real = original<ssize_t (*)(int, const void*, size_t)>("write");
  const std::lock_guard guard(mutex());
  const ssize_t written = real(descriptor, bytes, count);
  const auto file = fileOf(descriptor);
  if (written > 0 && file) {
    const QByteArray data(static_cast<const char*>(bytes), written);
    record({FileOperation::write, *file, {}, {}, data});
  }
  return written;
}

int fdatasync(int descriptor) {
  return recordSync("fdatasync", descriptor);
}

int fsync(int descriptor) {
  return recordSync("fsync", descriptor);
}

int link(const char* from, const char* to) noexcept {
  const std::lock_guard guard(mutex());
  const int result = original<int (*)(const char*, const char*)>("link")(from, to);
  const auto name = nameOf(from);
  const auto newName = nameOf(to);
  if (result == 0 && name && newName) {
    recording->named[*newName] = recording->named[*name];
    record({FileOperation::link, -1, *name, *newName, {}});
  }
  return result;
}

int rename(const char* from, const char* to) noexcept {
  const std::lock_guard guard(mutex());
  const int result = original<int (*)(const char*, const char*)>("rename")(from, to);
  const auto name = nameOf(from);
  const auto newName = nameOf(to);
  if (result != 0 || !name || !newName) return result;
  // Renaming does nothing if both names are of the same file.
  if (recording->named.contains(*newName) &&
      recording->named[*newName] == recording->named[*name]) {
    return result;
  }
  recording->named[*newName] = recording->named[*name];
  recording->named.erase(*name);
  record({FileOperation::rename, -1, *name, *newName, {}});
  return result;
}

int unlink(const char* path) noexcept {
  const std::lock_guard guard(mutex());
  const int result = original<int (*)(const char*)>("unlink")(path);
  const auto name = nameOf(path);
  if (result == 0 && name) {
    recording->named.erase(*name);
    record({FileOperation::unlink, -1, *name, {}, {}});
  }
  return result;
}

}  // extern "C"
