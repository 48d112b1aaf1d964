// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/accessible_role.h"

#include <QAccessibleWidget>
#include <QWidget>

namespace velun {

namespace {

constexpr auto kRole = "velunAccessibleRole";

/// Whatever is on the screen, there is nothing here for assistive technology.
class HiddenWidget final : public QAccessibleWidget {
 public:
  explicit HiddenWidget(QWidget* widget) : QAccessibleWidget(widget, QAccessible::NoRole) {}

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.invisible = true;
    return state;
  }
};

QAccessibleInterface* makeInterface(const QString&, QObject* object) {
  auto* widget = qobject_cast<QWidget*>(object);
  const QVariant role = widget ? widget->property(kRole) : QVariant();
  if (!role.isValid()) return nullptr;
  if (role.toInt() == QAccessible::NoRole) return new HiddenWidget(widget);
  return new QAccessibleWidget(widget, QAccessible::Role(role.toInt()));
}

}  // namespace

void setAccessibleRole(QWidget& widget, QAccessible::Role role) {
  // The toolkit asks the factories by class name; ours looks at the widget itself.
  static const bool isInstalled = (QAccessible::installFactory(makeInterface), true);
  Q_UNUSED(isInstalled)
  widget.setProperty(kRole, int(role));
}

void hideFromAccessibility(QWidget& widget) {
  setAccessibleRole(widget, QAccessible::NoRole);
}

}  // namespace velun
