// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/translator.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QStringList>
#include <vector>

namespace velun {

struct PairModels;

/// The translation service. Main thread.
class TranslationPlatform : public QObject {
  Q_OBJECT

 public:
  /// A translator between two languages, given as identifiers such as "en" and "ko". Never fails:
  /// a pair that is not available fails at each text.
  virtual std::unique_ptr<Translator> makeTranslator(const QString& source,
                                                     const QString& target) = 0;

  /// The identifiers of every language that can be translated into, such as "ko".
  virtual QCoro::Task<QStringList> supportedLanguages() = 0;

  /// For each of `targets`, what has to be downloaded before `source` can be translated into it, in
  /// bytes: 0 when it can be now, nothing when it cannot be at all.
  virtual std::vector<std::optional<qint64>> downloadBytes(const QString& source,
                                                           const QStringList& targets) const = 0;

  /// Every direction that has models of its own to download.
  virtual std::vector<PairModels> models() const = 0;

  /// What a translator waits for before it can translate ("Downloading translation model…"), in
  /// the interface language; nothing when none waits.
  virtual std::optional<QString> activity() const = 0;

 Q_SIGNALS:
  void activityChanged();
};

}  // namespace velun
