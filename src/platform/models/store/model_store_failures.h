// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"
#include "platform/models/model_failure.h"

#include <cstdint>
#include <QString>

class QFileDevice;

namespace velun {

/// The downloaded data is not what the catalogue says.
class DamagedModel final : public ModelFailure {
 public:
  using ModelFailure::ModelFailure;
};

/// Errors of installing a model, with texts that say what to do. Any thread.
namespace model_failures {

ModelFailure unreachable(const QString& host);
ModelFailure interrupted(const QString& reason);
ModelFailure refused(int httpStatus);
ModelFailure insecure();
ModelFailure unexpectedFile();
DamagedModel damaged();
/// The files of an installed model are damaged; `title` is its title.
ModelFailure damagedFiles(const QString& title);
ModelFailure noSpace(std::int64_t neededBytes, std::int64_t freeBytes);
ModelFailure notSaved(const QString& reason);
/// The disk became full.
ModelFailure diskFull();
/// The last operation on `file` failed, perhaps because the disk is full.
ModelFailure notWritten(const QFileDevice& file);
/// The same for an errno value.
ModelFailure notWritten(int code);
/// The user cancelled the download.
ModelFailure cancelled();
/// A model of this kind cannot be removed because it is in use.
ModelFailure inUse(ModelKind kind);
ModelFailure notRemoved();
/// A file that the user chose cannot be read.
ModelFailure notRead(const QString& reason);
/// A file that the user chose belongs to no model of the catalogue.
ModelFailure unknownFile(const QString& name);
/// The download is complete but cannot be read now; `code` is an errno value.
ModelFailure unreadable(int code);
/// The system cannot start another thread.
ModelFailure noThread();

}  // namespace model_failures

}  // namespace velun
