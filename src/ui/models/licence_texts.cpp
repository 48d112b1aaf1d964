// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/licence_texts.h"

#include <array>
#include <QFile>
#include <utility>

// Resources of a static library must be initialized, and outside any namespace.
static void loadResources() {
  Q_INIT_RESOURCE(licences);
}

namespace velun {

namespace {

constexpr std::array kAddresses = {
    std::pair("NVIDIA Open Model License",
              "https://www.nvidia.com/en-us/agreements/enterprise-software/"
              "nvidia-open-model-license/"),
    std::pair("OpenMDW-1.1",
              "https://github.com/OpenMDW/OpenMDW/blob/main/1.1/LICENSE.OpenMDW-1.1"),
};

}  // namespace

QString fullLicenceText(const QString& licence) {
  loadResources();
  QFile file(":/licences/" + licence + ".txt");
  return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QUrl licenceAddress(const QString& licence) {
  for (const auto& [name, address] : kAddresses) {
    if (licence == QLatin1String(name)) return QUrl(QString::fromLatin1(address));
  }
  return {};
}

}  // namespace velun
