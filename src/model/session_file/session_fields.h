// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>
#include <utility>

namespace velun {

// The keys of a session file, for the writer and the reader alike.
//
// To add a key, add a member to `Line` or `CaptionSession` and one row here; where the row stands
// does not matter to the file, whose keys are sorted. The member's type says the rest: a
// `std::optional` may be absent or null and is then not written, every other type is required. A
// type that no other row has needs an overload of `read` in session_reader.cpp and of `append` in
// session_writer.cpp. Keys that are not in the table are ignored when a file is read, so files
// with a new optional key still open in earlier versions.

/// One key of an object and the member that holds its value.
template <class Object, class Value>
struct SessionField {
  std::string_view key;
  Value Object::*member;
};
template <class Object, class Value>
SessionField(const char*, Value Object::*) -> SessionField<Object, Value>;

inline constexpr std::tuple kSessionFields{
    SessionField{"schemaVersion", &CaptionSession::schemaVersion},
    SessionField{"id", &CaptionSession::id},
    SessionField{"startedAt", &CaptionSession::startedAt},
    SessionField{"endedAt", &CaptionSession::endedAt},
    SessionField{"title", &CaptionSession::title},
    SessionField{"lines", &CaptionSession::lines},
    SessionField{"computerName", &CaptionSession::computerName},
    SessionField{"microphoneName", &CaptionSession::microphoneName},
};

inline constexpr std::tuple kLineFields{
    SessionField{"id", &Line::id},
    SessionField{"time", &Line::time},
    SessionField{"text", &Line::text},
    SessionField{"sourceLanguage", &Line::sourceLanguage},
    SessionField{"input", &Line::input},
    SessionField{"translations", &Line::translations},
    SessionField{"legacyTimestamp", &Line::legacyTimestamp},
    SessionField{"legacyTranslation", &Line::legacyTranslation},
    SessionField{"start", &Line::start},
    SessionField{"end", &Line::end},
    SessionField{"original", &Line::original},
    SessionField{"speaker", &Line::speaker},
};

/// The positions of a table's fields in the order in which they are written: by key.
template <const auto& fields>
inline constexpr auto kWritingOrder = std::apply(
    [](const auto&... field) {
      const std::array keys{field.key...};
      std::array<std::size_t, keys.size()> order{};
      for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
      std::sort(order.begin(), order.end(),
                [&keys](std::size_t a, std::size_t b) { return keys[a] < keys[b]; });
      return order;
    },
    fields);

/// Calls `visit` with every field of a table in writing order.
template <const auto& fields, class Visit>
void forEachInWritingOrder(Visit visit) {
  constexpr const auto& order = kWritingOrder<fields>;
  [&]<std::size_t... i>(std::index_sequence<i...>) {
    (visit(std::get<order[i]>(fields)), ...);
  }
  (std::make_index_sequence<order.size()>());
}

}  // namespace velun
