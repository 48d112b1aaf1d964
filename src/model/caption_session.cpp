// SPDX-License-Identifier: GPL-3.0-or-later
#include "model/caption_session.h"

#include "language/localization.h"
#include "model/renderings.h"
#include "model/session_file/session_file.h"
#include "model/session_table.h"
#include "model/subtitles/subtitle_files.h"

#include <algorithm>
#include <set>

namespace velun {

namespace {

/// The same session with some of its lines only.
CaptionSession part(const CaptionSession& session, const LineRange& range) {
  const std::size_t first = std::min(range.first, session.lines.size());
  const std::size_t end = first + std::min(range.count, session.lines.size() - first);
  const auto at = [&session](std::size_t index) {
    return session.lines.begin() + static_cast<std::ptrdiff_t>(index);
  };
  CaptionSession some = session;
  some.lines.assign(at(first), at(end));
  return some;
}

}  // namespace

QString defaultSessionTitle() {
  return L("Caption Session", "자막 세션");
}

Instant currentInstant() {
  return std::chrono::time_point_cast<std::chrono::microseconds>(std::chrono::system_clock::now());
}

QString CaptionSession::inputName(const Line& line) const {
  if (!line.input) return {};
  return (*line.input == AudioInput::microphone ? microphoneName : computerName)
      .value_or(QString());
}

QString CaptionSession::named(const Line& line, const QString& text) const {
  const QString name = inputName(line);
  return name.isEmpty() || text.isEmpty() ? text : name + QStringLiteral(": ") + text;
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

QByteArray CaptionSession::exportAs(const ExportOptions& options) const {
  if (options.lines && options.format != SessionFormat::json) {
    ExportOptions whole = options;
    whole.lines.reset();
    return part(*this, *options.lines).exportAs(whole);
  }
  const auto cues = [&] {
    return subtitleCues(*this, options.content, options.language);
  };
  switch (options.format) {
    case SessionFormat::markdown:
      return renderMarkdown(*this, options).toUtf8();
    case SessionFormat::text:
      return renderText(*this, options).toUtf8();
    case SessionFormat::markdownTable:
      return renderMarkdownTable(*this, options).toUtf8();
    case SessionFormat::html:
      return renderHtml(*this, options).toUtf8();
    case SessionFormat::subRip:
      return renderSubRip(cues()).toUtf8();
    case SessionFormat::webVTT:
      return renderWebVTT(cues()).toUtf8();
    case SessionFormat::json:
      return encodeSession(*this);
  }
  Q_UNREACHABLE();
}

}  // namespace velun
