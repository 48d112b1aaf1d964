// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/audio/linux/pipewire_connection.h"

#include <pipewire/extensions/metadata.h>
#include <string_view>
#include <utility>

namespace velun {

/// Receives PipeWire's events, on the loop's thread.
class PipeWireConnection::Listener final : public PipeWireRegistry::Listener {
 public:
  explicit Listener(PipeWireConnection& connection) : connection_(connection) {}
  Listener(const Listener&) = delete;
  Listener& operator=(const Listener&) = delete;

  void added(std::uint32_t id, std::string_view kind, const spa_dict* properties) override {
    if (kind == PW_TYPE_INTERFACE_Node) {
      const AudioDevice device{id, propertyText(properties, PW_KEY_NODE_NAME),
                               propertyText(properties, PW_KEY_MEDIA_CLASS),
                               propertyText(properties, PW_KEY_NODE_DESCRIPTION),
                               propertyText(properties, PW_KEY_APP_NAME)};
      if (!device.isSink() && !device.isSource() && !device.isPlayback()) return;
      connection_.graph_.addDevice(device);
    } else if (kind == PW_TYPE_INTERFACE_Link) {
      connection_.graph_.addLink(id, propertyNumber(properties, PW_KEY_LINK_OUTPUT_NODE),
                                 propertyNumber(properties, PW_KEY_LINK_INPUT_NODE));
    } else if (kind == PW_TYPE_INTERFACE_Port) {
      connection_.graph_.addPort(id, {propertyNumber(properties, PW_KEY_NODE_ID),
                                      propertyText(properties, PW_KEY_PORT_DIRECTION) == "out",
                                      propertyText(properties, PW_KEY_AUDIO_CHANNEL)});
    } else if (kind == PW_TYPE_INTERFACE_Metadata &&
               propertyText(properties, PW_KEY_METADATA_NAME) == "default") {
      dropDefaults();
      followDefaults(id);
    } else {
      return;
    }
    connection_.loop_.notify();
  }

  void removed(std::uint32_t id) override {
    if (defaults_ && defaultsID_ == id) {
      dropDefaults();
      connection_.graph_.endSession();
    }
    connection_.graph_.remove(id);
    connection_.loop_.notify();
  }

  void answered(int sequence) override {
    if (connection_.isComplete() || sequence != awaitedSequence_) return;
    --connection_.answersLeft_;
    if (connection_.isComplete()) {
      connection_.loop_.notify();
    } else {
      synchronize();
    }
  }

  void lost() override {
    connection_.isLost_ = true;
    connection_.loop_.notify();
  }

  /// Requests PipeWire's reply to all earlier requests.
  void synchronize() { awaitedSequence_ = pw_core_sync(connection_.core(), PW_ID_CORE, 0); }

  /// Destroys the proxies, which must not outlive the connection.
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
    connection.loop_.notify();
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
  int awaitedSequence_ = 0;
  /// The metadata object in which the session manager keeps the default devices.
  pw_proxy* defaults_ = nullptr;
  std::uint32_t defaultsID_ = 0;
  spa_hook defaultsHook_{};
};

std::unique_ptr<PipeWireConnection> PipeWireConnection::open(PipeWireLoop& loop, int* error) {
  std::unique_ptr<PipeWireConnection> connection(new PipeWireConnection(loop));
  connection->registry_ = PipeWireRegistry::open(loop.context(), *connection->listener_, error);
  if (!connection->registry_) return nullptr;
  connection->listener_->synchronize();
  return connection;
}

PipeWireConnection::PipeWireConnection(PipeWireLoop& loop)
    : loop_(loop), listener_(std::make_unique<Listener>(*this)) {}

PipeWireConnection::~PipeWireConnection() {
  listener_->stop();
}

pw_core* PipeWireConnection::core() const {
  return registry_->core();
}

}  // namespace velun
