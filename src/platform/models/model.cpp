// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model.h"

namespace velun {

QString ModelDownload::fileName() const {
  return address.section(u'/', -1).section(u'?', 0, 0);
}

}  // namespace velun
