// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/wanted_stream.h"

namespace velun {

namespace {

bool isInput(const AudioTarget& target) {
  return target.kind == AudioTarget::Kind::input;
}

/// The stream of an input is bound to its device, because the session manager would otherwise move
/// it to the monitor of a sink when the last microphone goes.
bool isBound(const AudioTarget& target) {
  return !target.isProgram() && (isInput(target) || !target.id.isEmpty());
}

}  // namespace

const AudioDevice* deviceOf(const AudioTarget& target, const AudioGraph& graph) {
  if (target.isProgram()) return nullptr;
  if (target.id.isEmpty()) return isInput(target) ? graph.defaultSource() : graph.defaultSink();
  const std::string name = target.id.toStdString();
  return isInput(target) ? graph.source(name) : graph.sink(name);
}

bool canBeCaptured(const AudioTarget& target, const AudioGraph& graph) {
  return target.isProgram() ? graph.hasSession() : deviceOf(target, graph) != nullptr;
}

PipeWireStreamOptions streamFor(const AudioTarget& target, const AudioGraph& graph) {
  PipeWireStreamOptions options;
  options.nodeName = isInput(target) ? "Velun Microphone" : "Velun Tap";
  options.capturesSink = !isInput(target);
  options.isLinkedByOwner = target.isProgram();
  options.keepsAwake = target.isProgram();
  if (const AudioDevice* device = deviceOf(target, graph)) {
    if (isBound(target)) options.target = device->name;
    options.auxChannelCount = graph.auxChannelCount(device->id);
  }
  return options;
}

bool isCapturedBy(const PipeWireStreamOptions& options, const AudioTarget& target,
                  const AudioGraph& graph) {
  if (!isBound(target)) return true;
  const AudioDevice* device = deviceOf(target, graph);
  return device && device->name == options.target;
}

}  // namespace velun
