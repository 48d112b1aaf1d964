// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_targets.h"

#include <algorithm>
#include <set>
#include <string>

namespace velun {

using namespace std::chrono_literals;

namespace {

constexpr auto kReconnectInterval = 2000ms;

std::vector<AudioTarget> targetsOf(const AudioGraph& graph) {
  std::vector<AudioTarget> targets;
  const auto add = [&targets](AudioTarget::Kind kind, const AudioDevice& device) {
    const QString id = QString::fromStdString(device.name);
    const QString name = QString::fromStdString(device.description);
    targets.push_back({kind, id, name.isEmpty() ? id : name});
  };
  std::set<std::string> programs;
  for (const auto& [id, device] : graph.devices()) {
    if (device.isPlayback()) programs.insert(device.program);
    if (device.name.empty()) continue;
    if (device.isSink()) add(AudioTarget::Kind::output, device);
    if (device.isSource()) add(AudioTarget::Kind::input, device);
  }
  for (const std::string& program : programs) {
    const QString name = QString::fromStdString(program);
    targets.push_back({AudioTarget::Kind::program, name, name});
  }
  std::ranges::sort(targets, [](const AudioTarget& a, const AudioTarget& b) {
    if (a.kind != b.kind) return a.kind < b.kind;
    const int order = a.name.localeAwareCompare(b.name);
    return order != 0 ? order < 0 : a.id < b.id;
  });
  return targets;
}

}  // namespace

PipeWireTargets::PipeWireTargets(Clock& clock) : clock_(clock) {
  connectToServer();
}

PipeWireTargets::~PipeWireTargets() {
  if (!loop_) return;
  const PipeWireLoop::Lock lock(*loop_);
  connection_.reset();
}

void PipeWireTargets::connectToServer() {
  int status = 0;
  if (!loop_) {
    loop_ = PipeWireLoop::start("AudioTargets", &status);
    if (loop_) connect(loop_.get(), &PipeWireLoop::changed, this, &PipeWireTargets::review);
  }
  if (loop_) {
    const PipeWireLoop::Lock lock(*loop_);
    connection_ = PipeWireConnection::open(*loop_, &status);
  }
  reconnectCall_.reset();
  if (connection_) return;
  reconnectCall_ = clock_.callAfter(kReconnectInterval, [this] { connectToServer(); });
}

void PipeWireTargets::review() {
  std::vector<AudioTarget> targets;
  bool isLost = false;
  {
    const PipeWireLoop::Lock lock(*loop_);
    if (connection_ && connection_->isLost()) {
      connection_.reset();
      isLost = true;
    }
    if (connection_ && !connection_->isComplete()) return;
    if (connection_) targets = targetsOf(connection_->graph());
  }
  if (isLost) connectToServer();
  if (targets == targets_) return;
  targets_ = std::move(targets);
  Q_EMIT changed();
}

}  // namespace velun
