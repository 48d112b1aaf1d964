// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/language_choice.h"

#include <QAbstractListModel>
#include <QStringList>
#include <vector>

namespace velun {

/// The languages of a chooser that match what was typed. Main thread.
class LanguageChoiceModel final : public QAbstractListModel {
  Q_OBJECT

 public:
  enum Role {
    identifierRole = Qt::UserRole,
    statusRole,     ///< whether it is ready, or how large its download is; may be empty
    isCurrentRole,  ///< whether it is the one in use
  };

  using QAbstractListModel::QAbstractListModel;

  /// Shows all of them.
  void setChoices(std::vector<LanguageChoice> choices, const QString& current);

  /// Shows the languages of which a word begins with the text. When there are none, those that
  /// contain it.
  void setFilter(const QString& text);

  /// The row of a shown language, −1 if it is not shown.
  int rowOf(const QString& identifier) const;

  int rowCount(const QModelIndex& parent = {}) const override;
  QVariant data(const QModelIndex& index, int role) const override;

 private:
  struct Entry {
    LanguageChoice choice;
    QStringList searchNames;
  };

  std::vector<Entry> entries_;
  std::vector<std::size_t> shown_;  ///< indices of `entries_`
  QString current_;
};

/// "Ready" or "Download · 134 MB" in the interface language; empty when neither is known.
QString statusText(const LanguageChoice& choice);

}  // namespace velun
