// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translation_session.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QStringList>

namespace velun {

/// The platform's translation services. Main thread.
class TranslationPlatform : public QObject {
  Q_OBJECT

 public:
  /// Opens a session; never fails. What cannot be translated fails at each text.
  virtual std::unique_ptr<TranslationSession> openSession(
      const TranslationConfiguration& configuration) = 0;

  /// The identifiers of every language that can be translated into, such as "ko".
  virtual QCoro::Task<QStringList> supportedLanguages() = 0;

  /// What a session is busy with before it can translate ("Downloading translation model…"), in
  /// the interface language; none when nothing is under way.
  virtual std::optional<QString> activity() const = 0;

 Q_SIGNALS:
  void activityChanged();
};

}  // namespace velun
