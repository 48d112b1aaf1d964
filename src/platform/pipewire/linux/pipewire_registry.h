// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <pipewire/pipewire.h>
#include <string>
#include <string_view>

namespace velun {

/// The value of a property of a PipeWire object; empty, or 0, when the object does not have it.
std::string propertyText(const spa_dict* properties, const char* key);
std::uint32_t propertyNumber(const spa_dict* properties, const char* key);

/// A connection to PipeWire that reports PipeWire's objects. Used only on the thread of its
/// context's loop, or while that loop is locked.
class PipeWireRegistry {
 public:
  /// Receives PipeWire's events, on the loop's thread.
  class Listener {
   public:
    virtual ~Listener() = default;
    /// An object exists; `kind` is its interface, such as `PW_TYPE_INTERFACE_Node`.
    virtual void added(std::uint32_t id, std::string_view kind, const spa_dict* properties) = 0;
    virtual void removed(std::uint32_t id) = 0;
    /// PipeWire has processed everything up to the `pw_core_sync` that returned this number.
    virtual void answered(int /*sequence*/) {}
    /// PipeWire has ended. The connection can only be destroyed, and not from this call.
    virtual void lost() = 0;
  };

  /// Returns null and sets `error` to a negative errno when PipeWire is not running, or -ENOENT
  /// when `context` is null. `listener` must outlive the connection.
  static std::unique_ptr<PipeWireRegistry> open(pw_context* context, Listener& listener,
                                                int* error);
  ~PipeWireRegistry();
  PipeWireRegistry(const PipeWireRegistry&) = delete;
  PipeWireRegistry& operator=(const PipeWireRegistry&) = delete;

  pw_core* core() const { return core_; }
  /// Returns a proxy of an object, owned by the caller; null when the object no longer exists.
  pw_proxy* bind(std::uint32_t id, const char* kind, std::uint32_t version);

 private:
  struct Events;

  PipeWireRegistry(pw_core* core, Listener& listener);

  Listener& listener_;
  pw_core* core_;
  pw_registry* registry_;
  spa_hook coreHook_{};
  spa_hook registryHook_{};
};

}  // namespace velun
