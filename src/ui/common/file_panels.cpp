// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/common/file_panels.h"

#include "language/localization.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QGridLayout>
#include <QLabel>
#include <QStandardPaths>

namespace velun {

namespace {

QString startingFolder() {
  const QString documents = QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
  // The dialog would take a folder that does not exist for a file name.
  return QFileInfo(documents).isDir() ? documents : QDir::homePath();
}

/// Shows a message below Qt's own dialog, which has no place for one. A native dialog has no layout
/// here; it may show the message as the label of the name.
void showMessage(QFileDialog& dialog, const QString& message) {
  dialog.setAccessibleDescription(message);
  auto* grid = qobject_cast<QGridLayout*>(dialog.layout());
  if (!grid) return dialog.setLabelText(QFileDialog::FileName, message);
  auto* label = new QLabel(message, &dialog);
  label->setWordWrap(true);
  grid->addWidget(label, grid->rowCount(), 0, 1, -1);
}

QString nameFilter(const QString& name, const QStringList& patterns) {
  return QStringLiteral("%1 (%2)").arg(name, patterns.join(QLatin1Char(' ')));
}

std::optional<QUrl> chosenFile(QFileDialog& dialog) {
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  dialog.setWindowFlag(Qt::WindowStaysOnTopHint);
  if (dialog.exec() != QDialog::Accepted || dialog.selectedUrls().isEmpty()) return std::nullopt;
  return dialog.selectedUrls().constFirst();
}

std::optional<QUrl> openFile(const OpenPanelRequest& request) {
  QString filters = nameFilter(request.filterName, request.patterns);
  if (request.offersAllFiles) {
    filters += ";;" + nameFilter(L("All files", "모든 파일"), {QStringLiteral("*")});
  }
  QFileDialog dialog(nullptr, request.title, startingFolder(), filters);
  dialog.setFileMode(QFileDialog::ExistingFile);
  showMessage(dialog, request.message);
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
