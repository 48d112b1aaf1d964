// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/scripted_sherpa.h"

namespace velun::test {

namespace {

// Those of the tiny models.
constexpr double kStep = 0.32;
constexpr double kWindow = 0.37;

ScriptedSherpa* present = nullptr;
const int anything = 0;

/// A result with the memory that it points to.
struct OwnedResult : sherpa::Result {
  std::string allText;
  std::vector<std::string> texts;
  std::vector<const char*> pointers;
  std::vector<float> tokenTimes;
};

}  // namespace

ScriptedSherpa::ScriptedSherpa(std::vector<ScriptedStream> streams, double endpointSilence)
    : streams_(std::move(streams)), endpointSilence_(endpointSilence) {
  present = this;
  library_.version = [] {
    return "1.13.8";
  };
  library_.createRecognizer = [](const sherpa::RecognizerConfig*) -> const void* {
    return &anything;
  };
  library_.destroyRecognizer = [](const void*) {
  };
  library_.createStream = [](const void*) -> const void* {
    ++present->created_;
    present->fed_ = 0;
    present->steps_ = 0;
    return &anything;
  };
  library_.destroyStream = [](const void*) {
  };
  library_.acceptWaveform = [](const void*, std::int32_t rate, const float*, std::int32_t count) {
    present->fed_ += static_cast<double>(count) / rate;
  };
  library_.isReady = [](const void*, const void*) {
    return present->isReady() ? 1 : 0;
  };
  library_.decode = [](const void*, const void*) {
    ++present->steps_;
  };
  library_.result = [](const void*, const void*) {
    return present->result();
  };
  library_.destroyResult = [](const sherpa::Result* result) {
    delete static_cast<const OwnedResult*>(result);
  };
  library_.reset = [](const void*, const void*) {
    ++present->resets_;
  };
  library_.isEndpoint = [](const void*, const void*) {
    return present->isEndpoint() ? 1 : 0;
  };
  library_.setOption = [](const void*, const char*, const char*) {
  };
}

ScriptedSherpa::~ScriptedSherpa() {
  present = nullptr;
}

bool ScriptedSherpa::isReady() const {
  return fed_ > steps_ * kStep + kWindow;
}

std::vector<ScriptedToken> ScriptedSherpa::heard() const {
  std::vector<ScriptedToken> tokens;
  if (created_ == 0 || created_ > streams_.size()) return tokens;
  for (const ScriptedToken& token : streams_[created_ - 1]) {
    if (token.time <= steps_ * kStep) tokens.push_back(token);
  }
  return tokens;
}

const sherpa::Result* ScriptedSherpa::result() const {
  auto owned = std::make_unique<OwnedResult>();
  for (const ScriptedToken& token : heard()) {
    owned->allText += token.text;
    owned->texts.push_back(token.text);
    owned->tokenTimes.push_back(static_cast<float>(token.time));
  }
  for (const std::string& text : owned->texts) owned->pointers.push_back(text.c_str());
  owned->text = owned->allText.c_str();
  owned->tokens = owned->pointers.data();
  owned->times = owned->tokenTimes.data();
  owned->count = static_cast<std::int32_t>(owned->texts.size());
  return owned.release();
}

bool ScriptedSherpa::isEndpoint() const {
  const std::vector<ScriptedToken> tokens = heard();
  return !tokens.empty() && steps_ * kStep - tokens.back().time >= endpointSilence_;
}

}  // namespace velun::test
