// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "ui/models/model_list.h"

#include <QHash>
#include <QWidget>

class QVBoxLayout;

namespace velun {

class GroupHeader;
class ModelRowView;

/// A language with a header that shows and hides its models. Main thread.
class ModelGroupView final : public QWidget {
  Q_OBJECT

 public:
  explicit ModelGroupView(QWidget* parent = nullptr);

  void setGroup(const ModelGroup& group);
  const ModelGroup& group() const { return group_; }

  bool isOpen() const;
  void setOpen(bool isOpen);

  /// The header and the buttons of the shown rows, from top to bottom.
  std::vector<QWidget*> focusChain() const;

 Q_SIGNALS:
  /// The rows were shown, hidden or replaced.
  void rowsChanged();
  void triggered(ModelAction action, const QString& group, const QString& model);

 private:
  void showRows();

  ModelGroup group_;
  GroupHeader* header_;
  QWidget* body_;
  QVBoxLayout* rows_;
  QHash<QString, ModelRowView*> views_;
};

}  // namespace velun
