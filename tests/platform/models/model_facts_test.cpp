// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_facts.h"

#include "platform/foundation/failure.h"
#include "platform/models/model_catalogue.h"
#include "support/suite.h"

#include <QJsonArray>

using namespace velun;

namespace {

QJsonObject speech(const QString& english) {
  return {{"en", english}, {"ko", "낭독"}};
}

QJsonObject errors(double percent, const QString& unit = "words") {
  return {
      {"percent", percent}, {"unit", unit}, {"speech", speech("read aloud")}, {"source", "maker"}};
}

QJsonObject goodFacts() {
  return {
      {"title", "Small"},
      {"licenceNotice", QJsonObject{{"en", "Terms."}, {"ko", "조건."}}},
      {"writes", QJsonArray{"case"}},
      {"stepMs", 480},
      {"memoryBytes", qint64{3'000'000'000}},
      {"quality", "good"},
      {"errors", errors(9.5)},
      {"languageFacts", QJsonObject{{"ko", QJsonObject{{"quality", "higherErrors"},
                                                       {"errors", errors(25, "characters")}}}}}};
}

Model read(const QJsonObject& entry, ModelKind kind = ModelKind::recognition) {
  Model model;
  model.id = "small-1";
  model.kind = kind;
  model.languages = {"en", "ko"};
  readModelFacts(entry, CatalogueChecker("small-1"), model);
  return model;
}

}  // namespace

class ModelFactsTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void readsEveryFact() {
    const Model model = read(goodFacts());
    QCOMPARE(model.title, QString("Small"));
    QCOMPARE(model.licenceNotice, (BilingualText{"Terms.", "조건."}));
    QVERIFY(model.writesCase);
    QVERIFY(!model.writesPunctuation);
    QCOMPARE(model.stepMs, 480);
    QCOMPARE(model.memoryBytes, 3'000'000'000);
    QCOMPARE(model.qualityOf("en"), ModelQuality::good);
    QCOMPARE(model.errorsOf("en"),
             (ModelErrors{9.5, {"read aloud", "낭독"}, ModelErrors::Source::maker, false}));
    QCOMPARE(model.qualityOf("ko"), ModelQuality::higherErrors);
    QCOMPARE(model.errorsOf("ko")->percent, 25);
    QVERIFY(!model.errorsOf("en")->areOfCharacters && model.errorsOf("ko")->areOfCharacters);
  }

  void unknownFiguresAreOmitted() {
    const Model model = read({{"title", "Small"}, {"quality", "fair"}});
    QCOMPARE(model.stepMs, 0);
    QCOMPARE(model.memoryBytes, 0);
    QVERIFY(!model.errorsOf("en"));
    QVERIFY(model.licenceNotice.isEmpty());
  }

  void otherKindsAreTitledByTheirIds() {
    QCOMPARE(read({}, ModelKind::translation).title, QString("small-1"));
  }

  void rejectsInvalidFacts_data() {
    QTest::addColumn<QString>("key");
    QTest::addColumn<QJsonValue>("value");
    const auto row = [](const char* name, const char* key, const QJsonValue& value) {
      QTest::newRow(name) << QString(key) << value;
    };
    row("no title", "title", "");
    row("notice in one language", "licenceNotice", QJsonObject{{"ko", "조건."}});
    row("negative step", "stepMs", -1);
    row("negative memory", "memoryBytes", -1);
    row("no quality", "quality", QJsonValue::Undefined);
    row("unknown quality", "quality", "best");
    row("negative errors", "errors", errors(-1));
    row("errors of an unknown unit", "errors", errors(3, "letters"));
    row("errors without speech", "errors", QJsonObject{{"percent", 3}, {"source", "maker"}});
    row("errors without source", "errors", QJsonObject{{"percent", 3}, {"speech", speech("read")}});
    row("facts about another language", "languageFacts",
        QJsonObject{{"fr", QJsonObject{{"quality", "good"}}}});
    row("unknown quality of a language", "languageFacts",
        QJsonObject{{"ko", QJsonObject{{"quality", "best"}}}});
  }
  void rejectsInvalidFacts() {
    QFETCH(QString, key);
    QFETCH(QJsonValue, value);
    QJsonObject entry = goodFacts();
    entry[key] = value;
    QVERIFY_EXCEPTION_THROWN(read(entry), Failure);
  }

  void errorsInLanguagesWithoutBlanksAreOfCharacters() {
    for (const Model& model : ModelCatalogue::builtIn().ofKind(ModelKind::recognition)) {
      for (const QString& language : {QString("zh"), QString("ja")}) {
        const auto errors = model.errorsOf(language);
        if (!model.languages.contains(language) || !errors) continue;
        QVERIFY2(errors->areOfCharacters, qPrintable(model.id));
      }
    }
    const Model korean = *ModelCatalogue::builtIn().find("zipformer-ko-72m-chunk-16");
    QVERIFY(korean.errorsOf("ko")->areOfCharacters);
  }

  void builtInModelsSayWhatTheyWrite() {
    for (const Model& model : ModelCatalogue::builtIn().ofKind(ModelKind::recognition)) {
      const char* id = qPrintable(model.id);
      QVERIFY2(model.title != model.id && model.title.size() <= 40, id);
      // A model that writes no punctuation gets it from the punctuation model of its language.
      const bool needsMarks = model.options["punctuation"] == "none";
      QVERIFY2(!(needsMarks && model.writesPunctuation), id);
      const bool isFolded = model.options["letters"] == "fold";
      QVERIFY2(!(isFolded && model.writesCase), id);
    }
  }
};

QTEST_GUILESS_MAIN(ModelFactsTest)
#include "model_facts_test.moc"
