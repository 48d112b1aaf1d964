// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/language_choice_model.h"

#include "language/language_search.h"
#include "language/localization.h"

#include <algorithm>

namespace velun {

namespace {

constexpr qint64 kMegabyte = 1'000'000;

}  // namespace

QString statusText(const LanguageChoice& choice) {
  if (!choice.downloadBytes) return {};
  if (choice.isReady()) return L("Ready", "사용 가능");
  const qint64 megabytes = std::max<qint64>(1, (*choice.downloadBytes + kMegabyte / 2) / kMegabyte);
  return L(QStringLiteral("Download · %1 MB").arg(megabytes),
           QStringLiteral("다운로드 · %1MB").arg(megabytes));
}

void LanguageChoiceModel::setChoices(std::vector<LanguageChoice> choices, const QString& current) {
  beginResetModel();
  entries_.clear();
  shown_.clear();
  for (LanguageChoice& choice : choices) {
    QStringList names = languageSearchNames(choice.identifier);
    shown_.push_back(entries_.size());
    entries_.push_back({std::move(choice), std::move(names)});
  }
  current_ = current;
  endResetModel();
}

void LanguageChoiceModel::setFilter(const QString& text) {
  const QString search = foldedLanguageName(text);
  std::vector<std::size_t> starting;
  std::vector<std::size_t> containing;
  for (std::size_t i = 0; i < entries_.size(); ++i) {
    const LanguageMatch match = matchLanguage(entries_[i].searchNames, search);
    if (match == LanguageMatch::wordStart) starting.push_back(i);
    if (match == LanguageMatch::inside) containing.push_back(i);
  }
  beginResetModel();
  shown_ = std::move(starting.empty() ? containing : starting);
  endResetModel();
}

int LanguageChoiceModel::rowOf(const QString& identifier) const {
  const auto row = std::ranges::find_if(
      shown_, [&](std::size_t index) { return entries_[index].choice.identifier == identifier; });
  return row == shown_.end() ? -1 : static_cast<int>(row - shown_.begin());
}

int LanguageChoiceModel::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(shown_.size());
}

QVariant LanguageChoiceModel::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const LanguageChoice& choice = entries_[shown_[static_cast<std::size_t>(index.row())]].choice;
  const QString status = statusText(choice);
  switch (role) {
    case Qt::DisplayRole:
      return choice.name;
    case Qt::AccessibleTextRole:
      return status.isEmpty() ? choice.name : choice.name + QStringLiteral(", ") + status;
    case identifierRole:
      return choice.identifier;
    case statusRole:
      return status;
    case isCurrentRole:
      return choice.identifier == current_;
    default:
      return {};
  }
}

}  // namespace velun
