// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/application_action.h"

#include <functional>
#include <QList>
#include <QUrl>
#include <vector>

namespace velun {

/// The program as the rest of the session sees it: there is one of it, it can be called to the
/// front, and its commands can be carried out by name. Main thread.
class ApplicationService {
 public:
  /// What became of the wish to be the one instance.
  enum class Claim {
    /// This process is it, or there is no session bus to ask.
    granted,
    /// Another process is it and was called to the front.
    forwarded,
    /// Another process is it and did not answer.
    unanswered,
  };

  virtual ~ApplicationService() = default;

  /// The program was launched again, or called to the front.
  std::function<void()> onActivate;
  std::function<void(const QList<QUrl>& files)> onOpen;
  /// Only for actions that exist, are enabled and got the parameter that they take.
  std::function<void(const QString& name, const QVariant& parameter)> onAction;

  /// Becomes the one instance, or hands the launch on. Calls from outside arrive from the event
  /// loop, never inside this.
  virtual Claim claim() = 0;

  /// Replaces the actions and tells whoever listens what is different.
  virtual void setActions(const std::vector<ApplicationAction>& actions) = 0;
};

}  // namespace velun
