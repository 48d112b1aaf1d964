// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/video_stream.h"

#include <array>
#include <cstdint>
#include <pipewire/pipewire.h>
#include <spa/param/video/format-utils.h>

namespace velun::test {

struct VideoStream::Objects {
  pw_thread_loop* loop = nullptr;
  pw_stream* stream = nullptr;
  pw_stream_events events{};
};

VideoStream::VideoStream(Direction direction, const std::map<std::string, std::string>& properties)
    : objects_(std::make_unique<Objects>()) {
  pw_init(nullptr, nullptr);
  objects_->loop = pw_thread_loop_new("video", nullptr);
  objects_->events.version = PW_VERSION_STREAM_EVENTS;
  pw_thread_loop_start(objects_->loop);
  pw_thread_loop_lock(objects_->loop);
  pw_properties* list = pw_properties_new(nullptr, nullptr);
  for (const auto& [key, value] : properties) pw_properties_set(list, key.c_str(), value.c_str());
  objects_->stream = pw_stream_new_simple(pw_thread_loop_get_loop(objects_->loop), "video", list,
                                          &objects_->events, nullptr);
  std::array<std::uint8_t, 1024> buffer{};
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, buffer.data(), buffer.size());
  spa_video_info_raw info{};
  info.format = SPA_VIDEO_FORMAT_BGRx;
  info.size = {640, 480};
  info.framerate = {30, 1};
  const spa_pod* format = spa_format_video_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
  const bool offers = direction == Direction::offer;
  const int flags =
      (offers ? PW_STREAM_FLAG_DRIVER : PW_STREAM_FLAG_AUTOCONNECT) | PW_STREAM_FLAG_MAP_BUFFERS;
  pw_stream_connect(objects_->stream, offers ? PW_DIRECTION_OUTPUT : PW_DIRECTION_INPUT, PW_ID_ANY,
                    static_cast<pw_stream_flags>(flags), &format, 1);
  pw_thread_loop_unlock(objects_->loop);
}

VideoStream::~VideoStream() {
  pw_thread_loop_lock(objects_->loop);
  pw_stream_destroy(objects_->stream);
  pw_thread_loop_unlock(objects_->loop);
  pw_thread_loop_stop(objects_->loop);
  pw_thread_loop_destroy(objects_->loop);
  pw_deinit();
}

}  // namespace velun::test
