// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/language_choice.h"

#include <functional>
#include <QComboBox>
#include <vector>

namespace velun {

class LanguagePopup;

/// A combo box that opens the searchable list of languages. Its own items are the same languages;
/// their data are the identifiers. Main thread.
class LanguageChooser final : public QComboBox {
  Q_OBJECT

 public:
  /// `makeChoices` is called each time the list opens.
  explicit LanguageChooser(std::function<std::vector<LanguageChoice>()> makeChoices);

  /// Fills it, and appends `current` if it is not offered. Writes no setting.
  void setCurrent(const QString& current);

  void showPopup() override;
  void hidePopup() override;
  bool isOpen() const;
  /// The list that it opens, a window.
  QWidget& list() const;

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  /// Ignored, so that scrolling a form changes no setting.
  void wheelEvent(QWheelEvent* event) override;

 private:
  void open(const QString& typed);
  void choose(const QString& identifier);

  std::function<std::vector<LanguageChoice>()> makeChoices_;
  LanguagePopup* popup_;
};

}  // namespace velun
