// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/model_format_error.h"
#include "platform/translation/student/student_model.h"

#include <cstdint>

// A translation model of any bytes is loaded or rejected.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const auto* bytes = reinterpret_cast<const std::byte*>(data);
  try {
    const velun::StudentModel model{
        velun::StudentModelFile(std::vector<std::byte>(bytes, bytes + size))};
  } catch (const velun::ModelFormatError&) {
  }
  return 0;
}
