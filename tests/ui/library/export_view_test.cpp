// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/export_view.h"

#include "language/localization.h"
#include "support/suite.h"

#include <algorithm>
#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QPushButton>

using namespace velun;

namespace {

CaptionSession sessionIn(const QStringList& languages) {
  CaptionSession session;
  Line line;
  line.text = "Hello";
  for (const QString& language : languages) line.translations[language] = "x";
  session.lines.push_back(line);
  return session;
}

QStringList items(const QComboBox* chooser) {
  QStringList texts;
  for (int i = 0; i < chooser->count(); ++i) texts.append(chooser->itemText(i));
  return texts;
}

}  // namespace

class ExportViewTest final : public test::Suite {
  Q_OBJECT

  std::unique_ptr<ExportView> view_;
  std::vector<ExportOptions> exports_;
  int cancels_ = 0;

  void open(const CaptionSession& session, std::optional<LineRange> selected = {}) {
    view_ = std::make_unique<ExportView>(
        session, selected, [this] { ++cancels_; },
        [this](const ExportOptions& options) { exports_.push_back(options); });
    view_->show();
  }

  QCheckBox* box(const QString& text) const {
    for (QCheckBox* each : view_->findChildren<QCheckBox*>()) {
      if (each->text() == text && each->isVisible()) return each;
    }
    return nullptr;
  }

  QComboBox* chooser(const QString& name) const {
    for (QComboBox* each : view_->findChildren<QComboBox*>()) {
      if (each->accessibleName() == name && each->isVisible()) return each;
    }
    return nullptr;
  }

  void chooseFormat(SessionFormat format, const QString& name = "File Format") const {
    const auto place = std::ranges::find(allSessionFormats, format) - allSessionFormats.begin();
    chooser(name)->setCurrentIndex(static_cast<int>(place));
  }

  QPushButton* button(const QString& text) const {
    for (QPushButton* each : view_->findChildren<QPushButton*>()) {
      if (each->text() == text) return each;
    }
    return nullptr;
  }

  bool shows(const QString& text) const {
    const auto labels = view_->findChildren<QLabel*>();
    return std::any_of(labels.begin(), labels.end(), [&text](const QLabel* label) {
      return label->isVisible() && label->text() == text;
    });
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
    exports_.clear();
    cancels_ = 0;
  }

  void longLanguageIdentifierDoesNotWidenTheWindow() {
    open(sessionIn({"ko"}));
    const int usual = view_->minimumSizeHint().width();
    open(sessionIn({QString(5000, u'x')}));
    QCOMPARE(items(chooser("Translation Language"))[1], QString(59, u'x') + "…");
    QVERIFY(view_->minimumSizeHint().width() < usual + 600);
    chooser("Translation Language")->setCurrentIndex(1);
    button("Export…")->click();
    QCOMPARE(exports_.at(0).language.value_or(QString()).size(), 5000);
  }

  void opensWithBothTextsAsMarkdown() {
    open(sessionIn({"ko", "en"}));
    QCOMPARE(items(chooser("File Format")),
             QStringList({"Markdown (.md)", "Text (.txt)", "Markdown Table (.md)",
                          "Web Page (.html)", "SubRip Subtitles (.srt)", "WebVTT Subtitles (.vtt)",
                          "Velun Session (.json)"}));
    QCOMPARE(items(chooser("Content")),
             QStringList({"Original + Translation", "Original Only", "Translation Only"}));
    QCOMPARE(items(chooser("Translation Language")),
             QStringList({"All Translation Languages", "English", "Korean"}));
    QVERIFY(shows("Shows times and languages, with the original and translations set apart."));
    button("Export…")->click();
    QCOMPARE(exports_.size(), std::size_t{1});
    QCOMPARE(exports_[0].format, SessionFormat::markdown);
    QCOMPARE(exports_[0].content, TranscriptContent::both);
    QVERIFY(!exports_[0].language);
  }

  void returnKeyExportsUnlessCancelHasFocus() {
    open(sessionIn({"ko"}));
    QVERIFY(QTest::qWaitForWindowActive(view_.get()));
    chooser("File Format")->setFocus();
    QTest::keyClick(chooser("File Format"), Qt::Key_Return);
    QCOMPARE(exports_.size(), std::size_t{1});
    button("Cancel")->setFocus();
    QTest::keyClick(button("Cancel"), Qt::Key_Return);
    QCOMPARE(exports_.size(), std::size_t{1});
    QCOMPARE(cancels_, 1);
    QTest::keyClick(chooser("File Format"), Qt::Key_Escape);
    QCOMPARE(cancels_, 2);
  }

  void exportsTheChosenOptions() {
    open(sessionIn({"ko", "en"}));
    chooseFormat(SessionFormat::text);
    chooser("Content")->setCurrentIndex(2);
    chooser("Translation Language")->setCurrentIndex(2);
    button("Export…")->click();
    QCOMPARE(exports_[0].format, SessionFormat::text);
    QCOMPARE(exports_[0].content, TranscriptContent::translation);
    QCOMPARE(exports_[0].language.value_or(QString()), QString("ko"));
  }

  void offersNoTranslationsWithoutThem() {
    open(sessionIn({}));
    QVERIFY(!chooser("Content")->isEnabled());
    QVERIFY(!chooser("Translation Language"));
    QVERIFY(!shows("Translation Language"));
  }

  void legacyTranslationHasContentButNoLanguage() {
    CaptionSession session = sessionIn({});
    session.lines[0].legacyTranslation = "x";
    open(session);
    QVERIFY(chooser("Content")->isEnabled());
    QVERIFY(!chooser("Translation Language"));
  }

  void jsonHasNoContentOptions() {
    open(sessionIn({"ko"}));
    QVERIFY(chooser("Content")->isEnabled());
    chooseFormat(SessionFormat::json);
    QVERIFY(!chooser("Content")->isEnabled());
    QVERIFY(
        shows("Keeps the original, all translations, and times, and can be reopened in Velun."));
    chooseFormat(SessionFormat::markdown);
    QVERIFY(chooser("Content")->isEnabled());
  }

  void subtitlesHaveOneTranslationAndTheirOwnTimes() {
    open(sessionIn({"ko", "en"}));
    chooseFormat(SessionFormat::subRip);
    QVERIFY(!box("Show Times")->isEnabled());
    QCOMPARE(chooser("Translation Language")->currentText(), QString("English"));
    QVERIFY(shows("Captions for video players, at the times at which the words were said."));
    button("Export…")->click();
    QCOMPARE(exports_.at(0).format, SessionFormat::subRip);
    QCOMPARE(exports_.at(0).language.value_or(QString()), QString("en"));
    // All of them can be chosen again for a format that has room for them.
    chooseFormat(SessionFormat::markdown);
    chooser("Translation Language")->setCurrentIndex(0);
    button("Export…")->click();
    QVERIFY(!exports_.at(1).language);
  }

  void timesAndUnselectedLinesCanBeLeftOut() {
    open(sessionIn({}), LineRange{3, 2});
    box("Show Times")->click();
    QCheckBox* only = box("Only the 2 Selected Lines");
    QVERIFY(only && !only->isChecked());
    button("Export…")->click();
    QVERIFY(!exports_.at(0).showsTimes);
    QVERIFY(!exports_.at(0).lines);
    only->click();
    button("Export…")->click();
    QCOMPARE(exports_.at(1).lines, (std::optional(LineRange{3, 2})));
    chooseFormat(SessionFormat::json);
    QVERIFY(!only->isEnabled());
    Localization::shared().setLanguage(AppLanguage::korean);
    QVERIFY(box("선택한 2줄만"));
    QVERIFY(box("시각 표시"));
    open(sessionIn({}), LineRange{0, 1});
    QVERIFY(box("선택한 줄만"));
    open(sessionIn({}));
    QVERIFY(!box("선택한 줄만"));
  }

  void cancelExportsNothing() {
    open(sessionIn({}));
    button("Cancel")->click();
    QCOMPARE(cancels_, 1);
    QVERIFY(exports_.empty());
  }

  void everyTextIsAlsoKorean() {
    Localization::shared().setLanguage(AppLanguage::korean);
    open(sessionIn({"ko"}));
    QVERIFY(chooser("파일 형식"));
    QVERIFY(chooser("포함할 내용"));
    QCOMPARE(items(chooser("번역 언어")), QStringList({"모든 번역 언어", "한국어"}));
    QVERIFY(shows("시간과 언어를 표시하고 원문과 번역을 구분합니다."));
    QVERIFY(button("취소"));
    QVERIFY(button("내보내기…"));
    chooseFormat(SessionFormat::json, "파일 형식");
    QVERIFY(shows("원문·모든 번역·시간을 보존하며 Velun에서 다시 열 수 있습니다."));
  }

  void switchingTheLanguageKeepsTheChosenOptions() {
    open(sessionIn({"ko"}));
    chooseFormat(SessionFormat::text);
    chooser("Translation Language")->setCurrentIndex(1);
    Localization::shared().setLanguage(AppLanguage::korean);
    QCOMPARE(chooser("파일 형식")->currentText(), QString("텍스트 (.txt)"));
    QCOMPARE(items(chooser("번역 언어")), QStringList({"모든 번역 언어", "한국어"}));
    button("내보내기…")->click();
    QCOMPARE(exports_[0].format, SessionFormat::text);
    QCOMPARE(exports_[0].language.value_or(QString()), QString("ko"));
  }

  void closingTheWindowFromACallbackIsSafe() {
    view_ = std::make_unique<ExportView>(
        sessionIn({}), std::nullopt, [this] { view_.release()->deleteLater(); },
        [](const ExportOptions&) {});
    button("Cancel")->click();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QVERIFY(!view_);
  }
};

QTEST_MAIN(ExportViewTest)
#include "export_view_test.moc"
