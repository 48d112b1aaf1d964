// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QObject>
#include <QUrl>
#include <QVariant>
#include <vector>

namespace velun {

/// A command that other programs can carry out by its name.
struct ApplicationAction {
  QString name;
  /// The D-Bus type of its parameter, such as "s"; empty if it takes none.
  QString parameterType = {};
  bool isEnabled = true;
  /// The current state; invalid if it has none.
  QVariant state = {};

  bool operator==(const ApplicationAction&) const = default;
};

/// The program as the rest of the user's session sees it: there is one instance, other programs can
/// call it to the front and carry out its commands by name. Main thread.
class ApplicationService : public QObject {
  Q_OBJECT

 public:
  /// The result of trying to become the one instance.
  enum class Claim {
    /// This process is the one instance, or there is no session bus.
    granted,
    /// Another process is, and was called to the front.
    forwarded,
    /// Another process is, and did not answer.
    unanswered,
  };

  /// Becomes the one instance or forwards the launch to it. Emits no signal before the event loop
  /// runs.
  virtual Claim claim() = 0;

  /// Replaces the published actions and announces what changed.
  virtual void setActions(const std::vector<ApplicationAction>& actions) = 0;

 Q_SIGNALS:
  /// The program was launched again or called to the front.
  void activated();
  void openRequested(const QList<QUrl>& files);
  /// Only for a published, enabled action with a parameter of its type.
  void actionRequested(const QString& name, const QVariant& parameter);
};

}  // namespace velun
