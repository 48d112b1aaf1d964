// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/print_session.h"

#include "language/localization.h"
#include "platform/foundation/atomic_file.h"

#include <QBuffer>
#include <QPdfWriter>
#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>

namespace velun {

QString pdfFileName(const QString& title) {
  // Of at most four bytes each, as the file system counts.
  constexpr qsizetype kMaxLetters = 60;
  QString name = title.simplified().replace(QLatin1Char('/'), QLatin1Char('-')).left(kMaxLetters);
  if (!name.isEmpty() && name.back().isHighSurrogate()) name.chop(1);
  while (name.startsWith(QLatin1Char('.'))) name.remove(0, 1);
  return (name.isEmpty() ? L("Session", "기록") : name.trimmed()) + QStringLiteral(".pdf");
}

namespace {

void printPage(const QString& html, QPagedPaintDevice& device) {
  QTextDocument document;
  document.setHtml(html);
  document.print(&device);
}

}  // namespace

void print(const QString& html, QPrinter& printer) {
  if (printer.outputFormat() != QPrinter::PdfFormat) return printPage(html, printer);
  // Not by the printer, which tells nobody that the disk is full, and cuts the file.
  QByteArray bytes;
  QBuffer buffer(&bytes);
  buffer.open(QIODevice::WriteOnly);
  {
    QPdfWriter writer(&buffer);
    writer.setTitle(printer.docName());
    writer.setResolution(printer.resolution());
    writer.setPageLayout(printer.pageLayout());
    writer.setPageRanges(printer.pageRanges());
    printPage(html, writer);
  }
  writeFileAtomically(printer.outputFileName(), bytes, true);
}

std::shared_ptr<QPrinter> askPrinter(const QString& title) {
  auto printer = std::make_shared<QPrinter>();
  // The dialog makes the proposed file's name of this one, without a check.
  printer->setDocName(pdfFileName(title));
  QPrintDialog dialog(printer.get());
  dialog.setWindowTitle(L("Print Session", "세션 인쇄"));
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() != QDialog::Accepted) return nullptr;
  printer->setDocName(title);
  return printer;
}

}  // namespace velun
