// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/appearance_choices.h"

#include "language/localization.h"
#include "settings/app_settings.h"
#include "settings/panel_style.h"
#include "settings/text_size.h"

#include <algorithm>
#include <QFontDatabase>

namespace velun {

/// As a part of a line's height without it.
Choice spacingChoice(double spacing) {
  return {QStringLiteral("%1%").arg(qRound((1 + spacing) * 100)), spacing};
}

Choice familyChoice(const QString& family) {
  return {family.isEmpty() ? L("Desktop Font", "데스크톱 글꼴") : family, family};
}

std::vector<Choice> familyChoices(const QStringList& families) {
  QStringList names;
  for (const QString& family : families) {
    if (!QFontDatabase::isPrivateFamily(family))
      names << family.section(QStringLiteral(" ["), 0, 0);
  }
  names.removeDuplicates();
  std::vector<Choice> choices = {familyChoice({})};
  for (const QString& name : names) choices.push_back(familyChoice(name));
  return choices;
}

std::vector<Choice> weightChoices() {
  return {{L("Font’s Own", "글꼴 기본"), 0}, {L("Light", "가늘게"), 300},
          {L("Regular", "보통"), 400},       {L("Medium", "중간"), 500},
          {L("Semibold", "약간 굵게"), 600}, {L("Bold", "굵게"), 700}};
}

std::vector<Choice> spacingChoices() {
  std::vector<Choice> choices;
  for (const double spacing : {0.0, 0.15, 0.3, 0.5, 1.0}) choices.push_back(spacingChoice(spacing));
  return choices;
}

std::vector<Choice> edgeChoices() {
  return {{L("None", "없음"), int(TextEdge::none)},
          {L("Outline", "윤곽선"), int(TextEdge::outline)},
          {L("Shadow", "그림자"), int(TextEdge::shadow)}};
}

std::vector<Choice> cornerChoices() {
  return {{L("Square", "각지게"), 0},
          {L("Slightly Rounded", "약간 둥글게"), 8},
          {L("Rounded", "둥글게"), 16},
          {L("Very Rounded", "아주 둥글게"), 28}};
}

Choice percentChoice(double part) {
  return {QStringLiteral("%1%").arg(qRound(part * 100)), part};
}

std::vector<Choice> ratioChoices() {
  std::vector<Choice> choices;
  for (const double ratio : {0.6, 0.7, 0.8, 0.9, 1.0, 1.2, 1.5}) {
    choices.push_back(percentChoice(ratio));
  }
  return choices;
}

std::vector<Choice> orderChoices() {
  return {{L("Original First", "원문 먼저"), int(VoiceOrder::originalFirst)},
          {L("Translation First", "번역 먼저"), int(VoiceOrder::translationFirst)}};
}

std::vector<Choice> lineChoices() {
  std::vector<Choice> choices = {{L("Any Size", "자유 크기"), 0}, {L("1 Line", "1줄"), 1}};
  for (int lines = 2; lines <= AppSettings::maxCaptionLines; ++lines) {
    const QString count = QString::number(lines);
    choices.push_back({L(count + " Lines", count + "줄"), lines});
  }
  return choices;
}

Choice sizeChoice(double points) {
  return {QString::number(points) + QStringLiteral("pt"), points};
}

std::vector<Choice> sizeChoices() {
  std::vector<Choice> choices = {sizeChoice(kMinTextSize)};
  for (double size = kMinTextSize; size < kMaxTextSize;) {
    size = steppedTextSize(size, 1);
    choices.push_back(sizeChoice(size));
  }
  return choices;
}

Choice choiceOf(const std::vector<Choice>& choices, const QVariant& value) {
  const auto found = std::ranges::find(choices, value, &Choice::value);
  return found == choices.end() ? Choice{value.toString(), value} : *found;
}

}  // namespace velun
