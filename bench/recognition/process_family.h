// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

namespace velun::bench {

/// The processor time of this process and of its children, ended ones included, in seconds.
double cpuSeconds();

/// The resident memory of this process and of its running children.
double residentMegabytes();

}  // namespace velun::bench
