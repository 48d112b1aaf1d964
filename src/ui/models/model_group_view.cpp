// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/model_group_view.h"

#include "ui/models/group_header.h"
#include "ui/models/model_row_view.h"

#include <QPushButton>
#include <QSet>
#include <QVBoxLayout>

namespace velun {

ModelGroupView::ModelGroupView(QWidget* parent) : QWidget(parent) {
  header_ = new GroupHeader(this);
  body_ = new QWidget(this);
  rows_ = new QVBoxLayout(body_);
  rows_->setContentsMargins(0, 2, 0, 6);
  rows_->setSpacing(6);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(0, 0, 0, 0);
  column->setSpacing(0);
  column->addWidget(header_);
  column->addWidget(body_);
  body_->hide();
  connect(header_, &GroupHeader::openChanged, this, [this](bool isOpen) {
    if (isOpen) showRows();
    body_->setVisible(isOpen);
    Q_EMIT rowsChanged();
  });
}

void ModelGroupView::setGroup(const ModelGroup& group) {
  if (group == group_) return;
  group_ = group;
  header_->setTexts(group.title, group.ownName, group.summary);
  if (!isOpen()) return;
  showRows();
  Q_EMIT rowsChanged();
}

std::vector<QWidget*> ModelGroupView::focusChain() const {
  std::vector<QWidget*> chain = {header_};
  if (!isOpen()) return chain;
  for (const ModelRow& row : group_.rows) {
    const ModelRowView* view = views_.value(row.id);
    if (view) chain.insert(chain.end(), view->buttons().begin(), view->buttons().end());
  }
  return chain;
}

bool ModelGroupView::isOpen() const {
  return header_->isOpen();
}

void ModelGroupView::setOpen(bool isOpen) {
  header_->setOpen(isOpen);
}

void ModelGroupView::showRows() {
  QSet<QString> present;
  int position = 0;
  for (const ModelRow& row : group_.rows) {
    ModelRowView*& view = views_[row.id];
    if (!view) {
      view = new ModelRowView(body_);
      connect(view, &ModelRowView::triggered, this,
              [this, id = row.id](ModelAction action) { Q_EMIT triggered(action, group_.id, id); });
    }
    view->setRow(row);
    // Moving a widget that is in its place would take the focus from it.
    if (rows_->indexOf(view) != position) rows_->insertWidget(position, view);
    present.insert(row.id);
    ++position;
  }
  for (const QString& id : views_.keys()) {
    if (!present.contains(id)) views_.take(id)->deleteLater();
  }
}

}  // namespace velun
