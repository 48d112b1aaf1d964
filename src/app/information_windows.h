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

/// The windows that only tell something: "About Velun" and the search for updates. Main thread.
class InformationWindows final : public QObject {
  Q_OBJECT

 public:
  /// Everything in `services` must outlive it. `windowMade` hears of every window before it is
  /// first shown.
  InformationWindows(const AppServices& services, std::function<void(QWidget*)> windowMade);
  ~InformationWindows() override;

  void showAbout();

  /// Shows that it looks for a newer release, and what it found. Asked again meanwhile, it only
  /// comes to the front.
  void checkForUpdates();

 private:
  static QCoro::Task<> check(QPointer<InformationWindows> self);
  std::unique_ptr<QWidget> makeWindow(const QString& title, QSize size,
                                      std::unique_ptr<QWidget> view);

  AppServices services_;
  std::function<void(QWidget*)> windowMade_;
  /// Null until they were first shown; kept, because they may ask for themselves.
  std::unique_ptr<QWidget> about_;
  std::unique_ptr<QWidget> updates_;
  /// In `updates_`.
  UpdateView* updateView_ = nullptr;
  bool isChecking_ = false;
};

}  // namespace velun
