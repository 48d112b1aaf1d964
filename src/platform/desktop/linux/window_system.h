// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QProcessEnvironment>

namespace velun {

/// The environment of this program without the variables that preferWindowSystem() has set for Qt:
/// another program that uses Qt would follow them, too.
QProcessEnvironment environmentAtStart();

}  // namespace velun
