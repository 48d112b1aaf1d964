// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/credits.h"

#include "platform/models/model_catalogue.h"

namespace velun {

std::vector<Credit> credits(const ModelCatalogue& models) {
  std::vector<Credit> credits = {
      {"Qt", "LGPL-3.0-only"},
      {"QCoro", "MIT"},
      {"PipeWire", "MIT"},
      {"ICU", "Unicode-DFS-2016"},
      {"FFTW", "GPL-2.0-or-later"},
      {"SpeexDSP", "BSD-3-Clause"},
      {"SoX Resampler", "LGPL-2.1-or-later"},
      {"simdjson", "Apache-2.0"},
      {"libarchive", "BSD-2-Clause"},
      {"Vosk, Kaldi, OpenFst", "Apache-2.0"},
      {"OpenBLAS", "BSD-3-Clause"},
      // Its package names this licence, and has neither its text nor the names of its makers.
      {"US English model for Android", "ISC"},
      {"sherpa-onnx", "Apache-2.0"},
      {"ONNX Runtime", "MIT"},
      {"eSpeak NG", "GPL-3.0-or-later"},
      {"Apertium", "GPL-2.0-or-later"},
      {"SentencePiece", "Apache-2.0"},
      {"oneDNN", "Apache-2.0"},
      // The texts that the punctuation model was trained on.
      {"Changelog transcripts", "CC-BY-SA-4.0"},
      {"Earnings-21, Earnings-22", "CC-BY-SA-4.0"},
      {"Schema-Guided Dialogue", "CC-BY-SA-4.0"},
      {"Bitcoin Transcripts", "MIT"},
  };
  for (const Model& model : models.models()) credits.push_back({model.id, model.licence});
  return credits;
}

}  // namespace velun
