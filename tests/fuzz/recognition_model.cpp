// SPDX-License-Identifier: GPL-3.0-or-later
#include "memory_folder.h"
#include "platform/speech/helper/model_preflight.h"
#include "require.h"

#include <algorithm>
#include <cmath>
#include <stdexcept>

using namespace velun;
using fuzz::require;

namespace {

template <class Check>
void checkOrRefuse(const Check& check) {
  try {
    check();
  } catch (const std::runtime_error& refusal) {
    require(*refusal.what() != '\0', "a refusal says why");
  }
}

void checkSteps(const RecognizerSettings& settings) {
  const ModelSteps steps = checkRecognitionModel(settings);
  require(std::isfinite(steps.window) && steps.window >= 0 && steps.step > 0, "a model moves on");
}

}  // namespace

/// A recognition model and a token list of any bytes are accepted or rejected. The first two bytes
/// are the size of the model.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const char* bytes = reinterpret_cast<const char*>(data) + 2;
  const std::size_t modelSize = std::min<std::size_t>(data[0] | data[1] << 8, size - 2);
  const QString model = fuzz::memoryFolder() + "/model.onnx";
  const QString tokens = fuzz::memoryFolder() + "/tokens.txt";
  fuzz::put(model, bytes, modelSize);
  fuzz::put(tokens, bytes + modelSize, size - 2 - modelSize);
  RecognizerSettings ctc;
  ctc.ctc = model;
  ctc.tokens = tokens;
  RecognizerSettings nemo = ctc;
  std::swap(nemo.ctc, nemo.nemoCtc);
  RecognizerSettings transducer;
  transducer.encoder = transducer.decoder = transducer.joiner = model;
  transducer.tokens = transducer.punctuationVocabulary = tokens;
  transducer.punctuationModel = model;
  checkOrRefuse([&] { checkSteps(ctc); });
  checkOrRefuse([&] { checkSteps(nemo); });
  checkOrRefuse([&] { checkSteps(transducer); });
  checkOrRefuse([&] { checkPunctuationModel(transducer); });
  return 0;
}
