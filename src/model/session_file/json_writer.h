// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QStringView>
#include <string_view>

namespace velun {

/// Appends pieces of JSON to bytes that belong to someone else, whose size is right again when the
/// appender is gone.
class JsonWriter {
 public:
  explicit JsonWriter(QByteArray& bytes) : bytes_(bytes), size_(bytes.size()) {}
  ~JsonWriter() { bytes_.resize(size_); }
  Q_DISABLE_COPY_MOVE(JsonWriter)

  qsizetype size() const { return size_; }

  /// The characters as they are.
  void raw(std::string_view characters);

  /// A JSON string, quotes included: UTF-8, with escapes only where JSON demands them (a slash
  /// stays bare). Half of a surrogate pair alone becomes U+FFFD.
  void string(QStringView text);

  /// Room for `count` characters, to be written and then reported to `wrote`.
  char* room(qsizetype count);
  void wrote(const char* end) { size_ = end - start_; }

 private:
  QByteArray& bytes_;
  qsizetype size_;
  char* start_ = nullptr;
};

}  // namespace velun
