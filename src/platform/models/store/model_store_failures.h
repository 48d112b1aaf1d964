// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/failure.h"
#include "platform/models/model.h"

#include <cstdint>
#include <QString>

namespace velun {

/// The downloaded data is not what the catalogue says.
class DamagedModel final : public Failure {
 public:
  using Failure::Failure;
};

/// Errors of installing a model, with texts that say what to do. Any thread.
namespace model_failures {

Failure unreachable(const QString& host);
Failure interrupted(const QString& reason);
Failure refused(int httpStatus);
Failure insecure();
Failure unexpectedFile();
DamagedModel damaged();
/// The files of an installed model are damaged; `title` is its title.
Failure damagedFiles(const QString& title);
Failure noSpace(std::int64_t neededBytes, std::int64_t freeBytes);
Failure notSaved(const QString& reason);
/// The disk became full during a download.
Failure diskFull();
/// The user cancelled the download.
Failure cancelled();
/// A model of this kind cannot be removed because it is in use.
Failure inUse(ModelKind kind);
Failure notRemoved();
/// A file that the user chose cannot be read.
Failure notRead(const QString& reason);
/// A file that the user chose belongs to no model of the catalogue.
Failure unknownFile(const QString& name);
/// The download is complete but cannot be read now; `code` is an errno value.
Failure unreadable(int code);
/// The system cannot start another thread.
Failure noThread();

}  // namespace model_failures

}  // namespace velun
