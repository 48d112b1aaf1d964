// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/playback_stream.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <vector>

namespace velun::test {

namespace {

constexpr std::uint32_t positions[] = {SPA_AUDIO_CHANNEL_FL, SPA_AUDIO_CHANNEL_FR,
                                       SPA_AUDIO_CHANNEL_FC, SPA_AUDIO_CHANNEL_LFE,
                                       SPA_AUDIO_CHANNEL_RL, SPA_AUDIO_CHANNEL_RR};

}  // namespace

struct PlaybackStream::Implementation {
  static void process(void* data) {
    auto& self = *static_cast<Implementation*>(data);
    pw_buffer* buffer = pw_stream_dequeue_buffer(self.stream);
    if (!buffer) return;
    spa_data& samples = buffer->buffer->datas[0];
    const auto channels = std::size_t(self.format.channelCount);
    const std::size_t frameSize = channels * (self.format.isFloat ? 4 : 2);
    std::size_t frames = samples.maxsize / frameSize;
    if (buffer->requested > 0) frames = std::min<std::size_t>(frames, buffer->requested);
    self.mono.resize(frames);
    self.fill(self.mono);
    for (std::size_t i = 0; i < frames * channels; ++i) {
      const bool isHeard =
          self.channel == everyChannel || i % channels == std::size_t(self.channel);
      const float value = isHeard ? self.mono[i / channels] : 0.0F;
      if (self.format.isFloat) {
        static_cast<float*>(samples.data)[i] = value;
      } else {
        static_cast<std::int16_t*>(samples.data)[i] = std::int16_t(std::lround(value * 32767));
      }
    }
    samples.chunk->offset = 0;
    samples.chunk->stride = std::int32_t(frameSize);
    samples.chunk->size = std::uint32_t(frames * frameSize);
    pw_stream_queue_buffer(self.stream, buffer);
  }

  PlaybackFormat format;
  Fill fill;
  int channel = everyChannel;
  std::vector<float> mono;
  pw_thread_loop* loop = nullptr;
  pw_stream* stream = nullptr;
  pw_stream_events events{};
};

PlaybackStream::PlaybackStream(const PlaybackFormat& format, const std::string& target, Fill fill,
                               int channel, const std::string& program)
    : implementation_(std::make_unique<Implementation>()) {
  Implementation& self = *implementation_;
  self.format = format;
  self.fill = std::move(fill);
  self.channel = channel;
  self.events.version = PW_VERSION_STREAM_EVENTS;
  self.events.process = Implementation::process;
  pw_init(nullptr, nullptr);
  self.loop = pw_thread_loop_new("playback", nullptr);
  pw_thread_loop_start(self.loop);
  pw_thread_loop_lock(self.loop);
  pw_properties* properties =
      pw_properties_new(PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Playback",
                        PW_KEY_NODE_NAME, "player", PW_KEY_APP_NAME, program.c_str(), nullptr);
  pw_properties_set(properties, PW_KEY_NODE_LATENCY, "1024/48000");
  if (!target.empty()) pw_properties_set(properties, PW_KEY_TARGET_OBJECT, target.c_str());
  self.stream = pw_stream_new_simple(pw_thread_loop_get_loop(self.loop), "player", properties,
                                     &self.events, &self);
  spa_audio_info_raw info{};
  info.format = format.isFloat ? SPA_AUDIO_FORMAT_F32 : SPA_AUDIO_FORMAT_S16;
  info.rate = std::uint32_t(format.sampleRate);
  info.channels = std::uint32_t(format.channelCount);
  for (std::uint32_t i = 0; i < info.channels; ++i) {
    const bool hasPosition = info.channels <= std::size(positions);
    info.position[i] = hasPosition ? positions[i] : SPA_AUDIO_CHANNEL_AUX0 + i;
  }
  if (info.channels == 1) info.position[0] = SPA_AUDIO_CHANNEL_MONO;
  std::uint8_t room[1024];
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, room, sizeof room);
  const spa_pod* parameter = spa_format_audio_raw_build(&builder, SPA_PARAM_EnumFormat, &info);
  auto flags = PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS;
  if (!target.empty()) flags |= PW_STREAM_FLAG_DONT_RECONNECT;
  pw_stream_connect(self.stream, PW_DIRECTION_OUTPUT, PW_ID_ANY,
                    static_cast<pw_stream_flags>(flags), &parameter, 1);
  pw_thread_loop_unlock(self.loop);
}

PlaybackStream::~PlaybackStream() {
  Implementation& self = *implementation_;
  pw_thread_loop_lock(self.loop);
  pw_stream_destroy(self.stream);
  pw_thread_loop_unlock(self.loop);
  pw_thread_loop_stop(self.loop);
  pw_thread_loop_destroy(self.loop);
  pw_deinit();
}

PlaybackStream::Fill PlaybackStream::tone(double frequency, double sampleRate, float amplitude) {
  return [frequency, sampleRate, amplitude, at = std::size_t(0)](std::span<float> frames) mutable {
    for (float& frame : frames) {
      const double turn = frequency * double(at++) / sampleRate;
      frame = amplitude * float(std::sin(2 * std::numbers::pi * turn));
    }
  };
}

std::unique_ptr<PlaybackStream> PlaybackStream::play(const std::string& target, double frequency,
                                                     const std::string& program) {
  const PlaybackFormat stereo;
  return std::make_unique<PlaybackStream>(stereo, target, tone(frequency, stereo.sampleRate, 0.5F),
                                          everyChannel, program);
}

}  // namespace velun::test
