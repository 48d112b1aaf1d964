// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/screen_cast_graph.h"

#include <algorithm>
#include <array>
#include <string_view>

namespace velun {

namespace {

constexpr std::array<std::string_view, 4> kShells = {"plasmashell", "kwin_wayland", "gnome-shell",
                                                     "cinnamon"};

}  // namespace

void ScreenCastGraph::addClient(std::uint32_t id, const std::string& applicationName) {
  clients_[id] = applicationName;
}

void ScreenCastGraph::addNode(std::uint32_t id, const Node& node) {
  nodes_[id] = node;
}

void ScreenCastGraph::addLink(std::uint32_t id, std::uint32_t outputNode, std::uint32_t inputNode) {
  links_[id] = {outputNode, inputNode};
}

void ScreenCastGraph::remove(std::uint32_t id) {
  clients_.erase(id);
  nodes_.erase(id);
  links_.erase(id);
}

bool ScreenCastGraph::offersScreen(std::uint32_t id) const {
  const auto found = nodes_.find(id);
  if (found == nodes_.end()) return false;
  const Node& node = found->second;
  if (node.mediaClass == "Stream/Output/Video") return true;
  const bool isCamera = node.mediaRole == "Camera" || node.hasDevice ||
                        node.name.starts_with("v4l2_") || node.name.starts_with("libcamera_");
  return node.mediaClass == "Video/Source" && !isCamera;
}

bool ScreenCastGraph::isOfShell(std::uint32_t id) const {
  const auto node = nodes_.find(id);
  if (node == nodes_.end()) return false;
  const auto client = clients_.find(node->second.client);
  return client != clients_.end() && std::ranges::find(kShells, client->second) != kShells.end();
}

bool ScreenCastGraph::isCastRunning() const {
  return std::ranges::any_of(links_, [this](const auto& entry) {
    return offersScreen(entry.second.output) && !isOfShell(entry.second.input);
  });
}

}  // namespace velun
