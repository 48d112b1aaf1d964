// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model_catalogue.h"
#include "platform/models/model_state.h"

#include <optional>
#include <QObject>
#include <QStringList>
#include <vector>

namespace velun {

class AppSettings;
class ModelStore;
class PreferenceStore;
struct RecognizerCandidate;
class SpeechPlatform;

/// The download that would improve the captions of the chosen language on this machine, or that
/// they need. Nothing is downloaded before `download`. Main thread.
class BetterCaptions final : public QObject {
  Q_OBJECT

 public:
  struct Offer {
    QString recognizer;     ///< its id
    bool isNeeded = false;  ///< nothing else can recognize the language
    /// Its licence has to be agreed to first, which the page "Languages & Models" asks for.
    bool needsAgreement = false;
    bool isSuitable = true;  ///< this machine has the memory and the speed for it
    std::int64_t bytes = 0;  ///< the size of the whole download
    ModelState state;        ///< of all its models together

    bool operator==(const Offer&) const = default;
  };

  /// `preferences` keeps what the user declined; null keeps nothing beyond the run. All must
  /// outlive this object.
  BetterCaptions(SpeechPlatform& speech, ModelCatalogue catalogue, ModelStore& models,
                 const AppSettings& settings, PreferenceStore* preferences = nullptr);

  /// Nullopt when there is nothing to offer, or when the user has declined it.
  const std::optional<Offer>& offer() const { return offer_; }

  /// Whether to ask before a download because the connection is metered.
  bool isMetered() const;

  /// Starts, continues or retries the download. Its outcome is in the offer. Does nothing while the
  /// licence has to be agreed to.
  void download();
  void pause();
  /// Stops the download and deletes its part.
  void cancel();
  /// Does not offer this recognizer again, in later runs neither. Its page in the settings still
  /// does.
  void decline();
  /// Withdraws an offer whose download is complete: the user has seen it.
  void acknowledge();

 public Q_SLOTS:
  /// Looks again at what is installed.
  void update();

 Q_SIGNALS:
  void changed();

 private:
  std::optional<Offer> find();
  /// What to offer if the licence of each of the recognizers has to be agreed to.
  std::optional<Offer> findToAgree(const std::vector<RecognizerCandidate>& all,
                                   const QString& locale);
  std::optional<Offer> makeOffer(const QString& recognizer, bool isNeeded,
                                 const std::vector<Model>& models);
  ModelState combinedState() const;
  std::vector<Model> modelsOf(const RecognizerCandidate& recognizer, const QString& locale) const;
  QStringList declined() const;

  SpeechPlatform& speech_;
  ModelCatalogue catalogue_;
  ModelStore& store_;
  const AppSettings& settings_;
  PreferenceStore* preferences_;
  QStringList declinedNow_;  ///< without preferences
  std::optional<Offer> offer_;
  std::vector<Model> models_;  ///< to download for `offer_`
  QString downloaded_;         ///< the recognizer whose download was seen running
};

}  // namespace velun
