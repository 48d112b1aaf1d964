// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/program_choice.h"

#include "language/localization.h"

namespace velun {

QString title(const ProgramChoice& choice) {
  switch (choice.scope) {
    case ProgramChoice::Scope::all:
      return L("All Programs", "모든 프로그램");
    case ProgramChoice::Scope::only:
      return L("Only %1", "%1만").arg(choice.name);
    case ProgramChoice::Scope::allBut:
      return L("All Except %1", "%1 외 모두").arg(choice.name);
  }
  return {};
}

}  // namespace velun
