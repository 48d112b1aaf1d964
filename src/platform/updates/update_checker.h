// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/updates/appcast.h"
#include "platform/updates/update_feed.h"

#include <memory>
#include <variant>

namespace velun {

/// The system's package manager updates the program.
struct UpdatedBySystem {};
/// The program was built without the address of an update feed.
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
  /// A text for the user.
  QString description;
};
using UpdateOutcome =
    std::variant<UpdatedBySystem, NoUpdateFeed, UpToDate, UpdateAvailable, UpdateCheckFailed>;

/// Checks, only on the user's request, whether there is a newer release. Installs nothing. Main
/// thread.
class UpdateChecker final {
 public:
  /// `version` is the running one. `isPackaged`: installed by the system's package manager. `feed`
  /// is null if the program was built without one.
  UpdateChecker(QString version, bool isPackaged, std::unique_ptr<UpdateFeed> feed);
  ~UpdateChecker();

  /// Does not throw: an error is an outcome. The checker must outlive the task.
  QCoro::Task<UpdateOutcome> checkForUpdates();

 private:
  QString version_;
  bool isPackaged_;
  std::unique_ptr<UpdateFeed> feed_;
};

}  // namespace velun
