// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <map>
#include <memory>
#include <string>

namespace velun::test {

/// A video stream of PipeWire without pictures: a screen cast as compositors and portals offer it,
/// or a program that consumes one. Exists until it is destroyed.
class VideoStream final {
 public:
  enum class Direction { offer, consume };

  /// `properties` such as {"media.class", "Video/Source"}.
  VideoStream(Direction direction, const std::map<std::string, std::string>& properties);
  ~VideoStream();
  VideoStream(const VideoStream&) = delete;
  VideoStream& operator=(const VideoStream&) = delete;

 private:
  struct Objects;
  std::unique_ptr<Objects> objects_;
};

}  // namespace velun::test
