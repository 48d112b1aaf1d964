// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/store/verified_record.h"

#include "memory_folder.h"
#include "require.h"

using namespace velun;

/// Any bytes are read as a record, which never covers a missing file.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  const QString folder = fuzz::memoryFolder();
  fuzz::put(folder + "/verified.json", reinterpret_cast<const char*>(data), size);
  const VerifiedRecord record = VerifiedRecord::read(folder);
  Model model;
  model.downloads.push_back({{"https://localhost/model.bin"},
                             4,
                             QByteArray(64, 'a'),
                             ModelPacking::none,
                             {{"model.bin", 4, QByteArray(64, 'a')}}});
  fuzz::require(!record.covers(model, folder), "a missing file is not verified");
  record.write(folder);
  VerifiedRecord::read(folder);
  return 0;
}
