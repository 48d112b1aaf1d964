// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_connection.h"

#include <cerrno>
#include <pipewire/extensions/metadata.h>
#include <spa/param/audio/format.h>
#include <spa/pod/iter.h>
#include <string_view>
#include <utility>

namespace velun {

namespace {

int firstIntegerOf(const spa_pod* object, std::uint32_t key) {
  const spa_pod_prop* property = spa_pod_find_prop(object, nullptr, key);
  if (!property) return 0;
  std::uint32_t count = 0;
  std::uint32_t choice = 0;
  // The first value of a choice is its default.
  const spa_pod* value = spa_pod_get_values(&property->value, &count, &choice);
  std::int32_t result = 0;
  if (count > 0 && SPA_POD_TYPE(value) == SPA_TYPE_Int) {
    result = *static_cast<const std::int32_t*>(SPA_POD_BODY_CONST(value));
  }
  return result;
}

void formatParameter(void* data, int, std::uint32_t, std::uint32_t, std::uint32_t,
                     const spa_pod* parameter) {
  auto& format = *static_cast<AudioFormat*>(data);
  // The current format is asked for first and counts; the possible ones fill in.
  if (!parameter || format.sampleRate > 0) return;
  format.sampleRate = firstIntegerOf(parameter, SPA_FORMAT_AUDIO_rate);
  format.channelCount = firstIntegerOf(parameter, SPA_FORMAT_AUDIO_channels);
}

const pw_node_events& nodeEvents() {
  static const pw_node_events events = [] {
    pw_node_events made{};
    made.version = PW_VERSION_NODE_EVENTS;
    made.param = formatParameter;
    return made;
  }();
  return events;
}

}  // namespace

/// What the server says, on the loop's thread.
class PipeWireConnection::Following final : public PipeWireRegistry::Listener {
 public:
  explicit Following(PipeWireConnection& connection) : connection_(connection) {}
  Following(const Following&) = delete;
  Following& operator=(const Following&) = delete;

  void added(std::uint32_t id, std::string_view kind, const spa_dict* properties) override {
    if (kind == PW_TYPE_INTERFACE_Node) {
      const AudioDevice device{id, propertyText(properties, PW_KEY_NODE_NAME),
                               propertyText(properties, PW_KEY_MEDIA_CLASS)};
      if (!device.isSink() && !device.isSource()) return;
      connection_.graph_.addDevice(device);
    } else if (kind == PW_TYPE_INTERFACE_Link) {
      connection_.graph_.addLink(id, propertyNumber(properties, PW_KEY_LINK_OUTPUT_NODE),
                                 propertyNumber(properties, PW_KEY_LINK_INPUT_NODE));
    } else if (kind == PW_TYPE_INTERFACE_Metadata &&
               propertyText(properties, PW_KEY_METADATA_NAME) == "default") {
      dropDefaults();
      followDefaults(id);
    } else {
      return;
    }
    connection_.changed();
  }

  void removed(std::uint32_t id) override {
    if (defaults_ && defaultsID_ == id) {
      dropDefaults();
      connection_.graph_.endSession();
    }
    connection_.graph_.remove(id);
    connection_.changed();
  }

  void answered(int sequence) override {
    connection_.lastSynchronized_ = sequence;
    connection_.loop_.wake();
  }

  void lost() override {
    connection_.isLost_ = true;
    connection_.changed();
  }

  /// Lets go of the server's objects, while the connection still stands.
  void stop() { dropDefaults(); }

 private:
  void followDefaults(std::uint32_t id) {
    defaults_ = connection_.registry_->bind(id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA);
    if (!defaults_) return;
    defaultsID_ = id;
    defaultsHook_ = {};
    pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(defaults_), &defaultsHook_,
                             &metadataEvents(), &connection_);
    connection_.graph_.beginSession();
  }

  void dropDefaults() {
    if (!defaults_) return;
    spa_hook_remove(&defaultsHook_);
    pw_proxy_destroy(std::exchange(defaults_, nullptr));
  }

  static int property(void* data, std::uint32_t subject, const char* key, const char*,
                      const char* value) {
    if (subject != PW_ID_CORE) return 0;
    auto& connection = *static_cast<PipeWireConnection*>(data);
    connection.graph_.setDefault(key, value);
    connection.changed();
    return 0;
  }

  static const pw_metadata_events& metadataEvents() {
    static const pw_metadata_events events = [] {
      pw_metadata_events made{};
      made.version = PW_VERSION_METADATA_EVENTS;
      made.property = property;
      return made;
    }();
    return events;
  }

  PipeWireConnection& connection_;
  /// Where the session manager keeps its choices.
  pw_proxy* defaults_ = nullptr;
  std::uint32_t defaultsID_ = 0;
  spa_hook defaultsHook_{};
};

std::unique_ptr<PipeWireConnection> PipeWireConnection::open(PipeWireLoop& loop,
                                                             std::function<void()> onChange,
                                                             int* error) {
  std::unique_ptr<PipeWireConnection> connection(new PipeWireConnection(loop, std::move(onChange)));
  connection->registry_ = PipeWireRegistry::open(loop.context(), *connection->following_, error);
  return connection->registry_ ? std::move(connection) : nullptr;
}

PipeWireConnection::PipeWireConnection(PipeWireLoop& loop, std::function<void()> onChange)
    : loop_(loop), onChange_(std::move(onChange)), following_(std::make_unique<Following>(*this)) {}

PipeWireConnection::~PipeWireConnection() {
  // Proxies go before the connection that they were made in.
  following_->stop();
}

pw_core* PipeWireConnection::core() const {
  return registry_->core();
}

int PipeWireConnection::synchronize(std::chrono::milliseconds limit) {
  const int sequence = pw_core_sync(registry_->core(), PW_ID_CORE, 0);
  const bool isAnswered =
      loop_.waitUntil([&] { return lastSynchronized_ == sequence || isLost_; }, limit);
  if (isLost_) return -EPIPE;
  return isAnswered ? 0 : -ETIMEDOUT;
}

AudioFormat PipeWireConnection::formatOf(std::uint32_t device, std::chrono::milliseconds limit) {
  AudioFormat format;
  pw_proxy* node = registry_->bind(device, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE);
  if (!node) return format;
  spa_hook hook{};
  auto* const object = reinterpret_cast<pw_node*>(node);
  pw_node_add_listener(object, &hook, &nodeEvents(), &format);
  pw_node_enum_params(object, 0, SPA_PARAM_Format, 0, 1, nullptr);
  pw_node_enum_params(object, 0, SPA_PARAM_EnumFormat, 0, 1, nullptr);
  synchronize(limit);
  spa_hook_remove(&hook);
  pw_proxy_destroy(node);
  return format;
}

void PipeWireConnection::changed() {
  loop_.wake();
  onChange_();
}

}  // namespace velun
