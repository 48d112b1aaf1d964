// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <stop_token>

namespace velun {

/// Unpacks the download at `packed` into `folder`, giving exactly the download's files under their
/// names. Whatever else an archive holds is left out, and an archive with an entry that points out
/// of its own folder is refused. What was begun is removed again when it fails. Throws `Failure` or
/// `Cancelled`. Any thread.
void unpack(const ModelDownload& download, const QString& packed, const QString& folder,
            const std::stop_token& stop);

}  // namespace velun
