// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/model_section.h"

#include "language/language_search.h"
#include "ui/models/model_group_view.h"

#include <algorithm>
#include <QLabel>
#include <QVBoxLayout>

namespace velun {

namespace {

int rank(const ModelGroup& group) {
  if (group.isCurrent) return 0;
  return group.isInstalled ? 1 : 2;
}

}  // namespace

ModelSection::ModelSection(ModelList& list, QWidget* parent) : QWidget(parent), list_(list) {
  heading_ = new QLabel(this);
  QFont bold = heading_->font();
  bold.setWeight(QFont::DemiBold);
  heading_->setFont(bold);
  column_ = new QVBoxLayout(this);
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(2);
  column_->addWidget(heading_);
  connect(&list_, &ModelList::changed, this, &ModelSection::update);
  update();
}

void ModelSection::setSearch(const QString& search) {
  search_ = foldedLanguageName(search);
  update();
}

ModelGroupView* ModelSection::viewOf(const ModelGroup& group) {
  ModelGroupView*& view = views_[group.id];
  if (!view) {
    view = new ModelGroupView(this);
    connect(view, &ModelGroupView::triggered, &list_,
            [this](ModelAction action, const QString& id, const QString& model) {
              list_.perform(action, id, model);
            });
    connect(view, &ModelGroupView::rowsChanged, this, &ModelSection::rowsChanged);
    view->setGroup(group);
    view->setOpen(group.isCurrent);
  } else {
    view->setGroup(group);
  }
  return view;
}

void ModelSection::update() {
  heading_->setText(list_.title());
  std::vector<ModelGroup> groups = list_.groups();
  std::erase_if(groups, [this](const ModelGroup& group) {
    return matchLanguage(group.searchNames, search_) == LanguageMatch::none;
  });
  std::stable_sort(groups.begin(), groups.end(),
                   [](const auto& a, const auto& b) { return rank(a) < rank(b); });
  order_.clear();
  int position = 1;
  for (const ModelGroup& group : groups) {
    ModelGroupView* view = viewOf(group);
    // Moving a widget that is in its place would take the focus from it.
    if (column_->indexOf(view) != position) column_->insertWidget(position, view);
    view->show();
    order_.push_back(group.id);
    ++position;
  }
  for (auto each = views_.cbegin(); each != views_.cend(); ++each) {
    const bool isShown = std::find(order_.begin(), order_.end(), each.key()) != order_.end();
    if (!isShown) each.value()->hide();
  }
  setVisible(hasMatches());
  Q_EMIT rowsChanged();
}

std::vector<QWidget*> ModelSection::focusChain() const {
  std::vector<QWidget*> chain;
  for (const QString& id : order_) {
    const std::vector<QWidget*> group = views_.value(id)->focusChain();
    chain.insert(chain.end(), group.begin(), group.end());
  }
  return chain;
}

}  // namespace velun
