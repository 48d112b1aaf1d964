// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_error.h"

#include <QString>

namespace velun {

/// What went wrong with the file, as a finished sentence in the interface language.
QString fileErrorText(const FileError& error);

}  // namespace velun
