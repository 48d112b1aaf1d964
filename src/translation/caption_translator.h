// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/line.h"
#include "platform/translation/translation_platform.h"

#include <memory>
#include <optional>
#include <QCoroTask>
#include <QObject>
#include <QUuid>
#include <stop_token>
#include <vector>

namespace velun {

/// Translates finished lines one at a time, in order. The lines of the session are its queue: it
/// remembers how far it has read them. Main thread.
class CaptionTranslator final : public QObject {
  Q_OBJECT

 public:
  /// `platform` and `lines`, the lines of the current session, must outlive the translator. Lines
  /// may be appended and changed at any time; call `configure` after they were replaced.
  CaptionTranslator(TranslationPlatform& platform, const std::vector<Line>& lines);
  ~CaptionTranslator() override;

  /// Whether both identifiers name the same language. Regions and scripts do not count.
  static bool hasSameLanguage(const QString& sourceID, const QString& targetID);

  /// Discards the text in progress and starts again from the first line. Every line in the locale
  /// `sourceID` without a text in the language `targetID` is translated, unless translation is not
  /// `enabled`, there is no content, or both are the same language.
  void configure(bool enabled, bool hasContent, const QString& sourceID, const QString& targetID);

  /// Call after lines were appended.
  void linesAppended();

  /// Call after one line was inserted at `index`.
  void lineInserted(std::size_t index);

  /// Whether lines are translated, after `configure`.
  bool isActive() const { return translator_ != nullptr; }

 Q_SIGNALS:
  void translated(const QUuid& id, const QString& language, const QString& text);

  /// A line could not be translated. It is not tried again before the next `configure`.
  void failed(const QString& message);

 private:
  static QCoro::Task<> translateLines(CaptionTranslator* self, bool isPrepared,
                                      std::stop_token stop);
  void start(bool isPrepared);
  const Line* takeNext();
  bool isWanted(const Line& line) const;

  TranslationPlatform& platform_;
  const std::vector<Line>& lines_;
  QString sourceID_;
  QString targetID_;
  std::shared_ptr<Translator> translator_;  // null while nothing is to be translated
  std::size_t next_ = 0;                    // index of the first line that was not looked at
  std::vector<QUuid> inserted_;             // lines before it that were not looked at either
  bool isTranslating_ = false;              // `translateLines` runs or is about to
  std::stop_source stop_;                   // of the configuration
};

}  // namespace velun
