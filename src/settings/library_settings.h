// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace velun {

class PreferenceStore;

/// The user's choices about saved sessions. Every set writes the store. Main thread.
class LibrarySettings final : public QObject {
  Q_OBJECT

 public:
  /// Null keeps nothing beyond the run. `preferences` must outlive this object.
  explicit LibrarySettings(PreferenceStore* preferences = nullptr);

  /// A session without a title of its own gets its first sentence as title.
  bool titlesFromFirstSentence() const { return titlesFromFirstSentence_; }
  void setTitlesFromFirstSentence(bool isOn);

 Q_SIGNALS:
  void titlesFromFirstSentenceChanged();

 private:
  PreferenceStore* preferences_;
  bool titlesFromFirstSentence_ = false;
};

}  // namespace velun
