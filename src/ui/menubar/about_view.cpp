// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/about_view.h"

#include "language/localization.h"
#include "ui/common/accessible_role.h"
#include "ui/common/selectable_label.h"

#include <QGuiApplication>
#include <QIcon>
#include <QLabel>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace velun {

namespace {

constexpr int kIconSize = 96;

QLabel* centred() {
  auto* label = new SelectableLabel;
  label->setTextFormat(Qt::PlainText);
  label->setAlignment(Qt::AlignCenter);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

QString list(const std::vector<Credit>& credits) {
  QStringList lines;
  for (const Credit& credit : credits) lines.append(credit.name + " — " + credit.licence);
  return lines.join('\n');
}

}  // namespace

QString AboutView::title() {
  return L("About Velun", "Velun 정보");
}

AboutView::AboutView(const QString& version, const std::vector<Credit>& credits, QWidget* parent)
    : QWidget(parent),
      version_(version),
      versionLabel_(centred()),
      purpose_(centred()),
      licence_(centred()),
      made_(new QTextBrowser) {
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(24, 20, 24, 20);
  layout->setSpacing(8);

  auto* icon = new QLabel;
  hideFromAccessibility(*icon);
  icon->setPixmap(QGuiApplication::windowIcon().pixmap(kIconSize));
  icon->setAlignment(Qt::AlignCenter);
  layout->addWidget(icon);

  QLabel* name = centred();
  name->setText(QStringLiteral("Velun"));
  QFont font = name->font();
  font.setPointSizeF(font.pointSizeF() * 1.6);
  font.setBold(true);
  name->setFont(font);
  layout->addWidget(name);

  layout->addWidget(versionLabel_);
  layout->addWidget(purpose_);
  layout->addWidget(licence_);
  made_->setPlainText(list(credits));
  layout->addWidget(made_, 1);
  connect(&Localization::shared(), &Localization::languageChanged, this, &AboutView::translate);
  translate();
}

void AboutView::translate() {
  versionLabel_->setText(L("Version " + version_, "버전 " + version_));
  purpose_->setText(L("Live captions and translation, on your own computer.",
                      "내 컴퓨터 안에서 만드는 실시간 자막과 번역."));
  licence_->setText(
      L("Free software under the GNU General Public License, version 3 or later. It comes without "
        "any warranty.",
        "GNU 일반 공중 사용 허가서 3판 또는 그 이후 판에 따른 자유 소프트웨어이며, 어떠한 보증도 "
        "제공하지 않습니다."));
  made_->setAccessibleName(L("Made with", "사용한 소프트웨어와 모델"));
  made_->setToolTip(L("Software and models that Velun uses, with their licenses",
                      "Velun이 사용하는 소프트웨어와 모델, 그리고 라이선스"));
}

}  // namespace velun
