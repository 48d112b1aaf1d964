// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/print_session.h"

#include "language/localization.h"

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

void printPage(const QString& html, QPagedPaintDevice& device) {
  QTextDocument document;
  document.setHtml(html);
  document.print(&device);
}

void askAndPrint(const QString& html, const QString& title) {
  QPrinter printer;
  // The dialog makes the proposed file's name of this one, without a check.
  printer.setDocName(pdfFileName(title));
  QPrintDialog dialog(&printer);
  dialog.setWindowTitle(L("Print Session", "세션 인쇄"));
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() != QDialog::Accepted) return;
  printer.setDocName(title);
  printPage(html, printer);
}

}  // namespace velun
