// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/shortcut_set.h"

#include "language/localization.h"
#include "platform/foundation/preference_store.h"
#include "ui/common/app_commands.h"

namespace velun {

namespace {

struct Command {
  QString id;
  QString title;
};

QList<Command> offeredCommands() {
  return {{"toggle-captions", L("Start or Stop Captions", "자막 시작 또는 중지")},
          {"toggle-panel", L("Show or Hide the Caption Window", "자막 창 보기 또는 숨기기")},
          {"toggle-click-through", L("Click Through Captions", "자막 창 클릭 통과")},
          {"bigger-text", L("Bigger Text", "글자 크게")},
          {"smaller-text", L("Smaller Text", "글자 작게")}};
}

QString preferenceOf(const QString& id) {
  return "shortcut " + id;
}

}  // namespace

ShortcutSet::ShortcutSet(AppCommands& commands, GlobalShortcuts& shortcuts,
                         PreferenceStore& preferences)
    : commands_(commands), shortcuts_(shortcuts), preferences_(preferences) {
  connect(&shortcuts, &GlobalShortcuts::triggered, this, [this](const QString& id) {
    if (QAction* action = commands_.find(id)) action->trigger();
  });
  connect(&shortcuts, &GlobalShortcuts::changed, this, &ShortcutSet::changed);
  connect(&Localization::shared(), &Localization::languageChanged, this, [this] {
    apply();
    Q_EMIT changed();
  });
  apply();
}

QKeySequence ShortcutSet::keysOf(const QString& id) const {
  const QString stored = preferences_.get<QString>(preferenceOf(id)).value_or(QString());
  const QKeySequence keys = QKeySequence::fromString(stored, QKeySequence::PortableText);
  const bool isKey = !keys.isEmpty() && keys[0].key() != Qt::Key_unknown;
  return isKey ? QKeySequence(keys[0]) : QKeySequence();
}

std::vector<ShortcutSet::Row> ShortcutSet::rows() const {
  std::vector<Row> rows;
  const QStringList taken = shortcuts_.taken();
  for (const auto& [id, title] : offeredCommands()) {
    if (!commands_.find(id)) continue;
    rows.push_back({.id = id, .title = title, .keys = keysOf(id), .isTaken = taken.contains(id)});
  }
  return rows;
}

void ShortcutSet::setKeys(const QString& id, const QKeySequence& keys) {
  const QKeySequence first = keys.isEmpty() ? QKeySequence() : QKeySequence(keys[0]);
  if (first == keysOf(id)) return;
  preferences_.set(preferenceOf(id), first.toString(QKeySequence::PortableText));
  apply();
  Q_EMIT changed();
}

void ShortcutSet::apply() {
  std::vector<GlobalShortcut> wanted;
  for (const Row& row : rows()) {
    if (row.keys.isEmpty()) continue;
    wanted.push_back({.id = row.id, .description = row.title, .keys = row.keys});
  }
  shortcuts_.setShortcuts(wanted);
}

}  // namespace velun
