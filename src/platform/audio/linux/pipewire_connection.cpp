// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_connection.h"

#include <cerrno>
#include <cstdlib>
#include <pipewire/extensions/metadata.h>
#include <pipewire/pipewire.h>
#include <spa/param/audio/format.h>
#include <spa/pod/iter.h>
#include <string_view>
#include <utility>

namespace velun {

namespace {

const char* lookUp(const spa_dict* properties, const char* key) {
  const char* value = properties ? spa_dict_lookup(properties, key) : nullptr;
  return value ? value : "";
}

std::uint32_t idIn(const spa_dict* properties, const char* key) {
  return std::uint32_t(std::strtoul(lookUp(properties, key), nullptr, 10));
}

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

}  // namespace

struct PipeWireConnection::Proxies {
  pw_core* core = nullptr;
  spa_hook coreHook{};
  pw_registry* registry = nullptr;
  spa_hook registryHook{};
  /// Where the session manager keeps its choices.
  pw_proxy* defaults = nullptr;
  std::uint32_t defaultsID = 0;
  spa_hook defaultsHook{};

  void dropDefaults() {
    if (!defaults) return;
    spa_hook_remove(&defaultsHook);
    pw_proxy_destroy(std::exchange(defaults, nullptr));
  }
};

/// What the server says, on the loop's thread.
struct PipeWireConnection::Events {
  static PipeWireConnection& self(void* data) { return *static_cast<PipeWireConnection*>(data); }

  static void done(void* data, std::uint32_t id, int sequence) {
    if (id != PW_ID_CORE) return;
    self(data).lastSynchronized_ = sequence;
    self(data).loop_.wake();
  }

  // Others come from single objects that went away or cannot do what was asked.
  static void error(void* data, std::uint32_t id, int, int result, const char*) {
    if (id != PW_ID_CORE || result != -EPIPE) return;
    self(data).isLost_ = true;
    self(data).changed();
  }

  static void global(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                     const spa_dict* properties) {
    PipeWireConnection& connection = self(data);
    const std::string_view kind = type;
    if (kind == PW_TYPE_INTERFACE_Node) {
      const AudioDevice device{id, lookUp(properties, PW_KEY_NODE_NAME),
                               lookUp(properties, PW_KEY_MEDIA_CLASS)};
      if (!device.isSink() && !device.isSource()) return;
      connection.graph_.addDevice(device);
    } else if (kind == PW_TYPE_INTERFACE_Link) {
      connection.graph_.addLink(id, idIn(properties, PW_KEY_LINK_OUTPUT_NODE),
                                idIn(properties, PW_KEY_LINK_INPUT_NODE));
    } else if (kind == PW_TYPE_INTERFACE_Metadata &&
               std::string_view(lookUp(properties, PW_KEY_METADATA_NAME)) == "default") {
      connection.proxies_->dropDefaults();
      bindDefaults(connection, id);
    } else {
      return;
    }
    connection.changed();
  }

  static void bindDefaults(PipeWireConnection& connection, std::uint32_t id) {
    Proxies& proxies = *connection.proxies_;
    proxies.defaults = static_cast<pw_proxy*>(
        pw_registry_bind(proxies.registry, id, PW_TYPE_INTERFACE_Metadata, PW_VERSION_METADATA, 0));
    if (!proxies.defaults) return;
    proxies.defaultsID = id;
    proxies.defaultsHook = {};
    pw_metadata_add_listener(reinterpret_cast<pw_metadata*>(proxies.defaults),
                             &proxies.defaultsHook, &metadataEvents(), &connection);
    connection.graph_.beginSession();
  }

  static void globalRemove(void* data, std::uint32_t id) {
    PipeWireConnection& connection = self(data);
    if (connection.proxies_->defaults && connection.proxies_->defaultsID == id) {
      connection.proxies_->dropDefaults();
      connection.graph_.endSession();
    }
    connection.graph_.remove(id);
    connection.changed();
  }

  static int property(void* data, std::uint32_t subject, const char* key, const char*,
                      const char* value) {
    if (subject == PW_ID_CORE) {
      self(data).graph_.setDefault(key, value);
      self(data).changed();
    }
    return 0;
  }

  static const pw_core_events& coreEvents() {
    static const pw_core_events events = [] {
      pw_core_events made{};
      made.version = PW_VERSION_CORE_EVENTS;
      made.done = done;
      made.error = error;
      return made;
    }();
    return events;
  }

  static const pw_registry_events& registryEvents() {
    static const pw_registry_events events = [] {
      pw_registry_events made{};
      made.version = PW_VERSION_REGISTRY_EVENTS;
      made.global = global;
      made.global_remove = globalRemove;
      return made;
    }();
    return events;
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

  static void formatParameter(void* data, int, std::uint32_t, std::uint32_t, std::uint32_t,
                              const spa_pod* parameter) {
    auto& format = *static_cast<AudioFormat*>(data);
    // The current format is asked for first and counts; the possible ones fill in.
    if (!parameter || format.sampleRate > 0) return;
    format.sampleRate = firstIntegerOf(parameter, SPA_FORMAT_AUDIO_rate);
    format.channelCount = firstIntegerOf(parameter, SPA_FORMAT_AUDIO_channels);
  }

  static const pw_node_events& nodeEvents() {
    static const pw_node_events events = [] {
      pw_node_events made{};
      made.version = PW_VERSION_NODE_EVENTS;
      made.param = formatParameter;
      return made;
    }();
    return events;
  }
};

std::unique_ptr<PipeWireConnection> PipeWireConnection::open(PipeWireLoop& loop,
                                                             std::function<void()> onChange,
                                                             int* error) {
  errno = 0;
  pw_core* core = pw_context_connect(loop.context(), nullptr, 0);
  if (!core) {
    *error = errno != 0 ? -errno : -EHOSTDOWN;
    return nullptr;
  }
  *error = 0;
  std::unique_ptr<PipeWireConnection> connection(new PipeWireConnection(loop, std::move(onChange)));
  Proxies& proxies = *connection->proxies_;
  proxies.core = core;
  pw_core_add_listener(core, &proxies.coreHook, &Events::coreEvents(), connection.get());
  proxies.registry = pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
  pw_registry_add_listener(proxies.registry, &proxies.registryHook, &Events::registryEvents(),
                           connection.get());
  return connection;
}

PipeWireConnection::PipeWireConnection(PipeWireLoop& loop, std::function<void()> onChange)
    : loop_(loop), onChange_(std::move(onChange)), proxies_(std::make_unique<Proxies>()) {}

PipeWireConnection::~PipeWireConnection() {
  proxies_->dropDefaults();
  spa_hook_remove(&proxies_->registryHook);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(proxies_->registry));
  spa_hook_remove(&proxies_->coreHook);
  pw_core_disconnect(proxies_->core);
}

pw_core* PipeWireConnection::core() const {
  return proxies_->core;
}

int PipeWireConnection::synchronize(std::chrono::milliseconds limit) {
  const int sequence = pw_core_sync(proxies_->core, PW_ID_CORE, 0);
  const bool isAnswered =
      loop_.waitUntil([&] { return lastSynchronized_ == sequence || isLost_; }, limit);
  if (isLost_) return -EPIPE;
  return isAnswered ? 0 : -ETIMEDOUT;
}

AudioFormat PipeWireConnection::formatOf(std::uint32_t device, std::chrono::milliseconds limit) {
  AudioFormat format;
  auto* node = static_cast<pw_proxy*>(
      pw_registry_bind(proxies_->registry, device, PW_TYPE_INTERFACE_Node, PW_VERSION_NODE, 0));
  if (!node) return format;
  spa_hook hook{};
  auto* const object = reinterpret_cast<pw_node*>(node);
  pw_node_add_listener(object, &hook, &Events::nodeEvents(), &format);
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
