// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/library/session_arrangement.h"

#include <functional>
#include <QMenu>

namespace velun {

/// The menu that sorts and filters the saved sessions. Main thread.
class ArrangementMenu final : public QMenu {
  Q_OBJECT

 public:
  /// `library` must outlive the menu; its languages are offered.
  explicit ArrangementMenu(const HistoryViewModel& library, QWidget* parent = nullptr);

  const SessionArrangement& arrangement() const { return arrangement_; }

  /// Leaves no session out; the order stays.
  void showAll();

  /// Sets the texts in the interface language.
  void translate();

 Q_SIGNALS:
  void arrangementChanged();

 private:
  void fill();
  void fillOrders();
  void fillPeriods();
  void fillLanguages();
  void fillInputs();
  void set(const SessionArrangement& arrangement);
  /// Adds a choice that makes the arrangement `chosen`.
  void addChoice(QMenu& menu, const QString& text, const SessionArrangement& chosen);

  const HistoryViewModel& library_;
  SessionArrangement arrangement_;
};

}  // namespace velun
