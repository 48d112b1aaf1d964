// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_catalogue.h"

#include "platform/foundation/failure.h"
#include "platform/models/model_address.h"
#include "require.h"

#include <QDir>
#include <QUrl>

using namespace velun;
using fuzz::require;

namespace {

/// Whether a name has no folder part.
void checkName(const QString& name) {
  require(!name.isEmpty() && !name.startsWith(u'.'), "a name is not hidden");
  require(QDir::cleanPath("/models/" + name) == "/models/" + name && !name.contains(u'/'),
          "a name stays in its folder");
  require(!name.contains(u'\n') && !name.contains(QChar(0)), "a name is one line");
}

void checkAddresses(const QStringList& addresses) {
  for (const QString& address : addresses) {
    require(isSafeModelAddress(QUrl(address)), "an address is safe");
  }
}

void check(const Model& model) {
  checkName(model.id);
  require(!model.licence.isEmpty() && !model.languages.isEmpty() && !model.title.isEmpty(),
          "a model says what it is");
  require(model.stepMs >= 0 && model.memoryBytes >= 0, "figures are not negative");
  require(model.installedBytes > 0 && !model.downloads.empty(), "a model has files");
  for (const ModelDownload& download : model.downloads) {
    require(!download.addresses.isEmpty(), "a download has an address");
    checkName(download.fileName());
    checkAddresses(download.addresses);
    require(download.bytes > 0 && download.sha256.size() == 64, "a download can be verified");
    for (const ModelFile& file : download.files) {
      checkName(file.name);
      checkAddresses(file.addresses);
    }
  }
}

}  // namespace

/// Any bytes are read or rejected; a catalogue keeps all rules.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  try {
    const ModelCatalogue catalogue = ModelCatalogue::read(bytes);
    for (const Model& model : catalogue.models()) {
      check(model);
      require(catalogue.find(model.id) == &model, "an id occurs once");
    }
  } catch (const Failure& failure) {
    require(!descriptionOf(failure).isEmpty(), "a refusal says why");
  }
  return 0;
}
