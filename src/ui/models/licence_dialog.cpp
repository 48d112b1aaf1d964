// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/models/licence_dialog.h"

#include "language/localization.h"
#include "platform/models/model.h"
#include "ui/models/licence_texts.h"
#include "ui/models/model_texts.h"

#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr QSize kSize(560, 520);
constexpr int kMargin = 16;

QString link(const QUrl& address) {
  const QString text = address.toString().toHtmlEscaped();
  return QStringLiteral("<a href=\"%1\">%1</a>").arg(text);
}

/// In rich text.
QString summary(const Model& model, bool hasText) {
  QStringList parts = {L("License: %1", "라이선스: %1").arg(model.licence).toHtmlEscaped()};
  const QString notice = L(model.licenceNotice.english, model.licenceNotice.korean);
  if (!notice.isEmpty()) parts << notice.toHtmlEscaped();
  const QUrl download(model.downloads.front().addresses.front().section(u'/', 0, 4));
  parts << L("Its makers publish the model at: ", "모델 배포 주소: ") + link(download);
  const QUrl address = licenceAddress(model.licence);
  if (!hasText && !address.isEmpty()) {
    parts << L("The text of the license: ", "라이선스 전문: ") + link(address);
  }
  return parts.join(QStringLiteral("<br><br>"));
}

}  // namespace

LicenceDialog::LicenceDialog(const Model& model, QWidget* parent) : QDialog(parent) {
  setAttribute(Qt::WA_DeleteOnClose);
  // Otherwise the caption panel, which is above ordinary windows, would cover it.
  setWindowFlag(Qt::WindowStaysOnTopHint);
  setWindowTitle(L("License of “%1”", "“%1”의 라이선스").arg(nameText(model)));
  const QString text = fullLicenceText(model.licence);
  auto* about = new QLabel(summary(model, !text.isEmpty()), this);
  about->setTextFormat(Qt::RichText);
  about->setWordWrap(true);
  about->setOpenExternalLinks(true);
  about->setTextInteractionFlags(Qt::TextBrowserInteraction);
  auto* column = new QVBoxLayout(this);
  column->setContentsMargins(kMargin, kMargin, kMargin, kMargin);
  column->setSpacing(12);
  column->addWidget(about);
  if (!text.isEmpty()) {
    auto* full = new QPlainTextEdit(text, this);
    full->setReadOnly(true);
    full->setTabChangesFocus(true);
    full->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    full->setAccessibleName(L("Text of the license", "라이선스 전문"));
    column->addWidget(full, 1);
    resize(kSize);
  }
  auto* close = new QPushButton(L("Close", "닫기"), this);
  close->setDefault(true);
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  column->addWidget(close, 0, Qt::AlignRight);
  close->setFocus();
}

}  // namespace velun
