// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/session_file/json_reader.h"

#include <algorithm>
#include <charconv>
#include <cstdint>
#include <limits>
#include <simdjson.h>

namespace velun {

// The JSON values from which `SessionReader` reads. Each class has the same operations; a value
// is read once, with one of them.

/// A value of simdjson's document tree. Throws `UnexpectedValue` instead of saying what is wrong.
class TreeValue {
 public:
  /// The document is not as expected; reading it again as `TextValue` gives the reason.
  struct UnexpectedValue {};
  struct Position {};

  explicit TreeValue(const simdjson::dom::element& element) : element_(element) {}

  TreeValue named(std::string_view) const { return *this; }
  Position position() { return {}; }
  bool skipNull() const { return element_.is_null(); }
  void skip() const {}

  std::string_view string() const { return get<std::string_view>(); }

  int integer() const {
    return static_cast<int>(std::clamp<std::int64_t>(
        get<std::int64_t>(), std::numeric_limits<int>::min(), std::numeric_limits<int>::max()));
  }

  double number() const { return get<double>(); }

  template <class Read>
  void forEachMember(Read read) const {
    const auto members = get<simdjson::dom::object>();
    for (auto at = members.begin(); at != members.end(); ++at) {
      read(at.key(), TreeValue(at.value()));
    }
  }

  template <class Reserve, class Read>
  void forEachItem(Reserve reserve, Read read) const {
    const auto items = get<simdjson::dom::array>();
    reserve(items.size());
    for (const simdjson::dom::element& item : items) read(TreeValue(item));
  }

  [[noreturn]] void fail(SessionProblem::Kind) const { throw UnexpectedValue(); }
  [[noreturn]] void fail(SessionProblem::Kind, Position, std::string_view) const {
    throw UnexpectedValue();
  }

 private:
  template <class T>
  T get() const {
    T result;
    if (element_.get(result) != simdjson::SUCCESS) throw UnexpectedValue();
    return result;
  }

  simdjson::dom::element element_;
};

/// The next value of a text. Throws `SessionProblem` with the line and the value's name.
class TextValue {
 public:
  using Kind = SessionProblem::Kind;

  explicit TextValue(JsonReader& json, std::string_view name = {}) : json_(json), name_(name) {}

  /// The value under the key by which refusals name it.
  TextValue named(std::string_view key) const { return TextValue(json_, key); }

  const char* position() {
    json_.peek();
    return json_.position();
  }
  bool skipNull() { return json_.skipNull(); }
  void skip() { json_.skipValue(); }

  /// Valid until the next value is read.
  std::string_view string() {
    require(json_.peek() == '"', Kind::notAText);
    return json_.string();
  }

  /// A number outside the range becomes the nearest one inside.
  int integer() {
    const char first = json_.peek();
    require(first == '-' || (first >= '0' && first <= '9'), Kind::notAnInteger);
    const std::string_view digits = json_.number();
    if (digits.find_first_of(".eE") != std::string_view::npos) fail(Kind::notAnInteger);
    int number = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
    if (error == std::errc()) return number;
    return first == '-' ? std::numeric_limits<int>::min() : std::numeric_limits<int>::max();
  }

  /// Not a number if it is out of the range of `double`.
  double number() {
    const char first = json_.peek();
    require(first == '-' || (first >= '0' && first <= '9'), Kind::notADuration);
    const std::string_view digits = json_.number();
    double number = 0;
    const auto [end, error] = std::from_chars(digits.begin(), digits.end(), number);
    return error == std::errc() ? number : std::numeric_limits<double>::quiet_NaN();
  }

  template <class Read>
  void forEachMember(Read read) {
    require(json_.peek() == '{', Kind::notAnObject);
    json_.expect('{');
    if (json_.skip('}')) return;
    do {
      const std::string_view key = json_.string();
      json_.expect(':');
      read(key, *this);
    } while (json_.skip(','));
    json_.expect('}');
  }

  template <class Reserve, class Read>
  void forEachItem(Reserve, Read read) {
    require(json_.peek() == '[', Kind::notAList);
    json_.expect('[');
    if (json_.skip(']')) return;
    do {
      read(*this);
    } while (json_.skip(','));
    json_.expect(']');
  }

  /// Refuses the value that was just read.
  [[noreturn]] void fail(Kind problem) const { json_.fail(problem, json_.position(), name_); }
  [[noreturn]] void fail(Kind problem, const char* position, std::string_view key) const {
    json_.fail(problem, position, key);
  }

 private:
  /// Refuses the next value unless `holds`; or what is wrong inside it, if it is not even JSON.
  void require(bool holds, Kind problem) {
    if (holds) return;
    const char* const start = json_.position();
    json_.skipValue();
    json_.fail(problem, start, name_);
  }

  JsonReader& json_;
  std::string_view name_;
};

}  // namespace velun
