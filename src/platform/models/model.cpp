// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model.h"

namespace velun {

QString ModelDownload::fileName() const {
  return address.section(u'/', -1).section(u'?', 0, 0);
}

std::int64_t Model::downloadBytes() const {
  std::int64_t bytes = 0;
  for (const ModelDownload& download : downloads) bytes += download.bytes;
  return bytes;
}

}  // namespace velun
