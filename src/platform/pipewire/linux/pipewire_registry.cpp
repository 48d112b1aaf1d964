// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/pipewire/linux/pipewire_registry.h"

#include <cerrno>
#include <cstdlib>

namespace velun {

std::string propertyText(const spa_dict* properties, const char* key) {
  const char* value = properties ? spa_dict_lookup(properties, key) : nullptr;
  return value ? value : "";
}

std::uint32_t propertyNumber(const spa_dict* properties, const char* key) {
  return std::uint32_t(std::strtoul(propertyText(properties, key).c_str(), nullptr, 10));
}

struct PipeWireRegistry::Events {
  static Listener& listener(void* data) { return *static_cast<Listener*>(data); }

  static void done(void* data, std::uint32_t id, int sequence) {
    if (id == PW_ID_CORE) listener(data).answered(sequence);
  }

  // Other errors concern single objects, which were removed or refused a request.
  static void error(void* data, std::uint32_t id, int, int result, const char*) {
    if (id == PW_ID_CORE && result == -EPIPE) listener(data).lost();
  }

  static void global(void* data, std::uint32_t id, std::uint32_t, const char* kind, std::uint32_t,
                     const spa_dict* properties) {
    listener(data).added(id, kind, properties);
  }

  static void globalRemove(void* data, std::uint32_t id) { listener(data).removed(id); }

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
};

std::unique_ptr<PipeWireRegistry> PipeWireRegistry::open(pw_context* context, Listener& listener,
                                                         int* error) {
  if (!context) {
    *error = -ENOENT;
    return nullptr;
  }
  errno = 0;
  pw_core* core = pw_context_connect(context, nullptr, 0);
  if (!core) {
    *error = errno != 0 ? -errno : -EHOSTDOWN;
    return nullptr;
  }
  *error = 0;
  return std::unique_ptr<PipeWireRegistry>(new PipeWireRegistry(core, listener));
}

PipeWireRegistry::PipeWireRegistry(pw_core* core, Listener& listener)
    : listener_(listener),
      core_(core),
      registry_(pw_core_get_registry(core, PW_VERSION_REGISTRY, 0)) {
  pw_core_add_listener(core_, &coreHook_, &Events::coreEvents(), &listener_);
  pw_registry_add_listener(registry_, &registryHook_, &Events::registryEvents(), &listener_);
}

PipeWireRegistry::~PipeWireRegistry() {
  spa_hook_remove(&registryHook_);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
  spa_hook_remove(&coreHook_);
  pw_core_disconnect(core_);
}

pw_proxy* PipeWireRegistry::bind(std::uint32_t id, const char* kind, std::uint32_t version) {
  return static_cast<pw_proxy*>(pw_registry_bind(registry_, id, kind, version, 0));
}

}  // namespace velun
