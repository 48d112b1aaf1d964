// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/foundation/failure.h"
#include "platform/updates/appcast.h"
#include "platform/updates/version_order.h"
#include "require.h"

#include <algorithm>

using namespace velun;
using fuzz::require;

namespace {

std::vector<AppcastItem> readOrRefuse(const QByteArray& bytes) {
  try {
    return readAppcast(bytes);
  } catch (const Failure& failure) {
    require(!descriptionOf(failure).isEmpty(), "a refusal says why");
    return {};
  }
}

int signOf(int order) {
  return (order > 0) - (order < 0);
}

/// Versions are ordered consistently.
void checkOrder(const QStringList& versions) {
  for (const QString& a : versions) {
    require(compareVersions(a, a) == 0, "a version is the same as itself");
    for (const QString& b : versions) {
      const int order = signOf(compareVersions(a, b));
      require(signOf(compareVersions(b, a)) == -order, "the order is the same both ways");
      for (const QString& c : versions) {
        const bool isChain = order <= 0 && compareVersions(b, c) <= 0;
        require(!isChain || compareVersions(a, c) <= 0, "the order has no circles");
      }
    }
  }
}

}  // namespace

/// Any bytes are read or rejected. Every item has a version and a web page, and the offered release
/// is the newest.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  constexpr qsizetype kMaxCompared = 6;
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const std::vector<AppcastItem> items = readOrRefuse(bytes);
  const QString running = QStringLiteral("1.2.3");
  QStringList versions{running};
  for (const AppcastItem& item : items) {
    require(!item.version.isEmpty() && !item.shortVersion.isEmpty(), "an item has a version");
    require(item.page.scheme().startsWith("http") && !item.page.host().isEmpty(),
            "an item has a page on the web");
    if (versions.size() < kMaxCompared) versions.append(item.version);
  }
  checkOrder(versions);
  const std::optional<AppcastItem> newest = newestAfter(running, items);
  require(!newest || compareVersions(newest->version, running) > 0, "an update is newer");
  const QString best = newest ? newest->version : running;
  require(
      std::ranges::none_of(
          items, [&](const AppcastItem& item) { return compareVersions(item.version, best) > 0; }),
      "nothing is newer than what is offered");
  return 0;
}
