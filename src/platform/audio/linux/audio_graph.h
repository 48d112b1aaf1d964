// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <map>
#include <string>

namespace velun {

/// A sink or source of PipeWire, or a stream that a program plays.
struct AudioDevice {
  std::uint32_t id = 0;
  /// Stable across restarts.
  std::string name;
  /// Such as "Audio/Sink" or "Audio/Source/Virtual".
  std::string mediaClass;
  /// The name to show.
  std::string description;
  /// The program's name; empty for most devices.
  std::string program = {};

  bool isSink() const;
  /// False for the monitor of a sink.
  bool isSource() const;
  /// A stream that a program plays, and that mixers show as one of that program.
  bool isPlayback() const;
  bool operator==(const AudioDevice&) const = default;
};

/// A connection point of a node, for one channel.
struct AudioPort {
  std::uint32_t node = 0;
  bool isOutput = false;
  /// Such as "FL", "MONO" or "AUX3".
  std::string channel;
};

/// PipeWire's devices, streams and links, and the default devices that its session manager has
/// chosen.
class AudioGraph {
 public:
  void addDevice(const AudioDevice& device);
  void addLink(std::uint32_t link, std::uint32_t outputNode, std::uint32_t inputNode);
  void addPort(std::uint32_t port, const AudioPort& description);
  /// Removes the device, link or port with this id.
  void remove(std::uint32_t id);

  /// A session manager has started. Discards what an earlier one chose.
  void beginSession();
  void endSession();
  /// Stores one of the session manager's choices: `value` is JSON such as {"name":"speakers"}, or
  /// null to remove the choice. A null key removes all. Ignores keys other than those of the
  /// default devices.
  void setDefault(const char* key, const char* value);

  bool hasSession() const { return hasSession_; }
  /// The number of session managers seen so far.
  int sessionNumber() const { return sessionNumber_; }

  /// With the streams that programs play.
  const std::map<std::uint32_t, AudioDevice>& devices() const { return devices_; }
  const std::map<std::uint32_t, AudioPort>& ports() const { return ports_; }
  /// Null while the device that was chosen does not exist.
  const AudioDevice* defaultSink() const;
  /// The default microphone. Null when the session manager has chosen the monitor of a sink because
  /// there is no microphone.
  const AudioDevice* defaultSource() const;
  /// Null when no sink or source has this name.
  const AudioDevice* sink(const std::string& name) const;
  const AudioDevice* source(const std::string& name) const;
  /// The number of channels of a source whose channels have no positions; 0 for other devices.
  std::uint32_t auxChannelCount(std::uint32_t device) const;
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
  std::map<std::uint32_t, AudioPort> ports_;
  std::string defaultSinkName_;
  std::string defaultSourceName_;
  bool hasSession_ = false;
  int sessionNumber_ = 0;
};

}  // namespace velun
