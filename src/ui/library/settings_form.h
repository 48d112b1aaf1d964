// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>
#include <QVariant>
#include <vector>

class QCheckBox;
class QComboBox;
class QLabel;
class QVBoxLayout;
class QWidget;

namespace velun {

/// One entry of a chooser.
struct Choice {
  QString label;
  QVariant value;
  bool operator==(const Choice&) const = default;
};

/// The pieces that the settings form is made of; each is appended to the form.
QLabel* addHeading(QVBoxLayout* form);
QCheckBox* addToggle(QVBoxLayout* form);
/// Small, secondary text under a control.
QLabel* addNote(QVBoxLayout* form);
/// A chooser in a row behind its label, which `label` is set to; without one (null) it fills the
/// row.
QComboBox* addChooser(QVBoxLayout* form, QLabel** label);

/// Gives a chooser its entries and shows `current`, which is added as it is when it is not one of
/// them. Writes no setting.
void fillChooser(QComboBox* chooser, std::vector<Choice> choices, const Choice& current);

/// Sets the accessible name and the tool tip.
void nameControl(QWidget* control, const QString& name);
void labelChooser(QLabel* label, QComboBox* chooser, const QString& text);
void labelToggle(QCheckBox* toggle, const QString& text);

}  // namespace velun
