// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/common/padded_label.h"

#include <QString>
#include <QVariant>
#include <vector>

class QCheckBox;
class QComboBox;
class QVBoxLayout;
class QWidget;

namespace velun {

/// One entry of a combo box.
struct Choice {
  QString label;
  QVariant value;
  bool operator==(const Choice&) const = default;
};

/// Each function appends one control to the form.
QLabel* addHeading(QVBoxLayout* form);
QCheckBox* addToggle(QVBoxLayout* form);
/// Small, secondary text under a control.
PaddedLabel* addNote(QVBoxLayout* form);
/// A combo box after its label, which is returned in `label`. When `label` is null it has no label
/// and fills the row.
QComboBox* addChooser(QVBoxLayout* form, QLabel** label);
/// The same for a given combo box, which the form takes over.
void addChooser(QVBoxLayout* form, QComboBox* chooser, QLabel** label);

/// Sets the entries and selects `current`, which is appended when it is not among them. Writes no
/// setting.
void fillChooser(QComboBox* chooser, std::vector<Choice> choices, const Choice& current);

/// Sets the accessible name and the tool tip.
void nameControl(QWidget* control, const QString& name);
void labelChooser(QLabel* label, QComboBox* chooser, const QString& text);
void labelToggle(QCheckBox* toggle, const QString& text);
/// Makes the note below a check box its accessible description.
void explainToggle(QCheckBox* toggle, QLabel* note, const QString& text);
/// Writes no setting.
void checkToggle(QCheckBox* toggle, bool checked);
/// Hides an empty note.
void setNote(QLabel* note, const QString& text);

}  // namespace velun
