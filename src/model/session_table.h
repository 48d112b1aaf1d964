// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"

#include <QStringList>
#include <vector>

namespace velun {

/// A session for reading the original and its translations side by side: one row a line.
struct SessionTable {
  /// The names of the columns, in the interface language.
  QStringList headings;
  /// One text a column; empty where there is none.
  std::vector<QStringList> rows;
  /// How many columns at the beginning have short texts: the time and the speaker.
  int narrowColumns = 0;
};

/// The columns are the time, the speaker if one is known, the original and each translation, as far
/// as the options want them.
/// The format and the lines of the options do not matter.
SessionTable sessionTable(const CaptionSession& session, const ExportOptions& options);

/// The table in Markdown, below the title.
QString renderMarkdownTable(const CaptionSession& session, const ExportOptions& options);

/// The table as a web page that can be printed. Qt's rich text can show it too.
QString renderHtml(const CaptionSession& session, const ExportOptions& options);

}  // namespace velun
