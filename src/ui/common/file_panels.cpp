// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/file_panels.h"

#include <QFileDialog>
#include <QStandardPaths>

namespace velun {

namespace {

QString startingFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

QString nameFilter(const QString& name, const QStringList& patterns) {
  return QStringLiteral("%1 (%2)").arg(name, patterns.join(QLatin1Char(' ')));
}

std::optional<QUrl> chosenFile(QFileDialog& dialog) {
  if (dialog.exec() != QDialog::Accepted || dialog.selectedUrls().isEmpty()) return std::nullopt;
  return dialog.selectedUrls().constFirst();
}

std::optional<QUrl> openFile(const OpenPanelRequest& request) {
  QFileDialog dialog(nullptr, request.title, startingFolder(),
                     nameFilter(request.filterName, request.patterns));
  dialog.setFileMode(QFileDialog::ExistingFile);
  dialog.setAccessibleDescription(request.message);
  dialog.setLabelText(QFileDialog::FileName, request.message);
  return chosenFile(dialog);
}

std::optional<QUrl> saveFile(const SavePanelRequest& request) {
  QFileDialog dialog(nullptr, request.title, startingFolder(),
                     nameFilter(request.filterName, request.patterns));
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(request.defaultSuffix);
  dialog.selectFile(request.proposedName);
  return chosenFile(dialog);
}

}  // namespace

FilePanels systemFilePanels() {
  FilePanels panels;
  panels.open = openFile;
  panels.save = saveFile;
  return panels;
}

}  // namespace velun
