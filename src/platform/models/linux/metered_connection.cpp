// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/linux/metered_connection.h"

#include <QNetworkInformation>

namespace velun {

bool isConnectionMetered() {
  if (!QNetworkInformation::loadBackendByFeatures(QNetworkInformation::Feature::Metered)) {
    return false;
  }
  return QNetworkInformation::instance()->isMetered();
}

}  // namespace velun
