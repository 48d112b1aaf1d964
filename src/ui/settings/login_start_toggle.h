// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QCheckBox>

namespace velun {

class LoginStart;

/// The check box that starts the program when the user logs in. Hidden where that is not possible.
/// Main thread.
class LoginStartToggle final : public QCheckBox {
  Q_OBJECT

 public:
  /// `login` must outlive the check box; it may be null.
  explicit LoginStartToggle(LoginStart* login, QWidget* parent = nullptr);

 protected:
  void showEvent(QShowEvent* event) override;

 private:
  void choose(bool enabled);
  void present();

  LoginStart* login_;
};

}  // namespace velun
