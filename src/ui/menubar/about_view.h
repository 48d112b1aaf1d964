// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/credit.h"

#include <QWidget>
#include <vector>

namespace velun {

/// What the program is, its version and licence, and what it is made of.
class AboutView final : public QWidget {
  Q_OBJECT

 public:
  static QString title();

  AboutView(const QString& version, const std::vector<Credit>& credits, QWidget* parent = nullptr);
};

}  // namespace velun
