// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/caption/program_items.h"

#include "language/localization.h"
#include "ui/common/program_icon.h"

#include <QMenu>

namespace velun {

using Scope = ProgramChoice::Scope;

ProgramItems::ProgramItems(AppSettings& settings, AudioPlatform& audio, QObject* parent)
    : QObject(parent), settings_(settings), audio_(audio) {}

ProgramItems::~ProgramItems() = default;

void ProgramItems::setFollowing(bool isFollowing) {
  if (!isFollowing) targets_.reset();
  if (!isFollowing || targets_) return;
  // The theme may have changed since.
  icons_.clear();
  targets_ = audio_.followTargets();
  connect(targets_.get(), &AudioTargets::changed, this, &ProgramItems::changed);
}

void ProgramItems::addTo(QMenu& menu, bool isEnabled) {
  const QStringList names = programs();
  menu.addSeparator();
  if (names.isEmpty()) {
    menu.addAction(L("Programs that play sound are listed here",
                     "소리를 재생하는 프로그램이 여기에 나열됩니다"))
        ->setEnabled(false);
    return;
  }
  add(menu, {}, isEnabled);
  for (const Scope scope : {Scope::only, Scope::allBut}) {
    for (const QString& name : names) add(menu, {scope, name}, isEnabled);
  }
}

void ProgramItems::add(QMenu& menu, const ProgramChoice& choice, bool isEnabled) {
  // A name may contain what marks the key of an item.
  QAction* action = menu.addAction(title(choice).replace(u'&', QLatin1String("&&")));
  if (choice.scope != Scope::all) action->setIcon(iconOf(choice.name));
  action->setCheckable(true);
  action->setChecked(settings_.captions(AudioInput::computer) && settings_.program() == choice);
  action->setEnabled(isEnabled);
  connect(action, &QAction::triggered, this, [this, choice] {
    // In this order captions start anew only once.
    settings_.setProgram(choice);
    if (settings_.useMic()) settings_.setUseMic(false);
  });
}

const QIcon& ProgramItems::iconOf(const QString& program) {
  const auto found = icons_.constFind(program);
  return found != icons_.constEnd() ? *found : *icons_.insert(program, programIcon(program));
}

QStringList ProgramItems::programs() const {
  QStringList names;
  const auto targets = targets_ ? targets_->list() : std::vector<AudioTarget>();
  for (const AudioTarget& target : targets) {
    if (target.kind == AudioTarget::Kind::program) names << target.id;
  }
  const QString& chosen = settings_.program().name;
  if (!chosen.isEmpty() && !names.contains(chosen)) names << chosen;
  return names;
}

}  // namespace velun
