// SPDX-License-Identifier: GPL-3.0-or-later
#include "settings/sharing_settings.h"

#include "language/localization.h"
#include "language/raw_value.h"
#include "platform/foundation/preference_store.h"

#include <algorithm>
#include <utility>

namespace velun {

namespace {

const auto kOffers = QStringLiteral("offersCaptions");
const auto kFile = QStringLiteral("captionFile");
const auto kLines = QStringLiteral("captionFileLines");
const auto kEnd = QStringLiteral("captionFileEnd");

}  // namespace

QString rawValue(CaptionFileEnd end) {
  switch (end) {
    case CaptionFileEnd::keep:
      return QStringLiteral("keep");
    case CaptionFileEnd::remove:
      return QStringLiteral("remove");
    case CaptionFileEnd::empty:
      break;
  }
  return QStringLiteral("empty");
}

std::optional<CaptionFileEnd> captionFileEndFromRawValue(const QString& raw) {
  return valueFromRaw(allCaptionFileEnds, raw);
}

QString title(CaptionFileEnd end) {
  switch (end) {
    case CaptionFileEnd::keep:
      return L("Keep the Last Lines", "마지막 줄 남겨 두기");
    case CaptionFileEnd::remove:
      return L("Remove the File", "파일 삭제");
    case CaptionFileEnd::empty:
      break;
  }
  return L("Empty the File", "파일 비우기");
}

SharingSettings::SharingSettings(PreferenceStore* preferences) : preferences_(preferences) {
  if (!preferences_) return;
  offersCaptions_ = preferences_->get<bool>(kOffers).value_or(offersCaptions_);
  captionFile_ = preferences_->get<QString>(kFile).value_or(captionFile_);
  const double lines = preferences_->get<double>(kLines).value_or(captionFileLines_);
  captionFileLines_ = static_cast<int>(std::clamp(lines, 1.0, double(maxCaptionFileLines)));
  const QString end = preferences_->get<QString>(kEnd).value_or(QString());
  captionFileEnd_ = captionFileEndFromRawValue(end).value_or(captionFileEnd_);
}

void SharingSettings::setOffersCaptions(bool offers) {
  const bool differs = std::exchange(offersCaptions_, offers) != offers;
  if (preferences_) preferences_->set(kOffers, offers);
  if (differs) Q_EMIT offersCaptionsChanged();
}

void SharingSettings::setCaptionFile(const QString& path) {
  const bool differs = std::exchange(captionFile_, path) != path;
  if (preferences_) preferences_->set(kFile, path);
  if (differs) Q_EMIT captionFileChanged();
}

void SharingSettings::setCaptionFileLines(int lines) {
  lines = std::clamp(lines, 1, maxCaptionFileLines);
  const bool differs = std::exchange(captionFileLines_, lines) != lines;
  if (preferences_) preferences_->set(kLines, double(lines));
  if (differs) Q_EMIT captionFileChanged();
}

void SharingSettings::setCaptionFileEnd(CaptionFileEnd end) {
  const bool differs = std::exchange(captionFileEnd_, end) != end;
  if (preferences_) preferences_->set(kEnd, rawValue(end));
  if (differs) Q_EMIT captionFileChanged();
}

}  // namespace velun
