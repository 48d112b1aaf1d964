// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/login_start_toggle.h"

#include "language/localization.h"
#include "platform/desktop/login_start.h"
#include "ui/common/window_presentation.h"
#include "ui/settings/settings_form.h"

#include <exception>
#include <QSignalBlocker>

namespace velun {

LoginStartToggle::LoginStartToggle(LoginStart* login, QWidget* parent)
    : QCheckBox(parent), login_(login) {
  if (!login_ || !login_->isPossible()) hide();
  connect(this, &QCheckBox::toggled, this, &LoginStartToggle::choose);
  connect(&Localization::shared(), &Localization::languageChanged, this,
          &LoginStartToggle::present);
  present();
}

void LoginStartToggle::showEvent(QShowEvent* event) {
  QCheckBox::showEvent(event);
  // The desktop's own settings may have changed it.
  present();
}

void LoginStartToggle::choose(bool enabled) {
  try {
    login_->setEnabled(enabled);
  } catch (const std::exception& error) {
    present();
    WindowPresentation::showError(error);
  }
}

void LoginStartToggle::present() {
  labelToggle(this, L("Start at Login", "로그인할 때 시작"));
  const QSignalBlocker blocker(this);
  setChecked(login_ && login_->isEnabled());
}

}  // namespace velun
