// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_services.h"

#include <functional>
#include <memory>
#include <QCoroTask>
#include <QObject>
#include <QPointer>
#include <QWidget>

namespace velun {

class UpdateView;

/// The windows "About Velun" and "Updates". Main thread.
class InformationWindows final : public QObject {
  Q_OBJECT

 public:
  /// Everything in `services` must outlive it. `windowMade` is called with every window before it
  /// is first shown.
  InformationWindows(const AppServices& services, std::function<void(QWidget*)> windowMade);
  ~InformationWindows() override;

  void showAbout();

  /// Shows the window, checks for a newer release and shows the outcome. During a check it only
  /// brings the window to the front.
  void checkForUpdates();

 private:
  static QCoro::Task<> check(QPointer<InformationWindows> self);
  std::unique_ptr<QWidget> makeWindow(const QString& title, QSize size,
                                      std::unique_ptr<QWidget> view, const QString& frameName);

  AppServices services_;
  std::function<void(QWidget*)> windowMade_;
  /// Null until first shown; then kept, because their own menus may request them again.
  std::unique_ptr<QWidget> about_;
  std::unique_ptr<QWidget> updates_;
  /// Owned by `updates_`.
  UpdateView* updateView_ = nullptr;
  bool isChecking_ = false;
};

}  // namespace velun
