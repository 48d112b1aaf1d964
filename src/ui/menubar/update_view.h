// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/updates/update_checker.h"

#include <functional>
#include <optional>
#include <QWidget>

class QPushButton;
class QTextBrowser;

namespace velun {

class NoticeLabel;

/// Shows that a check for a newer release is in progress, then its outcome.
class UpdateView final : public QWidget {
  Q_OBJECT

 public:
  static QString title();

  /// `openPage` opens a web page; `close` closes the window.
  UpdateView(std::function<void(const QUrl&)> openPage, std::function<void()> close,
             QWidget* parent = nullptr);

  /// No outcome means that the check is in progress.
  void show(const std::optional<UpdateOutcome>& outcome);

 private:
  void translate();
  void presentOutcome();
  void present(const QString& message, const QString& details);
  void presentUpdate(const UpdateAvailable& update);

  NoticeLabel* message_;
  NoticeLabel* details_;
  QTextBrowser* notes_;
  QPushButton* open_;
  QPushButton* close_;
  QUrl page_;
  std::optional<UpdateOutcome> outcome_;
};

}  // namespace velun
