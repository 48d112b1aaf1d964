// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <optional>
#include <QObject>
#include <QString>

namespace velun {

class AppSettings;
class RecognizerPreferences;
class SpeechPlatform;

/// The way out for a machine that cannot keep up: a smaller recognizer of the chosen language. Main
/// thread.
class SmallerRecognizer final : public QObject {
  Q_OBJECT

 public:
  struct Offer {
    QString locale;
    QString recognizer;  ///< its id
    QString title;       ///< for people
    /// Otherwise it has to be downloaded first, on the page "Languages & Models".
    bool isInstalled = false;

    bool operator==(const Offer&) const = default;
  };

  /// All must outlive this object.
  SmallerRecognizer(SpeechPlatform& speech, RecognizerPreferences& preferences,
                    const AppSettings& settings);

  /// Nullopt when the machine keeps up, or when there is nothing smaller.
  const std::optional<Offer>& offer() const { return offer_; }

  /// Captions begin: notes the recognizer that they use.
  void begin();
  /// The machine cannot keep up: makes the offer if there is one.
  void find();
  /// Withdraws the offer.
  void withdraw();
  /// Chooses the recognizer if it is installed, and withdraws the offer.
  void accept();

 Q_SIGNALS:
  void changed();

 private:
  void set(const std::optional<Offer>& offer);
  std::optional<Offer> smaller() const;

  SpeechPlatform& speech_;
  RecognizerPreferences& preferences_;
  const AppSettings& settings_;
  QString used_;  ///< the id of the recognizer that captions use
  std::optional<Offer> offer_;
};

}  // namespace velun
