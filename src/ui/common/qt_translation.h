// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTranslator>

namespace velun {

/// Shows Qt's own texts (its file dialog, the menus of its text fields, its buttons) in the
/// interface language, from the translations that are installed with Qt. They stay English where
/// those are missing. Needs the application object. Main thread.
class QtTranslation final : public QTranslator {
  Q_OBJECT

 public:
  QtTranslation();

 private:
  void followLanguage();
};

}  // namespace velun
