// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/print_session.h"

#include "language/localization.h"

#include <QPrintDialog>
#include <QPrinter>
#include <QTextDocument>

namespace velun {

void printPage(const QString& html, QPagedPaintDevice& device) {
  QTextDocument document;
  document.setHtml(html);
  document.print(&device);
}

void askAndPrint(const QString& html, const QString& title) {
  QPrinter printer;
  printer.setDocName(title);
  QPrintDialog dialog(&printer);
  dialog.setWindowTitle(L("Print Session", "세션 인쇄"));
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() == QDialog::Accepted) printPage(html, printer);
}

}  // namespace velun
