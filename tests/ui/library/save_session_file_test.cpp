// SPDX-License-Identifier: GPL-3.0-or-later
#include "ui/library/save_session_file.h"

#include "language/localization.h"
#include "model/session_file/session_file.h"
#include "platform/foundation/failure.h"
#include "support/suite.h"

#include <QTemporaryDir>

using namespace velun;

class SaveSessionFileTest final : public test::Suite {
  Q_OBJECT

  QTemporaryDir folder_;
  std::optional<QUrl> answer_;
  std::vector<SavePanelRequest> asked_;
  FilePanels panels_;
  CaptionSession session_;

  bool save(SessionFormat format) {
    return saveSessionFile(session_, "Export Session", {.format = format}, panels_);
  }

 private Q_SLOTS:
  void init() {
    Suite::init();
    Localization::shared().setLanguage(AppLanguage::english);
    asked_.clear();
    panels_.save = [this](const SavePanelRequest& request) {
      asked_.push_back(request);
      return answer_;
    };
    session_.startedAt = std::chrono::sys_days(std::chrono::year(2025) / 3 / 1);
    session_.lines = {Line()};
    session_.lines[0].text = "Hello";
  }

  void writesTheSessionToTheChosenFile() {
    answer_ = QUrl::fromLocalFile(folder_.filePath("out.json"));
    QVERIFY(save(SessionFormat::json));
    QFile file(answer_->toLocalFile());
    QVERIFY(file.open(QFile::ReadOnly));
    QCOMPARE(file.readAll(), encodeSession(session_));
  }

  void acceptsTheLongestNameOfTheFileSystem() {
    // 255 bytes
    answer_ = QUrl::fromLocalFile(folder_.filePath(QString(83, u'한') + "0.json"));
    QVERIFY(save(SessionFormat::json));
    QCOMPARE(QFileInfo(answer_->toLocalFile()).size(), encodeSession(session_).size());
  }

  void proposesNameAndTypeOfEachFormat() {
    answer_.reset();
    QStringList names;
    QStringList patterns;
    for (const SessionFormat format : allSessionFormats) {
      save(format);
      names << asked_.back().proposedName;
      patterns << asked_.back().patterns;
    }
    QCOMPARE(names,
             (QStringList{"Velun-2025-03-01.md", "Velun-2025-03-01.txt", "Velun-2025-03-01.md",
                          "Velun-2025-03-01.html", "Velun-2025-03-01.srt", "Velun-2025-03-01.vtt",
                          "Velun-2025-03-01.json"}));
    QCOMPARE(patterns,
             (QStringList{"*.md", "*.txt", "*.md", "*.html", "*.srt", "*.vtt", "*.json"}));
    QCOMPARE(asked_[0].title, QString("Export Session"));
    QCOMPARE(asked_[0].filterName, QString("Markdown"));
  }

  void cancellingWritesNothing() {
    answer_.reset();
    QVERIFY(!save(SessionFormat::markdown));
    QCOMPARE(asked_.size(), std::size_t{1});
  }

  void writeFailureNamesTheFile() {
    answer_ = QUrl::fromLocalFile(folder_.filePath("missing/out.md"));
    try {
      save(SessionFormat::markdown);
      QFAIL("nothing was thrown");
    } catch (const Failure& failure) {
      QVERIFY(failure.errorDescription().contains("out.md"));
    }
  }
};

QTEST_GUILESS_MAIN(SaveSessionFileTest)
#include "save_session_file_test.moc"
