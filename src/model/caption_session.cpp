// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/caption_session.h"

#include "language/localization.h"
#include "model/renderings.h"
#include "model/session_file/session_file.h"

#include <algorithm>
#include <set>

namespace velun {

QString defaultSessionTitle() {
  return L("Caption Session", "자막 세션");
}

Instant currentInstant() {
  return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

std::vector<QString> CaptionSession::translationLanguages() const {
  std::set<QString, CodePointOrder> languages;
  for (const Line& line : lines) {
    for (const auto& [language, text] : line.translations) languages.insert(language);
  }
  return {languages.begin(), languages.end()};
}

bool CaptionSession::hasTranslations() const {
  return std::any_of(lines.begin(), lines.end(), [](const Line& line) {
    return !line.translations.empty() || line.legacyTranslation;
  });
}

QString CaptionSession::transcript(TranscriptContent content,
                                   const std::optional<QString>& language) const {
  return renderTranscript(*this, content, language);
}

QByteArray CaptionSession::exportAs(SessionFormat format, TranscriptContent content,
                                    const std::optional<QString>& language) const {
  switch (format) {
    case SessionFormat::markdown:
      return renderMarkdown(*this, content, language).toUtf8();
    case SessionFormat::text:
      return renderText(*this, content, language).toUtf8();
    case SessionFormat::json:
      return encodeSession(*this);
  }
  Q_UNREACHABLE();
}

}  // namespace velun
