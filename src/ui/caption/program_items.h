// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "settings/app_settings.h"

#include <memory>
#include <QHash>
#include <QIcon>
#include <QObject>

class QMenu;

namespace velun {

/// The items of a menu that choose whose sound is captioned: of all programs, of one, or of all but
/// one. Main thread.
class ProgramItems final : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive the items.
  ProgramItems(AppSettings& settings, AudioPlatform& audio, QObject* parent);
  ~ProgramItems() override;

  /// Follows the programs that play. Without it only the chosen program is offered.
  void setFollowing(bool isFollowing);

  /// Appends the items: none while no program plays and none is chosen.
  void addTo(QMenu& menu, bool isEnabled);

 Q_SIGNALS:
  /// Other programs play.
  void changed();

 private:
  void add(QMenu& menu, const ProgramChoice& choice, bool isEnabled);
  const QIcon& iconOf(const QString& program);
  QStringList programs() const;

  AppSettings& settings_;
  AudioPlatform& audio_;
  /// Null while they are not followed.
  std::unique_ptr<AudioTargets> targets_;
  /// By the program's name; finding one can take the reading of many files.
  QHash<QString, QIcon> icons_;
};

}  // namespace velun
