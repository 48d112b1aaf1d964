// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_stream.h"

#include "platform/audio/mono_mixer.h"

#include <algorithm>
#include <cerrno>
#include <cstddef>
#include <optional>
#include <pipewire/pipewire.h>
#include <spa/param/audio/format-utils.h>
#include <spa/param/buffers.h>
#include <utility>

namespace velun {

namespace {

// 21 ms: too short to be noticed in captions, long enough for the processor to sleep in between.
// PipeWire limits buffers to 43 ms, and uses shorter ones than this when another program asks for
// them.
constexpr const char* kLatency = "1024/48000";

// PipeWire drops sound once all buffers wait for a thread that gets no time on a busy machine. With
// its standard of two, that takes some 20 ms; with these, half a second. PipeWire allows 64.
constexpr int kBufferCount = 48;

/// Whether a stream runs without links.
spa_dict awakeProperties(bool isAwake) {
  static constexpr spa_dict_item items[][2] = {
      {{PW_KEY_NODE_ALWAYS_PROCESS, "false"}, {PW_KEY_NODE_WANT_DRIVER, "false"}},
      {{PW_KEY_NODE_ALWAYS_PROCESS, "true"}, {PW_KEY_NODE_WANT_DRIVER, "true"}}};
  return SPA_DICT_INIT(items[isAwake ? 1 : 0], 2);
}

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
  if (options.isLinkedByOwner) {
    const spa_dict awake = awakeProperties(options.keepsAwake);
    pw_properties_update(properties, &awake);
  }
  if (!options.target.empty()) {
    pw_properties_set(properties, PW_KEY_TARGET_OBJECT, options.target.c_str());
  }
}

const spa_pod* buildFormat(spa_pod_builder* builder, const PipeWireStreamOptions& options) {
  spa_audio_info_raw info{};
  info.format = SPA_AUDIO_FORMAT_F32;
  info.rate = AudioSource::kSampleRate;
  if (options.capturesSink) {
    // PipeWire mixes the channels of an output down by their positions.
    info.channels = 2;
    info.position[0] = SPA_AUDIO_CHANNEL_FL;
    info.position[1] = SPA_AUDIO_CHANNEL_FR;
  } else if (options.auxChannelCount > 0) {
    // Left alone, PipeWire would take the first two and drop the others.
    info.channels = std::min<std::uint32_t>(options.auxChannelCount, SPA_AUDIO_MAX_CHANNELS);
    for (std::uint32_t i = 0; i < info.channels; ++i) info.position[i] = SPA_AUDIO_CHANNEL_AUX0 + i;
  }
  return spa_format_audio_raw_build(builder, SPA_PARAM_EnumFormat, &info);
}

const spa_pod* buildBuffers(spa_pod_builder* builder) {
  return static_cast<const spa_pod*>(spa_pod_builder_add_object(
      builder, SPA_TYPE_OBJECT_ParamBuffers, SPA_PARAM_Buffers, SPA_PARAM_BUFFERS_buffers,
      SPA_POD_CHOICE_RANGE_Int(kBufferCount, kBufferCount, 64)));
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
    self(data).mixer.emplace(info.channels);
    std::uint8_t room[256];
    spa_pod_builder builder{};
    spa_pod_builder_init(&builder, room, sizeof room);
    const spa_pod* buffers = buildBuffers(&builder);
    pw_stream_update_params(self(data).stream, &buffers, 1);
  }

  static void process(void* data) {
    Implementation& stream = self(data);
    while (pw_buffer* buffer = pw_stream_dequeue_buffer(stream.stream)) {
      stream.deliver(buffer->buffer->datas[0]);
      pw_stream_queue_buffer(stream.stream, buffer);
    }
  }

  void deliver(const spa_data& data) {
    const bool isCorrupted = (data.chunk->flags & SPA_CHUNK_FLAG_CORRUPTED) != 0;
    if (!owner.handler_ || !data.data || isCorrupted || !mixer) return;
    const std::uint32_t offset = std::min(data.chunk->offset, data.maxsize);
    const std::uint32_t size = std::min(data.chunk->size, data.maxsize - offset);
    const auto* first =
        reinterpret_cast<const float*>(static_cast<const std::byte*>(data.data) + offset);
    const std::span<const float> samples = mixer->mix({first, size / sizeof(float)});
    if (!samples.empty()) owner.handler_(samples);
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
  /// Empty until the number of channels has been negotiated.
  std::optional<MonoMixer> mixer;
};

PipeWireStream::PipeWireStream(PipeWireLoop& loop, PipeWireConnection& connection,
                               const PipeWireStreamOptions& options, AudioSource::Handler handler)
    : implementation_(std::make_unique<Implementation>(*this)),
      loop_(loop),
      handler_(std::move(handler)),
      isKeptAwake_(options.keepsAwake) {
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
  const spa_pod* format = buildFormat(&builder, options);
  auto flags = static_cast<int>(PW_STREAM_FLAG_MAP_BUFFERS);
  if (!options.isLinkedByOwner) flags |= PW_STREAM_FLAG_AUTOCONNECT;
  if (!options.target.empty()) flags |= PW_STREAM_FLAG_DONT_RECONNECT;
  error_ = std::min(0, pw_stream_connect(implementation_->stream, PW_DIRECTION_INPUT, PW_ID_ANY,
                                         static_cast<pw_stream_flags>(flags), &format, 1));
}

PipeWireStream::~PipeWireStream() = default;

void PipeWireStream::keepAwake(bool isAwake) {
  if (std::exchange(isKeptAwake_, isAwake) == isAwake) return;
  const spa_dict properties = awakeProperties(isAwake);
  pw_stream_update_properties(implementation_->stream, &properties);
  if (isAwake) return;
  // PipeWire looks at the properties again when the activity or the links change. Waking up needs
  // none of this: sound has arrived, so the stream runs until the program ends, which is a change.
  pw_stream_set_active(implementation_->stream, false);
  pw_stream_set_active(implementation_->stream, true);
}

std::uint32_t PipeWireStream::nodeID() const {
  return implementation_->stream ? pw_stream_get_node_id(implementation_->stream) : SPA_ID_INVALID;
}

}  // namespace velun
