// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/settings/sharing_section.h"

#include "captions/caption_file.h"
#include "language/localization.h"
#include "settings/sharing_settings.h"
#include "ui/settings/settings_form.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDir>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSignalBlocker>
#include <utility>

namespace velun {

SharingSection::SharingSection(SharingSettings& settings, const CaptionFile* file,
                               FilePanels panels)
    : settings_(settings), file_(file), panels_(std::move(panels)) {
  auto* form = new QVBoxLayout(this);
  form->setContentsMargins(0, 0, 0, 0);
  form->setSpacing(7);
  heading_ = addHeading(form);
  offers_ = addToggle(form);
  offersNote_ = addNote(form);

  fileLabel_ = new QLabel;
  path_ = new QLabel;
  path_->setTextFormat(Qt::PlainText);
  path_->setWordWrap(true);
  choose_ = new QPushButton;
  none_ = new QPushButton;
  auto* row = new QHBoxLayout;
  row->addWidget(fileLabel_);
  row->addStretch();
  row->addWidget(choose_);
  row->addWidget(none_);
  form->addLayout(row);
  form->addWidget(path_);
  fileNote_ = addNote(form);
  error_ = addNote(form);
  lines_ = addChooser(form, &linesLabel_);
  end_ = addChooser(form, &endLabel_);

  connect(offers_, &QCheckBox::toggled, &settings, &SharingSettings::setOffersCaptions);
  connect(choose_, &QPushButton::clicked, this, &SharingSection::chooseFile);
  connect(none_, &QPushButton::clicked, this, [this] { settings_.setCaptionFile(QString()); });
  connect(lines_, &QComboBox::activated, this,
          [this](int index) { settings_.setCaptionFileLines(lines_->itemData(index).toInt()); });
  connect(end_, &QComboBox::activated, this, [this](int index) {
    settings_.setCaptionFileEnd(allCaptionFileEnds[static_cast<std::size_t>(index)]);
  });
  connect(&settings, &SharingSettings::offersCaptionsChanged, this, &SharingSection::present);
  connect(&settings, &SharingSettings::captionFileChanged, this, &SharingSection::present);
  connect(&Localization::shared(), &Localization::languageChanged, this, &SharingSection::present);
  if (file_) connect(file_, &CaptionFile::errorChanged, this, &SharingSection::present);
  present();
}

void SharingSection::chooseFile() {
  const QString name = settings_.captionFile().isEmpty()
                           ? L("Captions", "자막") + QStringLiteral(".txt")
                           : QFileInfo(settings_.captionFile()).fileName();
  const auto file = panels_.save({.title = L("Choose Caption File", "자막 파일 선택"),
                                  .proposedName = name,
                                  .filterName = L("Text Files", "텍스트 파일"),
                                  .patterns = {QStringLiteral("*.txt")},
                                  .defaultSuffix = QStringLiteral("txt")});
  if (file) settings_.setCaptionFile(file->toLocalFile());
}

void SharingSection::present() {
  heading_->setText(L("For Other Programs", "다른 프로그램에 제공"));
  labelToggle(offers_, L("Offer captions to other programs", "다른 프로그램에 자막 제공"));
  offersNote_->setText(
      L("While captions run, every program of your desktop session can read them over D-Bus. "
        "Nothing leaves this computer.",
        "자막이 켜져 있는 동안 데스크톱 세션의 모든 프로그램이 D-Bus로 자막을 읽을 수 있습니다. "
        "이 컴퓨터 밖으로는 나가지 않습니다."));
  offers_->setAccessibleDescription(offersNote_->text());
  {
    const QSignalBlocker blocker(offers_);
    offers_->setChecked(settings_.offersCaptions());
  }
  const QString& file = settings_.captionFile();
  fileLabel_->setText(L("Caption File", "자막 파일"));
  choose_->setText(L("Choose…", "선택…"));
  nameControl(choose_, L("Choose Caption File…", "자막 파일 선택…"));
  none_->setText(L("None", "없음"));
  nameControl(none_, L("Write No Caption File", "자막 파일 쓰지 않기"));
  none_->setEnabled(!file.isEmpty());
  path_->setText(QDir::toNativeSeparators(file));
  path_->setVisible(!file.isEmpty());
  fileNote_->setText(
      L("The last finished lines, for the text source of streaming software. The file is replaced "
        "with every line.",
        "방송 프로그램의 텍스트 소스에서 쓸 수 있도록 마지막 줄들을 파일에 씁니다. 새 줄이 나올 "
        "때마다 파일을 바꿉니다."));
  const std::optional<QString> error = file_ ? file_->error() : std::nullopt;
  error_->setText(error.value_or(QString()));
  error_->setVisible(error.has_value());

  labelChooser(linesLabel_, lines_, L("Lines in the File", "파일의 줄 수"));
  std::vector<Choice> counts;
  for (int count = 1; count <= SharingSettings::maxCaptionFileLines; ++count) {
    counts.push_back({QString::number(count), count});
  }
  const int count = settings_.captionFileLines();
  fillChooser(lines_, counts, {QString::number(count), count});
  labelChooser(endLabel_, end_, L("When Captions Stop", "자막을 끌 때"));
  std::vector<Choice> ends;
  for (const CaptionFileEnd end : allCaptionFileEnds) ends.push_back({title(end), rawValue(end)});
  const CaptionFileEnd end = settings_.captionFileEnd();
  fillChooser(end_, ends, {title(end), rawValue(end)});
  lines_->setEnabled(!file.isEmpty());
  end_->setEnabled(!file.isEmpty());
}

}  // namespace velun
