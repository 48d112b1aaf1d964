// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_list.h"

#include <QHash>
#include <QWidget>

class QLabel;
class QVBoxLayout;

namespace velun {

class ModelGroupView;

/// A heading and the languages of a list of models, those that are installed first. Main thread.
class ModelSection final : public QWidget {
  Q_OBJECT

 public:
  /// `list` must outlive the section.
  explicit ModelSection(ModelList& list, QWidget* parent = nullptr);

  /// Shows only the languages that the search finds; empty shows all.
  void setSearch(const QString& search);

  /// Whether the search finds a language.
  bool hasMatches() const { return !order_.empty(); }

  /// Everything that takes the keyboard focus, from top to bottom.
  std::vector<QWidget*> focusChain() const;

 Q_SIGNALS:
  /// Rows were shown, hidden or replaced.
  void rowsChanged();

 private:
  void update();
  ModelGroupView* viewOf(const ModelGroup& group);

  ModelList& list_;
  QString search_;
  QLabel* heading_;
  QVBoxLayout* column_;
  QHash<QString, ModelGroupView*> views_;
  std::vector<QString> order_;
};

}  // namespace velun
