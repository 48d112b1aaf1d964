// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_input_node.h"
#include "platform/foundation/failure.h"

#include <memory>
#include <optional>
#include <QStringList>

namespace velun::test {

/// What an input node is told to do and what it was asked. Outlives the node, which a source owns.
struct InputNodeScript {
  AudioFormat format{AudioFormat::Sample::float32, 44'100, 1, true};
  /// Thrown by the start of the engine.
  std::optional<QString> startFailure;

  QStringList calls;
  std::size_t bufferSize = 0;
  AudioFormat tapFormat;
  AudioInputNode::TapBlock block;
};

class ScriptedInputNode final : public AudioInputNode {
 public:
  explicit ScriptedInputNode(std::shared_ptr<InputNodeScript> script)
      : script_(std::move(script)) {}

  AudioFormat outputFormat() const override {
    script_->calls << "outputFormat";
    return script_->format;
  }
  void installTap(std::size_t bufferSize, const AudioFormat& format, TapBlock block) override {
    script_->calls << "installTap";
    script_->bufferSize = bufferSize;
    script_->tapFormat = format;
    script_->block = std::move(block);
  }
  void removeTap() override {
    script_->calls << "removeTap";
    script_->block = nullptr;
  }
  void startEngine() override {
    script_->calls << "startEngine";
    if (script_->startFailure) throw Failure(*script_->startFailure);
  }
  void stopEngine() override { script_->calls << "stopEngine"; }

 private:
  std::shared_ptr<InputNodeScript> script_;
};

}  // namespace velun::test
