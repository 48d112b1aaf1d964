// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QTranslator>

namespace velun {

/// Gives the toolkit's own texts (its file panel, the menus of its text fields, the buttons of its
/// questions) in the interface language; they are English in themselves. Main thread.
class ToolkitTexts final : public QTranslator {
  Q_OBJECT

 public:
  using QTranslator::QTranslator;

  bool isEmpty() const override { return false; }
  QString translate(const char* context, const char* source, const char* disambiguation,
                    int count) const override;
};

}  // namespace velun
