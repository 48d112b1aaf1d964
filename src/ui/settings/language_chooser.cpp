// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/language_chooser.h"

#include "language/localization.h"
#include "ui/common/language_popup.h"
#include "ui/settings/settings_form.h"

#include <QAbstractItemView>
#include <QAccessibleWidget>
#include <QKeyEvent>
#include <QWheelEvent>

namespace velun {

namespace {

/// Qt's interface for combo boxes reports the state of the list that this one does not use.
class AccessibleChooser final : public QAccessibleWidget {
 public:
  explicit AccessibleChooser(LanguageChooser* chooser)
      : QAccessibleWidget(chooser, QAccessible::ComboBox), chooser_(chooser) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.expandable = true;
    state.hasPopup = true;
    state.expanded = chooser_->isOpen();
    return state;
  }

  /// The name is the chosen language, as with Qt’s combo boxes; the label is a relation.
  QString text(QAccessible::Text text) const override {
    const bool isValue = text == QAccessible::Name || text == QAccessible::Value;
    return isValue ? chooser_->currentText() : QAccessibleWidget::text(text);
  }

  int childCount() const override { return int(children().size()); }
  QAccessibleInterface* child(int index) const override {
    return QAccessible::queryAccessibleInterface(children().value(index));
  }
  int indexOfChild(const QAccessibleInterface* child) const override {
    return child ? int(children().indexOf(child->object())) : -1;
  }

  QStringList actionNames() const override {
    return QStringList(showMenuAction()) + QAccessibleWidget::actionNames();
  }
  void doAction(const QString& action) override {
    if (action != showMenuAction()) return QAccessibleWidget::doAction(action);
    if (chooser_->isOpen()) return chooser_->hidePopup();
    if (chooser_->isEnabled()) chooser_->showPopup();
  }

 private:
  /// Qt lists no popups as children of the application, but other windows.
  QObjectList children() const {
    QObjectList children{chooser_->view()};
    if (chooser_->list().windowType() == Qt::Popup) children << &chooser_->list();
    return children;
  }

  LanguageChooser* chooser_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  auto* chooser = qobject_cast<LanguageChooser*>(object);
  return chooser ? new AccessibleChooser(chooser) : nullptr;
}

}  // namespace

LanguageChooser::LanguageChooser(std::function<std::vector<LanguageChoice>()> makeChoices)
    : makeChoices_(std::move(makeChoices)), popup_(new LanguagePopup(this)) {
  static const bool isInstalled = (QAccessible::installFactory(makeInterface), true);
  Q_UNUSED(isInstalled)
  connect(popup_, &LanguagePopup::chosen, this, &LanguageChooser::choose);
  const auto announceState = [this] {
    QAccessible::State changed;
    changed.expanded = true;
    QAccessibleStateChangeEvent event(this, changed);
    QAccessible::updateAccessibility(&event);
  };
  connect(popup_, &LanguagePopup::opened, this, announceState);
  connect(popup_, &LanguagePopup::closed, this, announceState);
}

void LanguageChooser::setCurrent(const QString& current) {
  std::vector<Choice> items;
  for (const LanguageChoice& choice : makeChoices_()) {
    items.push_back({choice.name, choice.identifier});
  }
  fillChooser(this, std::move(items), {languageName(current), current});
}

QWidget& LanguageChooser::list() const {
  return *popup_;
}

bool LanguageChooser::isOpen() const {
  return popup_->isVisible();
}

void LanguageChooser::showPopup() {
  open({});
}

void LanguageChooser::hidePopup() {
  popup_->hide();
}

void LanguageChooser::open(const QString& typed) {
  const QString current = currentData().toString();
  setCurrent(current);  // what is ready may have changed
  popup_->open(accessibleName(), makeChoices_(), current, QRect(mapToGlobal(QPoint(0, 0)), size()),
               typed);
}

void LanguageChooser::choose(const QString& identifier) {
  const int index = findData(identifier);
  if (index < 0) return;
  setCurrentIndex(index);
  Q_EMIT activated(index);
}

void LanguageChooser::keyPressEvent(QKeyEvent* event) {
  const QString typed = event->text();
  const bool isCommand = event->modifiers() & (Qt::ControlModifier | Qt::AltModifier);
  if (isCommand || typed.trimmed().isEmpty() || !typed.at(0).isPrint()) {
    QComboBox::keyPressEvent(event);
  } else if (isOpen()) {
    popup_->addTyped(typed);
  } else {
    open(typed);
  }
}

void LanguageChooser::wheelEvent(QWheelEvent* event) {
  event->ignore();
}

}  // namespace velun
