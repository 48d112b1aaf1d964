// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/input_method_relay.h"

#include <QCoreApplication>
#include <QInputMethodEvent>

namespace velun {

InputMethodRelay::InputMethodRelay(QWidget& popup, QWidget& field)
    : QWidget(popup.parentWidget()), popup_(popup), field_(field) {
  setAttribute(Qt::WA_InputMethodEnabled);
  setAttribute(Qt::WA_TransparentForMouseEvents);
  resize(0, 0);
  hide();
}

void InputMethodRelay::begin() {
  // The popup's parent may be in another window now, or be hidden; a hidden widget gets no focus.
  setParent(popup_.parentWidget()->window());
  before_ = window()->focusWidget();
  show();
  setFocus(Qt::PopupFocusReason);
}

void InputMethodRelay::end() {
  if (before_) before_->setFocus(Qt::PopupFocusReason);
  // Otherwise the next widget would get it.
  else
    clearFocus();
  hide();
}

void InputMethodRelay::inputMethodEvent(QInputMethodEvent* event) {
  QCoreApplication::sendEvent(&field_, event);
}

QVariant InputMethodRelay::inputMethodQuery(Qt::InputMethodQuery query) const {
  const QVariant answer = field_.inputMethodQuery(query);
  const bool isPlace = query == Qt::ImCursorRectangle || query == Qt::ImAnchorRectangle ||
                       query == Qt::ImInputItemClipRectangle;
  return isPlace ? QVariant(inThisWidget(answer.toRectF())) : answer;
}

QRect InputMethodRelay::inThisWidget(const QRectF& ofField) const {
  const QRect rect = ofField.toAlignedRect();
  return {mapFromGlobal(field_.mapToGlobal(rect.topLeft())), rect.size()};
}

}  // namespace velun
