// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/screen_cast_watch.h"

#include <cerrno>
#include <functional>
#include <pipewire/pipewire.h>
#include <QSocketNotifier>
#include <string_view>
#include <utility>

namespace velun {

namespace {

constexpr std::chrono::seconds kEndDelay{1};
constexpr std::chrono::seconds kRetryDelay{2};

std::string textOf(const spa_dict* properties, const char* key) {
  const char* value = properties ? spa_dict_lookup(properties, key) : nullptr;
  return value ? value : "";
}

std::uint32_t numberOf(const spa_dict* properties, const char* key) {
  return static_cast<std::uint32_t>(std::strtoul(textOf(properties, key).c_str(), nullptr, 10));
}

}  // namespace

/// A connection whose events arrive on the main thread: there are few of them.
class ScreenCastWatch::Connection final {
 public:
  Connection() {
    pw_init(nullptr, nullptr);
    loop_ = pw_loop_new(nullptr);
    pw_loop_enter(loop_);
    context_ = pw_context_new(loop_, nullptr, 0);
    core_ = pw_context_connect(context_, nullptr, 0);
  }

  ~Connection() {
    notifier_.reset();
    if (registry_) {
      spa_hook_remove(&registryHook_);
      pw_proxy_destroy(reinterpret_cast<pw_proxy*>(registry_));
    }
    if (core_) {
      if (registry_) spa_hook_remove(&coreHook_);
      pw_core_disconnect(core_);
    }
    pw_context_destroy(context_);
    pw_loop_leave(loop_);
    pw_loop_destroy(loop_);
    pw_deinit();
  }

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool isOpen() const { return core_ != nullptr; }

  /// Keeps `graph` as the server's objects are; `onChange` and `onLost` are called from the event
  /// loop.
  void follow(ScreenCastGraph& graph, std::function<void()> onChange,
              std::function<void()> onLost) {
    graph_ = &graph;
    onChange_ = std::move(onChange);
    onLost_ = std::move(onLost);
    pw_core_add_listener(core_, &coreHook_, &coreEvents(), this);
    registry_ = pw_core_get_registry(core_, PW_VERSION_REGISTRY, 0);
    pw_registry_add_listener(registry_, &registryHook_, &registryEvents(), this);
    notifier_ = std::make_unique<QSocketNotifier>(pw_loop_get_fd(loop_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { iterate(); });
    iterate();
  }

 private:
  void iterate() {
    pw_loop_iterate(loop_, 0);
    // The last thing: it ends this connection.
    isLost_ ? onLost_() : onChange_();
  }

  static Connection& self(void* data) { return *static_cast<Connection*>(data); }

  static void error(void* data, std::uint32_t id, int, int result, const char*) {
    if (id == PW_ID_CORE && result == -EPIPE) self(data).isLost_ = true;
  }

  static void global(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                     const spa_dict* properties) {
    ScreenCastGraph& graph = *self(data).graph_;
    const std::string_view kind = type;
    if (kind == PW_TYPE_INTERFACE_Client) {
      graph.addClient(id, textOf(properties, PW_KEY_APP_NAME));
    } else if (kind == PW_TYPE_INTERFACE_Node) {
      graph.addNode(id, {.mediaClass = textOf(properties, PW_KEY_MEDIA_CLASS),
                         .mediaRole = textOf(properties, PW_KEY_MEDIA_ROLE),
                         .name = textOf(properties, PW_KEY_NODE_NAME),
                         .hasDevice = !textOf(properties, PW_KEY_DEVICE_ID).empty(),
                         .client = numberOf(properties, PW_KEY_CLIENT_ID)});
    } else if (kind == PW_TYPE_INTERFACE_Link) {
      graph.addLink(id, numberOf(properties, PW_KEY_LINK_OUTPUT_NODE),
                    numberOf(properties, PW_KEY_LINK_INPUT_NODE));
    }
  }

  static void globalRemove(void* data, std::uint32_t id) { self(data).graph_->remove(id); }

  static const pw_core_events& coreEvents() {
    static const pw_core_events events = [] {
      pw_core_events made{};
      made.version = PW_VERSION_CORE_EVENTS;
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

  pw_loop* loop_ = nullptr;
  pw_context* context_ = nullptr;
  pw_core* core_ = nullptr;
  pw_registry* registry_ = nullptr;
  spa_hook coreHook_{};
  spa_hook registryHook_{};
  ScreenCastGraph* graph_ = nullptr;
  std::function<void()> onChange_;
  std::function<void()> onLost_;
  bool isLost_ = false;
  std::unique_ptr<QSocketNotifier> notifier_;
};

ScreenCastWatch::ScreenCastWatch(Clock& clock) : clock_(clock) {}

ScreenCastWatch::~ScreenCastWatch() = default;

bool ScreenCastWatch::isPossible() {
  return Connection().isOpen();
}

void ScreenCastWatch::setWatching(bool watching) {
  if (std::exchange(isWatching_, watching) == watching) return;
  if (watching) {
    connectToServer();
    return;
  }
  retry_.reset();
  connection_.reset();
  graph_ = {};
  setCastRunning(false);
}

void ScreenCastWatch::connectToServer() {
  auto connection = std::make_unique<Connection>();
  if (!connection->isOpen()) {
    retry_ = clock_.callAfter(kRetryDelay, [this] { connectToServer(); });
    return;
  }
  retry_.reset();
  connection_ = std::move(connection);
  Q_EMIT connectedChanged();
  connection_->follow(
      graph_, [this] { look(); },
      [this] { QMetaObject::invokeMethod(this, &ScreenCastWatch::lost, Qt::QueuedConnection); });
}

void ScreenCastWatch::lost() {
  if (!connection_) return;
  connection_.reset();
  graph_ = {};
  look();
  Q_EMIT connectedChanged();
  connectToServer();
}

void ScreenCastWatch::look() {
  if (graph_.isCastRunning()) {
    setCastRunning(true);
  } else if (isCastRunning_ && !ending_) {
    ending_ = clock_.callAfter(kEndDelay, [this] { setCastRunning(false); });
  }
}

void ScreenCastWatch::setCastRunning(bool running) {
  ending_.reset();
  if (std::exchange(isCastRunning_, running) != running) Q_EMIT castRunningChanged();
}

}  // namespace velun
