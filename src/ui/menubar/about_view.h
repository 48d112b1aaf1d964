// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/menubar/credit.h"

#include <QWidget>
#include <vector>

class QLabel;
class QTextBrowser;

namespace velun {

/// The content of "About Velun": name, version, licence, and the software and models in use.
class AboutView final : public QWidget {
  Q_OBJECT

 public:
  static QString title();

  AboutView(const QString& version, const std::vector<Credit>& credits, QWidget* parent = nullptr);

 private:
  void translate();

  QString version_;
  QLabel* versionLabel_;
  QLabel* purpose_;
  QLabel* licence_;
  QTextBrowser* made_;
};

}  // namespace velun
