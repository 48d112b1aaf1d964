// SPDX-License-Identifier: GPL-3.0-or-later
#include "app/information_windows.h"

#include "language/localization.h"
#include "platform/desktop/file_manager.h"
#include "platform/foundation/main_task.h"
#include "platform/updates/update_checker.h"
#include "ui/common/window_presentation.h"
#include "ui/menubar/about_view.h"
#include "ui/menubar/update_view.h"

#include <QCoreApplication>
#include <utility>

namespace velun {

namespace {

constexpr QSize kAboutSize(420, 520);
constexpr QSize kUpdateSize(460, 320);

}  // namespace

InformationWindows::InformationWindows(const AppServices& services,
                                       std::function<void(QWidget*)> windowMade)
    : services_(services), windowMade_(std::move(windowMade)) {
  connect(&Localization::shared(), &Localization::languageChanged, this, [this] {
    if (about_) about_->setWindowTitle(AboutView::title());
    if (updates_) updates_->setWindowTitle(UpdateView::title());
  });
}

InformationWindows::~InformationWindows() = default;

void InformationWindows::showAbout() {
  if (!about_) {
    auto view =
        std::make_unique<AboutView>(QCoreApplication::applicationVersion(), services_.credits);
    about_ = makeWindow(AboutView::title(), kAboutSize, std::move(view), "About");
  }
  WindowPresentation::present(*about_);
}

void InformationWindows::checkForUpdates() {
  if (!updates_) {
    auto view =
        std::make_unique<UpdateView>([this](const QUrl& page) { services_.files.openPage(page); },
                                     [this] { updates_->close(); });
    updateView_ = view.get();
    updates_ = makeWindow(UpdateView::title(), kUpdateSize, std::move(view), "Updates");
  }
  if (!std::exchange(isChecking_, true)) {
    updateView_->show(std::nullopt);
    startTask(this, [this] { return check(this); });
  }
  WindowPresentation::present(*updates_);
}

std::unique_ptr<QWidget> InformationWindows::makeWindow(const QString& title, QSize size,
                                                        std::unique_ptr<QWidget> view,
                                                        const QString& frameName) {
  auto window = WindowPresentation::makeWindow(title, size, std::move(view), false);
  window->setObjectName(frameName);
  windowMade_(window.get());
  return window;
}

QCoro::Task<> InformationWindows::check(QPointer<InformationWindows> self) {
  QCoro::Task<UpdateOutcome> checking = self->services_.updater.checkForUpdates();
  const UpdateOutcome outcome = co_await checking;
  if (!self) co_return;
  self->isChecking_ = false;
  self->updateView_->show(outcome);
}

}  // namespace velun
