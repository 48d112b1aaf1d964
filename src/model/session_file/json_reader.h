// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_file/session_problem.h"

#include <string>
#include <string_view>

namespace velun {

/// Walks through JSON from its beginning, keeping nothing but its place, and knows the line at
/// which something is wrong. Throws `SessionProblem`. The text must be valid UTF-8.
class JsonReader {
 public:
  explicit JsonReader(std::string_view text) : text_(text) {}

  /// Where the cursor stands, for a later `fail`.
  std::size_t position() const { return position_; }

  /// The character of the next value or sign, spaces passed over; '\0' at the end of the text.
  char peek();

  /// Passes over the next character when it is `sign`.
  bool skip(char sign);

  /// Passes over the next character, which has to be `sign`.
  void expect(char sign);

  /// Passes over the next value when it is null.
  bool skipNull();

  /// The string that begins here, escapes resolved.
  std::string string();

  /// The number that begins here, as it is written.
  std::string_view number();

  /// Passes over whatever value begins here.
  void skipValue();

  /// Refuses anything but spaces up to the end.
  void expectEnd();

  [[noreturn]] void fail(SessionProblem::Kind kind, std::size_t position,
                         const std::string& key = {}) const;
  [[noreturn]] void fail(SessionProblem::Kind kind) const { fail(kind, position_); }

 private:
  void skipSpaces();
  void skipWord(std::string_view word);
  void skipDigits();
  void skipScalar();
  void appendEscape(std::string& result);
  char32_t hexUnit();

  std::string_view text_;
  std::size_t position_ = 0;
};

}  // namespace velun
