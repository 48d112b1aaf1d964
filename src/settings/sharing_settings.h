// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <array>
#include <optional>
#include <QObject>
#include <QString>

namespace velun {

class PreferenceStore;

/// What happens to the caption file when captions stop.
enum class CaptionFileEnd { keep, empty, remove };

inline constexpr std::array allCaptionFileEnds = {CaptionFileEnd::empty, CaptionFileEnd::remove,
                                                  CaptionFileEnd::keep};

/// The identifier: "keep", "empty" or "remove".
QString rawValue(CaptionFileEnd end);

/// The value with this identifier; nothing for any other text.
std::optional<CaptionFileEnd> captionFileEndFromRawValue(const QString& raw);

/// The label in the interface language.
QString title(CaptionFileEnd end);

/// What other programs may read of the captions. Nothing, until the user chooses it: every program
/// of the desktop session can listen to its bus and read the user's files. Every set writes the
/// store; the signal follows when the value differs. Main thread.
class SharingSettings final : public QObject {
  Q_OBJECT

 public:
  static constexpr int maxCaptionFileLines = 10;
  static constexpr int defaultCaptionFileLines = 2;

  /// Reads every value once. Null keeps nothing beyond the run. `preferences` must outlive this
  /// object.
  explicit SharingSettings(PreferenceStore* preferences = nullptr);

  /// Captions are sent on the session bus.
  bool offersCaptions() const { return offersCaptions_; }
  /// The path of the file that gets the last lines; empty: none.
  const QString& captionFile() const { return captionFile_; }
  /// How many lines it has, from 1 to `maxCaptionFileLines`.
  int captionFileLines() const { return captionFileLines_; }
  CaptionFileEnd captionFileEnd() const { return captionFileEnd_; }

  void setOffersCaptions(bool offers);
  void setCaptionFile(const QString& path);
  void setCaptionFileLines(int lines);
  void setCaptionFileEnd(CaptionFileEnd end);

 Q_SIGNALS:
  void offersCaptionsChanged();
  /// The path, the number of lines or what happens at the end.
  void captionFileChanged();

 private:
  PreferenceStore* preferences_;
  bool offersCaptions_ = false;
  QString captionFile_;
  int captionFileLines_ = defaultCaptionFileLines;
  CaptionFileEnd captionFileEnd_ = CaptionFileEnd::empty;
};

}  // namespace velun
