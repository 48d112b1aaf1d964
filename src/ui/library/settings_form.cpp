// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/settings_form.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSignalBlocker>
#include <QVBoxLayout>
#include <QWheelEvent>

namespace velun {

namespace {

constexpr qreal kSmallText = 0.86;
constexpr int kIndent = 24;
constexpr int kChooserWidth = 210;
/// With a large font.
constexpr int kChooserLetters = 25;

/// A chooser that leaves the wheel to the form around it: scrolling must not change a setting.
class FormChooser final : public QComboBox {
 public:
  using QComboBox::QComboBox;

 protected:
  void wheelEvent(QWheelEvent* event) override { event->ignore(); }
};

}  // namespace

QLabel* addHeading(QVBoxLayout* form) {
  auto* heading = new QLabel;
  QFont font = heading->font();
  font.setWeight(QFont::DemiBold);
  heading->setFont(font);
  if (form->count() > 0) form->addSpacing(10);
  form->addWidget(heading);
  return heading;
}

QCheckBox* addToggle(QVBoxLayout* form) {
  auto* toggle = new QCheckBox;
  form->addWidget(toggle);
  return toggle;
}

QLabel* addNote(QVBoxLayout* form) {
  auto* note = new QLabel;
  QFont font = note->font();
  font.setPointSizeF(font.pointSizeF() * kSmallText);
  note->setFont(font);
  note->setWordWrap(true);
  note->setIndent(0);
  note->setContentsMargins(kIndent, 0, 0, 2);
  QPalette palette = note->palette();
  QColor color = palette.color(QPalette::WindowText);
  color.setAlphaF(0.72F);
  palette.setColor(QPalette::WindowText, color);
  note->setPalette(palette);
  form->addWidget(note);
  return note;
}

QComboBox* addChooser(QVBoxLayout* form, QLabel** label) {
  auto* chooser = new FormChooser;
  chooser->setFocusPolicy(Qt::StrongFocus);
  auto* row = new QHBoxLayout;
  if (label) {
    *label = new QLabel;
    (*label)->setBuddy(chooser);
    row->addWidget(*label);
    row->addStretch();
    const int letters = kChooserLetters * chooser->fontMetrics().averageCharWidth();
    chooser->setMinimumWidth(std::max(kChooserWidth, letters));
    chooser->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    row->addWidget(chooser);
  } else {
    row->addWidget(chooser, 1);
  }
  form->addLayout(row);
  return chooser;
}

void fillChooser(QComboBox* chooser, std::vector<Choice> choices, const Choice& current) {
  const auto isCurrent = [&current](const Choice& choice) {
    return choice.value == current.value;
  };
  if (std::none_of(choices.begin(), choices.end(), isCurrent)) choices.push_back(current);
  const QSignalBlocker blocker(chooser);
  chooser->clear();
  for (const Choice& choice : choices) chooser->addItem(choice.label, choice.value);
  const auto position = std::find_if(choices.begin(), choices.end(), isCurrent);
  chooser->setCurrentIndex(static_cast<int>(position - choices.begin()));
}

void nameControl(QWidget* control, const QString& name) {
  control->setAccessibleName(name);
  control->setToolTip(name);
}

void labelChooser(QLabel* label, QComboBox* chooser, const QString& text) {
  label->setText(text);
  nameControl(chooser, text);
}

void labelToggle(QCheckBox* toggle, const QString& text) {
  toggle->setText(text);
  nameControl(toggle, text);
}

}  // namespace velun
