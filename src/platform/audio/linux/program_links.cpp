// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/program_links.h"

#include <algorithm>
#include <iterator>
#include <pipewire/pipewire.h>
#include <string>

namespace velun {

namespace {

enum class Side { none, left, right, both };

/// Where a channel is heard.
Side sideOf(const std::string& channel) {
  if (channel == "LFE") return Side::none;
  // "FL", "RL", "SL" and the like; "FC", "MONO" and channels without a position are in the middle.
  if (channel.starts_with("AUX") || channel == "MONO") return Side::both;
  if (channel.ends_with('L')) return Side::left;
  return channel.ends_with('R') ? Side::right : Side::both;
}

bool isHeard(const AudioTarget& target, const AudioDevice& playback) {
  const bool isProgram = playback.program == target.id.toStdString();
  return isProgram == (target.kind == AudioTarget::Kind::program);
}

}  // namespace

std::set<PortPair> linksToPrograms(const AudioTarget& target, std::uint32_t stream,
                                   const AudioGraph& graph) {
  std::set<PortPair> links;
  for (const auto& [input, ear] : graph.ports()) {
    if (ear.node != stream || ear.isOutput) continue;
    for (const auto& [output, port] : graph.ports()) {
      const auto playback = graph.devices().find(port.node);
      const bool isPlayed =
          port.isOutput && playback != graph.devices().end() && playback->second.isPlayback();
      if (!isPlayed || !isHeard(target, playback->second)) continue;
      const Side side = sideOf(port.channel);
      if (side == Side::both || (side != Side::none && side == sideOf(ear.channel))) {
        links.insert({output, input});
      }
    }
  }
  return links;
}

void ProgramLinks::update(const std::set<PortPair>& wanted, PipeWireConnection& connection) {
  for (const PortPair& pair : wanted) {
    if (requested_.contains(pair)) continue;
    const std::string output = std::to_string(pair.output);
    const std::string input = std::to_string(pair.input);
    // The link outlives its proxy and ends with its ports.
    const spa_dict_item items[] = {{PW_KEY_LINK_OUTPUT_PORT, output.c_str()},
                                   {PW_KEY_LINK_INPUT_PORT, input.c_str()},
                                   {PW_KEY_OBJECT_LINGER, "true"}};
    const spa_dict properties = SPA_DICT_INIT(items, 3);
    void* link = pw_core_create_object(connection.core(), "link-factory", PW_TYPE_INTERFACE_Link,
                                       PW_VERSION_LINK, &properties, 0);
    if (link) pw_proxy_destroy(static_cast<pw_proxy*>(link));
  }
  requested_ = wanted;
}

}  // namespace velun
