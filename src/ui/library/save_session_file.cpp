// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/save_session_file.h"

#include "model/file_error_text.h"
#include "platform/foundation/atomic_file.h"
#include "platform/foundation/failure.h"

namespace velun {

bool saveSessionFile(const CaptionSession& session, const QString& panelTitle,
                     const ExportOptions& options, const FilePanels& panels) {
  const SessionFormat format = options.format;
  SavePanelRequest request;
  request.title = panelTitle;
  request.proposedName = defaultFileName(format, session.startedAt);
  request.filterName = format == SessionFormat::json ? QStringLiteral("JSON") : title(format);
  request.filterName.remove(QStringLiteral(" (.%1)").arg(fileExtension(format)));
  request.patterns = {QStringLiteral("*.") + fileExtension(format)};
  request.defaultSuffix = fileExtension(format);
  const std::optional<QUrl> url = panels.save(request);
  if (!url) return false;
  try {
    writeFileAtomically(url->toLocalFile(), session.exportAs(options), true);
  } catch (const FileError& error) {
    throw Failure(fileErrorText(error));
  }
  return true;
}

}  // namespace velun
