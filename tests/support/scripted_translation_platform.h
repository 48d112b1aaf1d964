// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translation_platform.h"
#include "support/scripted_translation_session.h"

namespace velun::test {

/// Opens translation sessions that do what the test says.
class ScriptedTranslationPlatform final : public TranslationPlatform {
 public:
  std::unique_ptr<TranslationSession> openSession(
      const TranslationConfiguration& configuration) override {
    opened.push_back(configuration);
    sessions.push_back(std::make_shared<ScriptedTranslationSession::Script>());
    sessions.back()->translate = translate;
    return std::make_unique<ScriptedTranslationSession>(sessions.back());
  }
  QCoro::Task<QStringList> supportedLanguages() override { co_return QStringList(); }
  std::optional<QString> activity() const override { return busyWith; }

  void setActivity(const std::optional<QString>& text) {
    busyWith = text;
    Q_EMIT activityChanged();
  }

  /// What sessions answer at once with; unset, the test answers.
  std::function<QString(const QString&)> translate;
  std::vector<TranslationConfiguration> opened;
  std::vector<std::shared_ptr<ScriptedTranslationSession::Script>> sessions;
  std::optional<QString> busyWith;
};

}  // namespace velun::test
