// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <QCoroTask>
#include <QString>

namespace velun {

/// Which languages a translation session translates between. Equal only to its copies once it was
/// invalidated.
class TranslationConfiguration {
 public:
  /// Language identifiers, such as "en" and "ko".
  TranslationConfiguration(const QString& source, const QString& target);

  const QString& source() const { return source_; }
  const QString& target() const { return target_; }

  /// Makes it different from every configuration so far, so that a new session is opened although
  /// the languages are the same. Main thread.
  void invalidate();

  bool operator==(const TranslationConfiguration&) const = default;

 private:
  QString source_;
  QString target_;
  std::uint64_t version_ = 0;
};

/// An open translation between two languages. Main thread. Destroying it cancels what is under way.
class TranslationSession {
 public:
  virtual ~TranslationSession() = default;

  /// The translation of one text; requests are answered in order. Throws `Failure` with a text
  /// to show; the session can still be used after that.
  virtual QCoro::Task<QString> translate(QString text) = 0;
};

}  // namespace velun
