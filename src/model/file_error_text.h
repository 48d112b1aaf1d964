// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_error.h"

#include <QString>

namespace velun {

/// The failure of a file operation as a finished sentence in the interface language. Main thread
/// only.
QString fileErrorText(const FileError& error);

}  // namespace velun
