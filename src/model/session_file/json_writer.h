// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstring>
#include <QByteArray>
#include <QStringView>
#include <string_view>

namespace velun {

/// Appends JSON to a byte array that the caller owns. The array has spare bytes at its end until
/// the writer is destroyed.
class JsonWriter {
 public:
  explicit JsonWriter(QByteArray& bytes) : bytes_(bytes), size_(bytes.size()) {}
  ~JsonWriter() { bytes_.resize(size_); }
  Q_DISABLE_COPY_MOVE(JsonWriter)

  qsizetype size() const { return size_; }

  /// The characters as they are.
  void raw(std::string_view characters) { wrote(copy(room(sizeOf(characters)), characters)); }

  /// The key of an object's member and the colon. `key` must need no escapes.
  void key(std::string_view indentation, std::string_view key) {
    char* out = copy(room(sizeOf(indentation) + sizeOf(key) + 5), indentation);
    *out++ = '"';
    wrote(copy(copy(out, key), "\" : "));
  }

  /// A JSON string, quotes included: UTF-8, with escapes only where JSON requires them (a slash
  /// is not escaped). An unpaired surrogate becomes U+FFFD.
  void string(QStringView text);

  /// Space for `count` characters. The caller fills it and passes the end to `wrote`.
  char* room(qsizetype count) {
    if (!start_ || size_ + count > bytes_.size()) grow(size_ + count);
    return start_ + size_;
  }
  void wrote(const char* end) { size_ = end - start_; }

 private:
  static qsizetype sizeOf(std::string_view text) { return static_cast<qsizetype>(text.size()); }
  static char* copy(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
  }
  void grow(qsizetype needed);

  QByteArray& bytes_;
  qsizetype size_;
  char* start_ = nullptr;
};

}  // namespace velun
