// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <memory>
#include <pipewire/pipewire.h>
#include <string>
#include <string_view>

namespace velun {

/// The value of a property of a server's object; empty, or 0, when it has none.
std::string propertyText(const spa_dict* properties, const char* key);
std::uint32_t propertyNumber(const spa_dict* properties, const char* key);

/// A connection to the media server that tells which objects the server has. Belongs to the loop of
/// its context, as all of PipeWire: used on that loop's thread or while that loop is locked.
class PipeWireRegistry {
 public:
  /// What the server says, on the loop's thread.
  class Listener {
   public:
    virtual ~Listener() = default;
    /// An object is there; `kind` is its interface, as in `PW_TYPE_INTERFACE_Node`.
    virtual void added(std::uint32_t id, std::string_view kind, const spa_dict* properties) = 0;
    virtual void removed(std::uint32_t id) = 0;
    /// The server has answered everything up to the `pw_core_sync` with this number.
    virtual void answered(int /*sequence*/) {}
    /// The server is gone; only destroying the connection is left to do, and not from here.
    virtual void lost() = 0;
  };

  /// None, with a negative errno in `error`, when there is no server or no context, which is not
  /// made where the library's settings are missing. The listener must outlive the connection; it
  /// hears of the objects when the loop runs.
  static std::unique_ptr<PipeWireRegistry> open(pw_context* context, Listener& listener,
                                                int* error);
  ~PipeWireRegistry();
  PipeWireRegistry(const PipeWireRegistry&) = delete;
  PipeWireRegistry& operator=(const PipeWireRegistry&) = delete;

  pw_core* core() const { return core_; }
  /// A proxy of an object, for the caller to destroy; none when the object is gone.
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
