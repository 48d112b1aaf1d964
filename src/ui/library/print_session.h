// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>
#include <QString>

class QPrinter;

namespace velun {

/// Draws a web page, see `renderHtml`, on the pages of a printer, or in a PDF file, which is
/// replaced as a whole. Takes seconds for a day of captions. Throws `FileError`. Any thread that
/// owns the printer.
void print(const QString& html, QPrinter& printer);

/// The name of a PDF file with a session of this title: without what no file name can have, and not
/// hidden. Main thread.
QString pdfFileName(const QString& title);

/// Asks for a printer, which may be a PDF file; `title` names the job. Null if the user has
/// cancelled. Main thread; runs the event loop meanwhile.
std::shared_ptr<QPrinter> askPrinter(const QString& title);

}  // namespace velun
