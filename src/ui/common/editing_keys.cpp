// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/editing_keys.h"

#include <QKeyEvent>
#include <QLineEdit>

namespace velun {

namespace {

class EditingKeys final : public QObject {
 public:
  using QObject::QObject;

  bool eventFilter(QObject* watched, QEvent* event) override {
    if (event->type() == QEvent::ShortcutOverride &&
        static_cast<QKeyEvent*>(event)->matches(QKeySequence::DeleteStartOfWord)) {
      event->accept();
      return true;
    }
    return QObject::eventFilter(watched, event);
  }
};

}  // namespace

void keepEditingKeys(QLineEdit& field) {
  field.installEventFilter(new EditingKeys(&field));
}

}  // namespace velun
