// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/screen_cast_watch.h"

#include "platform/pipewire/linux/pipewire_registry.h"

#include <functional>
#include <QSocketNotifier>
#include <string_view>
#include <utility>

namespace velun {

namespace {

constexpr std::chrono::seconds kEndDelay{1};
constexpr std::chrono::seconds kRetryDelay{2};

}  // namespace

/// A connection whose events arrive on the main thread: there are few of them.
class ScreenCastWatch::Connection final : private PipeWireRegistry::Listener {
 public:
  /// `graph` is kept as the server's objects are, once they are followed.
  explicit Connection(ScreenCastGraph& graph) : graph_(graph) {
    pw_init(nullptr, nullptr);
    loop_ = pw_loop_new(nullptr);
    // The system has no more descriptors.
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

  /// `onChange` and `onLost` are called from the event loop.
  void follow(std::function<void()> onChange, std::function<void()> onLost) {
    onChange_ = std::move(onChange);
    onLost_ = std::move(onLost);
    notifier_ = std::make_unique<QSocketNotifier>(pw_loop_get_fd(loop_), QSocketNotifier::Read);
    QObject::connect(notifier_.get(), &QSocketNotifier::activated, notifier_.get(),
                     [this] { iterate(); });
    iterate();
  }

 private:
  void iterate() {
    pw_loop_iterate(loop_, 0);
    const std::function<void()> tell = isLost_ ? onLost_ : onChange_;
    // The last thing: whoever hears it may end this connection.
    tell();
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
  std::function<void()> onChange_;
  std::function<void()> onLost_;
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
  connection_->follow(
      [this] { look(); },
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
