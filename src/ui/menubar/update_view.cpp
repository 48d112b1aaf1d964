// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/menubar/update_view.h"

#include "language/localization.h"
#include "ui/common/notice_label.h"
#include "ui/menubar/release_notes.h"

#include <QHBoxLayout>
#include <QPushButton>
#include <QTextBrowser>
#include <QVBoxLayout>

namespace velun {

namespace {

/// Calls the function for the kind of outcome.
template <class... Ts>
struct Overloaded : Ts... {
  using Ts::operator()...;
};
template <class... Ts>
Overloaded(Ts...) -> Overloaded<Ts...>;

NoticeLabel* textLabel() {
  auto* label = new NoticeLabel;
  label->setTextFormat(Qt::PlainText);
  label->setWordWrap(true);
  label->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
  return label;
}

/// Loads no resources: release notes come from the network.
class NotesBrowser final : public QTextBrowser {
 public:
  NotesBrowser() { setOpenLinks(false); }
  QVariant loadResource(int, const QUrl&) override { return {}; }
};

}  // namespace

QString UpdateView::title() {
  return L("Velun — Updates", "Velun — 업데이트");
}

UpdateView::UpdateView(std::function<void(const QUrl&)> openPage, std::function<void()> close,
                       QWidget* parent)
    : QWidget(parent),
      message_(textLabel()),
      details_(textLabel()),
      notes_(new NotesBrowser),
      open_(new QPushButton),
      close_(new QPushButton) {
  QFont bold = message_->font();
  bold.setBold(true);
  message_->setFont(bold);
  connect(open_, &QPushButton::clicked, this, [this, openPage] { openPage(page_); });
  connect(close_, &QPushButton::clicked, this, close);

  auto* buttons = new QHBoxLayout;
  buttons->addStretch();
  buttons->addWidget(close_);
  buttons->addWidget(open_);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(22, 20, 22, 18);
  layout->setSpacing(10);
  layout->addWidget(message_);
  layout->addWidget(details_);
  layout->addWidget(notes_, 1);
  layout->addStretch();
  layout->addLayout(buttons);
  connect(&Localization::shared(), &Localization::languageChanged, this, &UpdateView::translate);
  translate();
}

void UpdateView::translate() {
  notes_->setAccessibleName(L("What’s New", "새로운 점"));
  notes_->setToolTip(L("What is new in this version", "이 버전의 새로운 점"));
  open_->setToolTip(
      L("Opens the release’s page in your browser", "브라우저에서 배포 페이지를 엽니다"));
  close_->setToolTip(L("Close this window", "이 창 닫기"));
  open_->setText(L("Open Release Page", "배포 페이지 열기"));
  close_->setText(L("Close", "닫기"));
  presentOutcome();
}

void UpdateView::present(const QString& message, const QString& details) {
  message_->setNotice(message);
  details_->setNotice(details);
  notes_->hide();
  open_->hide();
  close_->setFocus();
}

void UpdateView::show(const std::optional<UpdateOutcome>& outcome) {
  outcome_ = outcome;
  presentOutcome();
}

void UpdateView::presentOutcome() {
  if (!outcome_) {
    return present(L("Checking for updates…", "업데이트를 확인하는 중…"), QString());
  }
  std::visit(
      Overloaded{
          [this](const UpdatedBySystem&) {
            present(L("Your system updates Velun", "시스템이 Velun을 업데이트합니다"),
                    L("Velun was installed by your system’s package manager, which also installs "
                      "its updates.",
                      "Velun은 시스템의 패키지 관리자로 설치되었으며, 업데이트도 패키지 관리자가 "
                      "설치합니다."));
          },
          [this](const NoUpdateFeed&) {
            present(
                L("This copy of Velun cannot check for updates",
                  "이 Velun은 업데이트를 확인할 수 없습니다"),
                L("It was built without the address of a list of releases. Check where you "
                  "downloaded it.",
                  "배포 목록의 주소 없이 빌드되었습니다. Velun을 다운로드한 곳에서 확인하세요."));
          },
          [this](const UpToDate& current) {
            present(L("Velun is up to date", "Velun이 최신 버전입니다"),
                    L("You have the latest version, " + current.version + ".",
                      "최신 버전(" + current.version + ")을 사용하고 있습니다."));
          },
          [this](const UpdateAvailable& update) { presentUpdate(update); },
          [this](const UpdateCheckFailed& failure) {
            present(L("Couldn’t check for updates", "업데이트를 확인하지 못했습니다"),
                    failure.description);
          },
      },
      *outcome_);
}

void UpdateView::presentUpdate(const UpdateAvailable& update) {
  const QString& version = update.item.shortVersion;
  present(L("A new version of Velun is available", "Velun의 새 버전이 있습니다"),
          L("Version " + version + " is available; you have " + update.version + ".",
            "버전 " + version + "을(를) 사용할 수 있습니다. 현재 버전은 " + update.version +
                "입니다."));
  page_ = update.item.page;
  if (Qt::mightBeRichText(update.item.notes)) {
    notes_->setHtml(sanitizedHtml(update.item.notes));
  } else {
    notes_->setPlainText(update.item.notes.left(kMaxNotesLength));
  }
  notes_->setVisible(!update.item.notes.isEmpty());
  open_->show();
  open_->setFocus();
}

}  // namespace velun
