// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_address.h"

#include <QString>

namespace velun {

namespace {

bool isLoopback(const QString& host) {
  return host == "localhost" || host == "127.0.0.1" || host == "::1";
}

}  // namespace

bool isSafeModelAddress(const QUrl& address) {
  if (!address.isValid() || address.host().isEmpty()) return false;
  return address.scheme() == "https" || (address.scheme() == "http" && isLoopback(address.host()));
}

QUrl mirroredModelAddress(const QString& address, const QString& mirror) {
  QUrl url(address);
  if (mirror.isEmpty()) return url;
  const QUrl host(mirror);
  QString folder = host.path();
  while (folder.endsWith(u'/')) folder.chop(1);
  url.setScheme(host.scheme());
  url.setAuthority(host.authority());
  url.setPath(folder + url.path());
  return url;
}

}  // namespace velun
