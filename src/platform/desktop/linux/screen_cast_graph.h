// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace velun {

/// The PipeWire objects that show whether the screen is being cast.
///
/// Compositors and portals offer a cast as a video output: `Stream/Output/Video`, or `Video/Source`
/// like a camera, but without a device. The cast is running once the output is linked to a consumer
/// other than the desktop shell, which consumes casts of its own for window previews.
class ScreenCastGraph final {
 public:
  struct Node {
    std::string mediaClass;
    std::string mediaRole;
    std::string name;
    bool hasDevice = false;
    std::uint32_t client = 0;
  };

  void addClient(std::uint32_t id, const std::string& applicationName);
  void addNode(std::uint32_t id, const Node& node);
  void addLink(std::uint32_t id, std::uint32_t outputNode, std::uint32_t inputNode);
  void remove(std::uint32_t id);

  bool isCastRunning() const;

 private:
  struct Link {
    std::uint32_t output;
    std::uint32_t input;
  };

  bool offersScreen(std::uint32_t node) const;
  bool isOfShell(std::uint32_t node) const;

  std::map<std::uint32_t, std::string> clients_;
  std::map<std::uint32_t, Node> nodes_;
  std::map<std::uint32_t, Link> links_;
};

}  // namespace velun
