// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/accessible_role.h"

#include <QAccessibleWidget>
#include <QMenu>
#include <QToolButton>
#include <QWidget>

namespace velun {

namespace {

constexpr auto kRole = "velunAccessibleRole";
constexpr auto kPopup = "velunAccessiblePopup";

/// The interface of a widget that is hidden from screen readers.
class HiddenWidget final : public QAccessibleWidget {
 public:
  explicit HiddenWidget(QWidget* widget) : QAccessibleWidget(widget, QAccessible::NoRole) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.invisible = true;
    return state;
  }
};

/// Qt's interface has no action that opens the menu, and the menu is not its child, so screen
/// readers cannot find its items. The same is true of another popup that a command of the menu
/// opens.
class MenuButton final : public QAccessibleWidget {
 public:
  explicit MenuButton(QToolButton* button)
      : QAccessibleWidget(button, QAccessible::ButtonMenu), button_(button) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.hasPopup = true;
    state.pressed = button_->isDown();
    return state;
  }

  int childCount() const override { return int(popups().size()); }

  QAccessibleInterface* child(int index) const override {
    return QAccessible::queryAccessibleInterface(popups().value(index));
  }

  int indexOfChild(const QAccessibleInterface* child) const override {
    return child ? int(popups().indexOf(child->object())) : -1;
  }

  QStringList actionNames() const override {
    return QStringList(showMenuAction()) + QAccessibleWidget::actionNames();
  }

  void doAction(const QString& action) override {
    if (action != showMenuAction()) return QAccessibleWidget::doAction(action);
    // Queued: showMenu() returns only when the menu closes, and the screen reader waits for a
    // reply.
    if (!button_->isEnabled()) return;
    QMetaObject::invokeMethod(button_, &QToolButton::showMenu, Qt::QueuedConnection);
  }

 private:
  QObjectList popups() const {
    QObjectList popups;
    if (button_->menu()) popups << button_->menu();
    auto* popup = qvariant_cast<QWidget*>(button_->property(kPopup));
    // Other windows are children of the application.
    if (popup && popup->windowType() == Qt::Popup) popups << popup;
    return popups;
  }

  QToolButton* button_;
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  const QVariant role = widget ? widget->property(kRole) : QVariant();
  if (!role.isValid()) return nullptr;
  if (role.toInt() == QAccessible::NoRole) return new HiddenWidget(widget);
  auto* button = qobject_cast<QToolButton*>(object);
  if (button && role.toInt() == QAccessible::ButtonMenu) return new MenuButton(button);
  return new QAccessibleWidget(widget, QAccessible::Role(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
  // Qt calls factories with a class name; this one checks the widget's properties instead.
  static const bool isInstalled = (QAccessible::installFactory(makeInterface), true);
  Q_UNUSED(isInstalled)
  widget.setProperty(kRole, int(role));
}

void setOpensMenu(QToolButton& button) {
  setAccessibleRole(button, QAccessible::ButtonMenu);
}

void setOpensPopup(QToolButton& button, QWidget& popup) {
  button.setProperty(kPopup, QVariant::fromValue(&popup));
}

void announce(QWidget& notification) {
  QAccessibleEvent appeared(&notification, QAccessible::ObjectShow);
  QAccessible::updateAccessibility(&appeared);
}

void hideFromAccessibility(QWidget& widget) {
  setAccessibleRole(widget, QAccessible::NoRole);
}

}  // namespace velun
