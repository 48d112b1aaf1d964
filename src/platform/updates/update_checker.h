// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/updates/appcast.h"
#include "platform/updates/update_feed.h"

#include <memory>
#include <variant>

namespace velun {

/// The system that installed the program updates it.
struct UpdatedBySystem {};
/// The program was built without the address of a feed.
struct NoUpdateFeed {};
struct UpToDate {
  QString version;
};
struct UpdateAvailable {
  AppcastItem item;
  /// The running version.
  QString version;
};
struct UpdateCheckFailed {
  /// A text to show.
  QString description;
};
using UpdateOutcome =
    std::variant<UpdatedBySystem, NoUpdateFeed, UpToDate, UpdateAvailable, UpdateCheckFailed>;

/// Finds out, when the user asks and never by itself, whether there is a newer release. Installs
/// nothing. Main thread.
class UpdateChecker final {
 public:
  /// `version` is the running one. `isPackaged`: the program came from the system's package
  /// manager. A null feed: none was built in.
  UpdateChecker(QString version, bool isPackaged, std::unique_ptr<UpdateFeed> feed);
  ~UpdateChecker();

  /// Never fails; a failure is an outcome. The checker must outlive the task.
  QCoro::Task<UpdateOutcome> checkForUpdates();

 private:
  QString version_;
  bool isPackaged_;
  std::unique_ptr<UpdateFeed> feed_;
};

}  // namespace velun
