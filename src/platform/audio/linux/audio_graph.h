// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace velun {

/// A sink or source of the sound server.
struct AudioDevice {
  std::uint32_t id = 0;
  std::string name;
  /// Such as "Audio/Sink" or "Audio/Source/Virtual".
  std::string mediaClass;

  bool isSink() const;
  /// A sink's monitor is no source.
  bool isSource() const;
  bool operator==(const AudioDevice&) const = default;
};

/// What is known of the sound server's devices, its links and the defaults that its session
/// manager has chosen.
class AudioGraph {
 public:
  void addDevice(const AudioDevice& device);
  void addLink(std::uint32_t link, std::uint32_t outputNode, std::uint32_t inputNode);
  /// Forgets the device or link with this id.
  void remove(std::uint32_t id);

  /// A session manager has come; what an earlier one chose no longer counts.
  void beginSession();
  void endSession();
  /// Takes one of the session manager's choices: `value` is JSON such as {"name":"speakers"}, null
  /// when there is none any more. Keys other than those of the default devices are ignored.
  void setDefault(const char* key, const char* value);

  bool hasSession() const { return hasSession_; }
  /// Counts the session managers seen.
  int sessionNumber() const { return sessionNumber_; }

  const AudioDevice* device(std::uint32_t id) const;
  /// None while there is no such device, whatever was chosen.
  const AudioDevice* defaultSink() const;
  /// The default microphone. None where the session manager offers a sink's monitor for want of a
  /// microphone.
  const AudioDevice* defaultSource() const;
  /// Whether the output of the first node is linked into the second.
  bool isLinked(std::uint32_t outputNode, std::uint32_t inputNode) const;

 private:
  struct Link {
    std::uint32_t outputNode = 0;
    std::uint32_t inputNode = 0;
    bool operator==(const Link&) const = default;
  };

  const AudioDevice* named(const std::string& name, bool (AudioDevice::*kind)() const) const;

  std::map<std::uint32_t, AudioDevice> devices_;
  std::map<std::uint32_t, Link> links_;
  std::string defaultSinkName_;
  std::string defaultSourceName_;
  bool hasSession_ = false;
  int sessionNumber_ = 0;
};

}  // namespace velun
