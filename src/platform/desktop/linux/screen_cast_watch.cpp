// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/screen_cast_watch.h"

#include "platform/pipewire/linux/pipewire_registry.h"

#include <QSocketNotifier>
#include <string_view>
#include <utility>

namespace velun {

namespace {

constexpr std::chrono::seconds kEndDelay{1};
constexpr std::chrono::seconds kRetryDelay{2};

}  // namespace

/// A connection to PipeWire whose few events arrive on the main thread.
class ScreenCastWatch::Connection final : private PipeWireRegistry::Listener {
 public:
  /// `graph` follows PipeWire's objects after follow().
  explicit Connection(ScreenCastGraph& graph) : graph_(graph) {
    pw_init(nullptr, nullptr);
    loop_ = pw_loop_new(nullptr);
    // Out of file descriptors.
    if (!loop_) return;
    pw_loop_enter(loop_);
    context_ = pw_context_new(loop_, nullptr, 0);
    int error = 0;
    registry_ = PipeWireRegistry::open(context_, *this, &error);
  }

  ~Connection() override {
    notifier_.reset();
    registry_.reset();
    if (context_) pw_context_destroy(context_);
    if (loop_) {
      pw_loop_leave(loop_);
      pw_loop_destroy(loop_);
    }
    pw_deinit();
  }

  Connection(const Connection&) = delete;
  Connection& operator=(const Connection&) = delete;

  bool isOpen() const { return registry_ != nullptr; }

  /// Updates `watch` with every change from now on, from the event loop.
  void follow(ScreenCastWatch& watch) {
    watch_ = &watch;
    notifier_ = std::make_unique<QSocketNotifier>(pw_loop_get_fd(loop_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { iterate(); });
    iterate();
  }

 private:
  void iterate() {
    pw_loop_iterate(loop_, 0);
    if (isLost_) {
      // Queued, because lost() destroys this connection.
      QMetaObject::invokeMethod(watch_, &ScreenCastWatch::lost, Qt::QueuedConnection);
    } else {
      watch_->update();
    }
  }

  void added(std::uint32_t id, std::string_view kind, const spa_dict* properties) override {
    if (kind == PW_TYPE_INTERFACE_Client) {
      graph_.addClient(id, propertyText(properties, PW_KEY_APP_NAME));
    } else if (kind == PW_TYPE_INTERFACE_Node) {
      graph_.addNode(id, {.mediaClass = propertyText(properties, PW_KEY_MEDIA_CLASS),
                          .mediaRole = propertyText(properties, PW_KEY_MEDIA_ROLE),
                          .name = propertyText(properties, PW_KEY_NODE_NAME),
                          .hasDevice = !propertyText(properties, PW_KEY_DEVICE_ID).empty(),
                          .client = propertyNumber(properties, PW_KEY_CLIENT_ID)});
    } else if (kind == PW_TYPE_INTERFACE_Link) {
      graph_.addLink(id, propertyNumber(properties, PW_KEY_LINK_OUTPUT_NODE),
                     propertyNumber(properties, PW_KEY_LINK_INPUT_NODE));
    }
  }

  void removed(std::uint32_t id) override { graph_.remove(id); }

  void lost() override { isLost_ = true; }

  ScreenCastGraph& graph_;
  pw_loop* loop_ = nullptr;
  pw_context* context_ = nullptr;
  std::unique_ptr<PipeWireRegistry> registry_;
  ScreenCastWatch* watch_ = nullptr;
  bool isLost_ = false;
  std::unique_ptr<QSocketNotifier> notifier_;
};

ScreenCastWatch::ScreenCastWatch(Clock& clock) : clock_(clock) {}

ScreenCastWatch::~ScreenCastWatch() = default;

bool ScreenCastWatch::isPossible() {
  ScreenCastGraph unused;
  return Connection(unused).isOpen();
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
  auto connection = std::make_unique<Connection>(graph_);
  if (!connection->isOpen()) {
    retry_ = clock_.callAfter(kRetryDelay, [this] { connectToServer(); });
    return;
  }
  retry_.reset();
  connection_ = std::move(connection);
  Q_EMIT connectedChanged();
  connection_->follow(*this);
}

void ScreenCastWatch::lost() {
  if (!connection_) return;
  connection_.reset();
  graph_ = {};
  update();
  Q_EMIT connectedChanged();
  connectToServer();
}

void ScreenCastWatch::update() {
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
