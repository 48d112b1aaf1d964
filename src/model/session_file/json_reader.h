// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_file/session_problem.h"

#include <string>
#include <string_view>

namespace velun {

/// Reads JSON from its beginning to its end and knows at which line something is wrong. The text
/// must be valid UTF-8. Throws `SessionProblem`.
///
/// Written by hand because simdjson cannot do this: its document tree has no positions, refuses
/// numbers outside 64 bits even under keys that we ignore, and needs up to 14 bytes of tables for
/// each byte of the file.
class JsonReader {
 public:
  explicit JsonReader(std::string_view text)
      : start_(text.data()), at_(start_), end_(start_ + text.size()) {}

  /// The position in the text, for a later `fail`.
  const char* position() const { return at_; }

  /// The first character of the next token, or '\0' at the end of the text. Skips white space.
  char peek() {
    while (at_ != end_ && (*at_ == ' ' || *at_ == '\n' || *at_ == '\r' || *at_ == '\t')) ++at_;
    return at_ != end_ ? *at_ : '\0';
  }

  /// Skips `sign` if it is the next token.
  bool skip(char sign) {
    if (peek() != sign) return false;
    ++at_;
    return true;
  }

  /// Skips `sign`, which must be the next token.
  void expect(char sign) {
    if (!skip(sign)) failAtSign();
  }

  /// Skips the next value if it is null.
  bool skipNull();

  /// Reads the next value, a string, as UTF-8 without escapes. Valid until the next call.
  std::string_view string();

  /// Reads the next value, a number, as it is written.
  std::string_view number();

  /// Skips the next value, whatever its type.
  void skipValue();

  /// Requires that nothing but white space is left.
  void expectEnd();

  [[noreturn]] void fail(SessionProblem::Kind kind, const char* position,
                         std::string_view key = {}) const;
  [[noreturn]] void fail(SessionProblem::Kind kind) const { fail(kind, at_); }

 private:
  [[noreturn]] void failAtSign() const;
  void skipWord(std::string_view word);
  void skipDigits();
  void skipScalar();
  void appendEscape();
  char32_t hexUnit();

  const char* start_;
  const char* at_;
  const char* end_;
  std::string unescaped_;
};

}  // namespace velun
