// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <functional>
#include <memory>
#include <optional>
#include <QHash>
#include <QObject>
#include <QString>

namespace velun {

class PreferenceStore;

/// The recognizers that the user chose, and how fast recognizers were on this machine. Main thread.
class RecognizerPreferences final : public QObject {
  Q_OBJECT

 public:
  /// Null keeps nothing beyond the run. `preferences` must outlive this object.
  explicit RecognizerPreferences(PreferenceStore* preferences = nullptr);

  /// The id of the chosen recognizer of a locale; empty for the default.
  QString choice(const QString& locale) const;
  void setChoice(const QString& locale, const QString& id);

  /// The time of decoding per time of audio in the faster one of the last two runs of a recognizer,
  /// because other programs may have been busy during one of them; nullopt before the first.
  std::optional<double> realTimeFactor(const QString& id) const;
  /// Adds the measurement of a run.
  void addRealTimeFactor(const QString& id, double factor);

 Q_SIGNALS:
  void choiceChanged(const QString& locale);

 private:
  std::optional<double> factor(const QString& key) const;
  void setFactor(const QString& key, double factor);

  PreferenceStore* preferences_;
  QHash<QString, QString> choices_;
  QHash<QString, double> factors_;  ///< by the key of their preference
};

/// Adds measured times of decoding per time of audio to `preferences`, on the main thread. The
/// result can be called on any thread.
std::function<void(const QString& id, double realTimeFactor)> speedKeeper(
    const std::shared_ptr<RecognizerPreferences>& preferences);

}  // namespace velun
