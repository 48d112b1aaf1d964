// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

class QPagedPaintDevice;
class QPrinter;

namespace velun {

/// Draws a web page, see `renderHtml`, on the pages of a printer or of a PDF file. Main thread.
void printPage(const QString& html, QPagedPaintDevice& device);

/// Writes a web page as the PDF file that the printer is set to, which is replaced as a whole.
/// Throws `FileError`. Main thread.
void printToFile(const QString& html, const QPrinter& printer);

/// The name of a PDF file with a session of this title: without what no file name can have, and not
/// hidden. Main thread.
QString pdfFileName(const QString& title);

/// Asks for a printer, which may be a PDF file, and prints the page. `title` names the job. Throws
/// `FileError` when the file cannot be written. Main thread; runs the event loop meanwhile.
void askAndPrint(const QString& html, const QString& title);

}  // namespace velun
