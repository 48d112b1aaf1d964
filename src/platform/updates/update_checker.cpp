// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/updates/update_checker.h"

#include "platform/foundation/failure.h"

namespace velun {

UpdateChecker::UpdateChecker(QString version, bool isPackaged, std::unique_ptr<UpdateFeed> feed)
    : version_(std::move(version)), isPackaged_(isPackaged), feed_(std::move(feed)) {}

UpdateChecker::~UpdateChecker() = default;

QCoro::Task<UpdateOutcome> UpdateChecker::checkForUpdates() {
  UpdateOutcome outcome;
  if (isPackaged_) {
    outcome = UpdatedBySystem();
    co_return outcome;
  }
  if (!feed_) {
    outcome = NoUpdateFeed();
    co_return outcome;
  }
  const QString version = version_;
  try {
    QCoro::Task<QByteArray> fetching = feed_->fetch();
    const QByteArray feed = co_await fetching;
    const std::optional<AppcastItem> newer = newestAfter(version, readAppcast(feed));
    if (newer) {
      outcome = UpdateAvailable{.item = *newer, .version = version};
    } else {
      outcome = UpToDate{.version = version};
    }
  } catch (const std::exception& error) {
    outcome = UpdateCheckFailed{.description = descriptionOf(error)};
  }
  co_return outcome;
}

}  // namespace velun
