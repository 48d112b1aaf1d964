// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/credits.h"

namespace velun {

std::vector<Credit> credits() {
  return {
      {"Qt", "LGPL-3.0-only"},
      {"QCoro", "MIT"},
      {"PipeWire", "MIT"},
      {"ICU", "Unicode-DFS-2016"},
      {"FFTW", "GPL-2.0-or-later"},
      {"SoX Resampler", "LGPL-2.1-or-later"},
      {"simdjson", "Apache-2.0"},
      {"libarchive", "BSD-2-Clause"},
      {"PocketSphinx", "BSD-2-Clause"},
      {"sherpa-onnx", "Apache-2.0"},
      {"ONNX Runtime", "MIT"},
      {"eSpeak NG", "GPL-3.0-or-later"},
      {"Apertium", "GPL-2.0-or-later"},
      {"SentencePiece", "Apache-2.0"},
      {"oneDNN", "Apache-2.0"},
  };
}

}  // namespace velun
