// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <stop_token>

namespace velun {

/// Unpacks the files of the download at `packed` into `folder`. Other entries of an archive are
/// skipped; an archive with an entry that points outside its folder is rejected. On failure,
/// unpacked files are removed. Throws `Failure` or `Cancelled`. Any thread.
void unpack(const ModelDownload& download, const QString& packed, const QString& folder,
            const std::stop_token& stop);

}  // namespace velun
