// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_stream.h"

#include <algorithm>
#include <cerrno>
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <utility>

namespace velun {

namespace {

// 21 ms: too short to be noticed in captions, long enough for the processor to sleep in between.
// PipeWire limits buffers to 43 ms, and uses shorter ones than this when another program asks for
// them.
constexpr const char* kLatency = "1024/48000";

void setProperties(pw_properties* properties, const PipeWireStreamOptions& options) {
  pw_properties_set(properties, PW_KEY_NODE_NAME, options.nodeName.c_str());
  if (options.capturesSink) {
    pw_properties_set(properties, PW_KEY_STREAM_CAPTURE_SINK, "true");
    // Keeps mixers from listing Velun as a program that records or that uses a microphone.
    pw_properties_set(properties, PW_KEY_MEDIA_CLASS, "Stream/Input/Audio/Internal");
    if (!options.keepsAwake) pw_properties_set(properties, PW_KEY_NODE_PASSIVE, "true");
    pw_properties_set(properties, "state.restore-props", "false");
    pw_properties_set(properties, "state.restore-target", "false");
  }
  if (!options.target.empty()) {
    pw_properties_set(properties, PW_KEY_TARGET_OBJECT, options.target.c_str());
  }
}

const spa_pod* buildFormat(spa_pod_builder* builder, int channelCount) {
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32;
  info.channels = std::uint32_t(channelCount);
  if (channelCount == 2) {
    info.position[0] = SPA_AUDIO_CHANNEL_FL;
    info.position[1] = SPA_AUDIO_CHANNEL_FR;
  }
  return spa_format_audio_raw_build(builder, SPA_PARAM_EnumFormat, &info);
}

}  // namespace

struct PipeWireStream::Implementation {
  explicit Implementation(PipeWireStream& itsOwner) : owner(itsOwner) {}
  ~Implementation() {
    if (!stream) return;
    spa_hook_remove(&hook);
    pw_stream_destroy(stream);
  }

  static Implementation& self(void* data) { return *static_cast<Implementation*>(data); }

  static void stateChanged(void* data, pw_stream_state old, pw_stream_state state,
                           const char* /*error*/) {
    PipeWireStream& stream = self(data).owner;
    // While there is no device, the stream is in the error state and waits for one.
    stream.isReady_ = stream.isReady_ || state == PW_STREAM_STATE_PAUSED ||
                      state == PW_STREAM_STATE_STREAMING || state == PW_STREAM_STATE_ERROR;
    stream.isDead_ = old != PW_STREAM_STATE_UNCONNECTED && state == PW_STREAM_STATE_UNCONNECTED;
    stream.loop_.notify();
  }

  static void parameterChanged(void* data, std::uint32_t id, const spa_pod* parameter) {
    if (id != SPA_PARAM_Format || !parameter) return;
    spa_audio_info_raw info{};
    if (spa_format_audio_raw_parse(parameter, &info) < 0) return;
    self(data).format = {AudioFormat::Sample::float32, double(info.rate), int(info.channels), true};
  }

  static void process(void* data) {
    Implementation& stream = self(data);
    while (pw_buffer* buffer = pw_stream_dequeue_buffer(stream.stream)) {
      stream.deliver(buffer->buffer->datas[0]);
      pw_stream_queue_buffer(stream.stream, buffer);
    }
  }

  void deliver(const spa_data& samples) const {
    const bool isCorrupted = (samples.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED) != 0;
    if (!owner.onBuffer_ || !samples.data || isCorrupted || format.channelCount == 0) return;
    const std::uint32_t offset = std::min(samples.chunk->offset, samples.maxsize);
    const std::uint32_t size = std::min(samples.chunk->size, samples.maxsize - offset);
    const PcmBuffer buffer =
        PcmBuffer::view(format, {static_cast<const std::byte*>(samples.data) + offset, size});
    if (buffer.frameLength() > 0) owner.onBuffer_(buffer);
  }

  static const pw_stream_events& events() {
    static const pw_stream_events events = [] {
      pw_stream_events made{};
      made.version = PW_VERSION_STREAM_EVENTS;
      made.state_changed = stateChanged;
      made.param_changed = parameterChanged;
      made.process = process;
      return made;
    }();
    return events;
  }

  PipeWireStream& owner;
  pw_stream* stream = nullptr;
  spa_hook hook{};
  AudioFormat format;
};

PipeWireStream::PipeWireStream(PipeWireLoop& loop, PipeWireConnection& connection,
                               const PipeWireStreamOptions& options, BufferHandler onBuffer)
    : implementation_(std::make_unique<Implementation>(*this)),
      loop_(loop),
      onBuffer_(std::move(onBuffer)) {
  pw_properties* properties = pw_properties_new(
      PW_KEY_MEDIA_TYPE, "Audio", PW_KEY_MEDIA_CATEGORY, "Capture", PW_KEY_MEDIA_ROLE,
      "Accessibility", PW_KEY_MEDIA_NAME, "Live captions", PW_KEY_APP_NAME, "Velun", PW_KEY_APP_ID,
      "app.velun.Velun", PW_KEY_APP_ICON_NAME, "app.velun.Velun", PW_KEY_NODE_LATENCY, kLatency,
      nullptr);
  setProperties(properties, options);
  implementation_->stream = pw_stream_new(connection.core(), options.nodeName.c_str(), properties);
  if (!implementation_->stream) {
    error_ = errno != 0 ? -errno : -ENOMEM;
    return;
  }
  pw_stream_add_listener(implementation_->stream, &implementation_->hook, &Implementation::events(),
                         implementation_.get());
  std::uint8_t room[1024];
  spa_pod_builder builder{};
  spa_pod_builder_init(&builder, room, sizeof room);
  const spa_pod* format = buildFormat(&builder, options.channelCount);
  auto flags = PW_STREAM_FLAG_AUTOCONNECT | PW_STREAM_FLAG_MAP_BUFFERS;
  if (!options.target.empty()) flags |= PW_STREAM_FLAG_DONT_RECONNECT;
  error_ = std::min(0, pw_stream_connect(implementation_->stream, PW_DIRECTION_INPUT, PW_ID_ANY,
                                         static_cast<pw_stream_flags>(flags), &format, 1));
}

PipeWireStream::~PipeWireStream() = default;

std::uint32_t PipeWireStream::nodeID() const {
  return implementation_->stream ? pw_stream_get_node_id(implementation_->stream) : SPA_ID_INVALID;
}

}  // namespace velun
