// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/models/model_catalogue.h"

#include "platform/foundation/failure.h"
#include "platform/models/model_address.h"
#include "support/suite.h"

#include <algorithm>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QRegularExpression>
#include <QScopeGuard>
#include <QSet>
#include <QTemporaryDir>

using namespace velun;

namespace {

const QString kHash(64, u'a');

QJsonObject goodModel() {
  const QJsonObject plain{{"address", "https://example.org/x/one.bin"},
                          {"bytes", 10},
                          {"sha256", kHash},
                          {"files", QJsonArray{QJsonObject{{"name", "first.bin"}}}}};
  const QJsonObject packed{
      {"address", "https://example.org/x/two.bin.gz?download=1"},
      {"bytes", 5},
      {"sha256", kHash},
      {"packing", "gzip"},
      {"files", QJsonArray{QJsonObject{{"name", "two.bin"}, {"bytes", 20}, {"sha256", kHash}}}}};
  return {{"id", "good-1.0"},
          {"kind", "translation"},
          {"languages", QJsonArray{"en", "ko"}},
          {"licence", "MIT"},
          {"options", QJsonObject{{"size", 3}}},
          {"downloads", QJsonArray{plain, packed}}};
}

QByteArray catalogueOf(const QJsonArray& models) {
  return QJsonDocument(QJsonObject{{"models", models}}).toJson();
}

/// Sets the value at a dotted path such as "downloads.0.bytes".
QJsonValue replaced(const QJsonValue& root, QStringList path, const QJsonValue& value) {
  if (path.isEmpty()) return value;
  const QString key = path.takeFirst();
  if (root.isArray()) {
    QJsonArray array = root.toArray();
    const qsizetype at = key.toLongLong();
    array[at] = replaced(array.at(at), path, value);
    return array;
  }
  QJsonObject object = root.toObject();
  object[key] = replaced(object[key], path, value);
  return object;
}

/// Writes the additional catalogue, unless it is empty, and names it in the environment as long as
/// the result exists.
[[nodiscard]] auto nameAdditional(const QString& path, const QByteArray& contents) {
  QFile file(path);
  if (!contents.isEmpty() && file.open(QIODevice::WriteOnly)) file.write(contents);
  qputenv("VELUN_MODEL_CATALOGUE", QFile::encodeName(path));
  return qScopeGuard([] { qunsetenv("VELUN_MODEL_CATALOGUE"); });
}

}  // namespace

class ModelCatalogueTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void readsEveryField() {
    const ModelCatalogue catalogue = ModelCatalogue::read(catalogueOf({goodModel()}));
    const Model* model = catalogue.find("good-1.0");
    QVERIFY(model);
    QCOMPARE(model->kind, ModelKind::translation);
    QCOMPARE(model->languages, QStringList({"en", "ko"}));
    QCOMPARE(model->licence, QString("MIT"));
    QCOMPARE(model->options["size"].toInt(), 3);
    QCOMPARE(model->installedBytes, 30);
    const ModelDownload& plain = model->downloads.at(0);
    QCOMPARE(plain.packing, ModelPacking::none);
    QCOMPARE(plain.fileName(), QString("one.bin"));
    QCOMPARE(plain.files.front(), (ModelFile{"first.bin", 10, kHash.toLatin1()}));
    const ModelDownload& packed = model->downloads.at(1);
    QCOMPARE(packed.packing, ModelPacking::gzip);
    QCOMPARE(packed.fileName(), QString("two.bin.gz"));
    QCOMPARE(packed.files.front(), (ModelFile{"two.bin", 20, kHash.toLatin1()}));
    QCOMPARE(model->title, QString("good-1.0"));
    QVERIFY(model->licenceNotice.isEmpty());
  }

  void addressesAreInOrder() {
    QJsonValue model = replaced(goodModel(), {"downloads", "0", "mirrors"},
                                QJsonArray{"https://a.example/1.bin", "https://b.example/1.bin"});
    model =
        replaced(model, {"downloads", "1", "files", "0", "address"}, "https://c.example/two.bin");
    const ModelCatalogue catalogue = ModelCatalogue::read(catalogueOf({model}));
    const std::vector<ModelDownload>& downloads = catalogue.models().front().downloads;
    QCOMPARE(downloads.at(0).addresses,
             QStringList({"https://example.org/x/one.bin", "https://a.example/1.bin",
                          "https://b.example/1.bin"}));
    QCOMPARE(downloads.at(0).fileName(), QString("one.bin"));
    QCOMPARE(downloads.at(1).files.front().addresses, QStringList("https://c.example/two.bin"));
  }

  void rejectsInvalidEntries_data() {
    QTest::addColumn<QString>("path");
    QTest::addColumn<QJsonValue>("value");
    const auto row = [](const char* name, const char* path, const QJsonValue& value) {
      QTest::newRow(name) << QString(path) << value;
    };
    row("id with a folder", "id", "../evil");
    row("hidden id", "id", ".downloads");
    row("id of two lines", "id", "good\n");
    row("unknown kind", "kind", "speech");
    row("no licence", "licence", "");
    row("no languages", "languages", QJsonArray());
    row("language not a text", "languages", QJsonArray{5});
    row("no downloads", "downloads", QJsonArray());
    row("no address", "downloads.0.address", QJsonValue::Undefined);
    row("plain http mirror", "downloads.0.mirrors", QJsonArray{"http://example.org/one.bin"});
    row("file's plain http address", "downloads.1.files.0.address", "http://example.org/two.bin");
    row("licence notice in one language", "licenceNotice", QJsonObject{{"en", "Read this."}});
    row("plain http", "downloads.0.address", "http://example.org/one.bin");
    row("no host", "downloads.0.address", "one.bin");
    row("address of a folder", "downloads.0.address", "https://example.org/x/");
    row("no size", "downloads.0.bytes", 0);
    row("size that is no number of bytes", "downloads.0.bytes", 10.5);
    row("size beyond every disk", "downloads.0.bytes", 1e13);
    row("size beyond every number", "downloads.0.bytes", 1e300);
    row("installed size beyond every disk", "installedBytes", 1e13);
    row("no hash", "downloads.0.sha256", "");
    row("hash with a line's end", "downloads.0.sha256", kHash + "\n");
    row("short hash", "downloads.0.sha256", "abc");
    row("unknown packing", "downloads.0.packing", "rar");
    row("no file", "downloads.0.files", QJsonArray());
    row("two files of one", "downloads.1.files",
        QJsonArray{QJsonObject{{"name", "a"}}, QJsonObject{{"name", "b"}}});
    row("file outside the folder", "downloads.0.files.0.name", "../one.bin");
    row("the same file twice", "downloads.0.files.0.name", "two.bin");
    row("bad hash of a file", "downloads.1.files.0.sha256", "xyz");
    row("unknown installed size", "downloads.1.files.0.bytes", 0);
  }
  void rejectsInvalidEntries() {
    QFETCH(QString, path);
    QFETCH(QJsonValue, value);
    const QJsonValue model = replaced(goodModel(), path.split('.'), value);
    QVERIFY_EXCEPTION_THROWN(ModelCatalogue::read(catalogueOf({model})), Failure);
  }

  void rejectsDuplicateIds() {
    QVERIFY_EXCEPTION_THROWN(ModelCatalogue::read(catalogueOf({goodModel(), goodModel()})),
                             Failure);
  }

  void rejectsDamagedFiles() {
    QVERIFY_EXCEPTION_THROWN(ModelCatalogue::read("{\"models\": ["), Failure);
    QVERIFY_EXCEPTION_THROWN(ModelCatalogue::read("[]"), Failure);
  }

  void builtInCatalogueOffersTheLanguages() {
    const ModelCatalogue catalogue = ModelCatalogue::builtIn();
    QSet<QString> recognized;
    for (const Model& model : catalogue.ofKind(ModelKind::recognition)) {
      for (const QString& language : model.languages) recognized.insert(language);
      QVERIFY2(!model.options["locales"].toArray().isEmpty(), qPrintable(model.id));
      const char* file = model.options["engine"] == "vosk" ? "archive" : "tokens";
      QVERIFY2(!model.options[file].toString().isEmpty(), qPrintable(model.id));
    }
    for (const char* language :
         {"ar", "bg", "ca", "cs", "da", "de", "en", "eo", "es", "et", "fa",
          "fi", "fr", "hi", "hr", "hu", "id", "it", "ja", "kk", "ko", "nb",
          "nl", "pl", "pt", "ro", "ru", "sk", "sv", "tr", "uk", "vi", "zh"}) {
      QVERIFY2(recognized.contains(language), language);
    }
    QCOMPARE(catalogue.ofKind(ModelKind::punctuation).size(), std::size_t(1));
    for (const Model& model : catalogue.ofKind(ModelKind::translation)) {
      QCOMPARE(model.languages.size(), 2);
    }
    QVERIFY(catalogue.ofKind(ModelKind::translation).size() > 100);
  }

  void additionalModelsComeFirstAndEachIdOnce() {
    const ModelCatalogue plain = ModelCatalogue::builtIn();
    const QString known = plain.models().back().id;
    QJsonObject replacement = goodModel();
    replacement["id"] = known;
    replacement["licence"] = "Another";
    const QTemporaryDir folder;
    const QString path = folder.filePath("catalogue.json");
    const auto restored = nameAdditional(path, catalogueOf({goodModel(), replacement}));
    const ModelCatalogue all = ModelCatalogue::builtIn();
    QCOMPARE(all.models().size(), plain.models().size() + 1);
    QCOMPARE(all.models()[0].id, QString("good-1.0"));
    QCOMPARE(all.models()[1].id, known);
    QCOMPARE(all.find(known)->licence, QString("Another"));
    QSet<QString> ids;
    for (const Model& model : all.models()) ids.insert(model.id);
    QCOMPARE(ids.size(), static_cast<qsizetype>(all.models().size()));
  }

  void unreadableAdditionalModelsAreIgnoredWithAWarning_data() {
    QTest::addColumn<QByteArray>("contents");
    QTest::newRow("missing") << QByteArray();
    QTest::newRow("no JSON") << QByteArray("{\"models\": [");
    QTest::newRow("not allowed") << catalogueOf(
        {replaced(goodModel(), {"id"}, "../up").toObject()});
  }
  void unreadableAdditionalModelsAreIgnoredWithAWarning() {
    QFETCH(QByteArray, contents);
    const ModelCatalogue plain = ModelCatalogue::builtIn();
    const QTemporaryDir folder;
    const QString path = folder.filePath("catalogue.json");
    const auto restored = nameAdditional(path, contents);
    QTest::ignoreMessage(QtWarningMsg, QRegularExpression("VELUN_MODEL_CATALOGUE is ignored: " +
                                                          QRegularExpression::escape(path)));
    QCOMPARE(ModelCatalogue::builtIn().models().size(), plain.models().size());
  }

  void optionsNameDownloadedFiles() {
    const ModelCatalogue catalogue = ModelCatalogue::builtIn();
    for (const Model& model : catalogue.models()) {
      QStringList files;
      for (const ModelDownload& download : model.downloads) {
        for (const ModelFile& file : download.files) files.append(file.name);
      }
      for (const char* key :
           {"encoder", "decoder", "joiner", "tokens", "ctc", "archive", "model"}) {
        if (!model.options.contains(QString(key))) continue;
        QVERIFY2(files.contains(model.options[QString(key)].toString()), qPrintable(model.id));
      }
    }
  }

  void everyFileOfAnArchiveIsChecked() {
    for (const Model& model : ModelCatalogue::builtIn().ofKind(ModelKind::recognition)) {
      for (const ModelDownload& download : model.downloads) {
        for (const ModelFile& file : download.files) {
          QVERIFY2(file.bytes > 0 && !file.sha256.isEmpty(), qPrintable(model.id));
        }
      }
    }
  }

  void englishAndChineseArePunctuatedByDefault() {
    const ModelCatalogue catalogue = ModelCatalogue::builtIn();
    for (const char* locale : {"en_US", "zh_CN"}) {
      const auto recognizers = catalogue.ofKind(ModelKind::recognition);
      const auto first =
          std::find_if(recognizers.begin(), recognizers.end(), [locale](const Model& model) {
            return model.options["locales"].toArray().contains(QString(locale));
          });
      QVERIFY2(first->writesPunctuation && first->quality == ModelQuality::good, locale);
      QVERIFY2(first->licenceNotice.isEmpty() && first->downloadBytes() < 150'000'000, locale);
    }
    // Earlier versions installed it.
    QVERIFY(catalogue.find("zipformer-en-2023-06-26"));
  }

  void mirrorReplacesTheHost() {
    const QString address = "https://example.org/a/b.bin";
    QCOMPARE(mirroredModelAddress(address, ""), QUrl(address));
    QCOMPARE(mirroredModelAddress(address, "http://127.0.0.1:8080"),
             QUrl("http://127.0.0.1:8080/a/b.bin"));
    QCOMPARE(mirroredModelAddress(address, "https://mirror.example/velun/"),
             QUrl("https://mirror.example/velun/a/b.bin"));
  }

  void onlyLoopbackMayUseHttp() {
    QVERIFY(isSafeModelAddress(QUrl("https://example.org/a")));
    QVERIFY(isSafeModelAddress(QUrl("http://127.0.0.1:1/a")));
    QVERIFY(isSafeModelAddress(QUrl("http://localhost/a")));
    QVERIFY(isSafeModelAddress(QUrl("http://[::1]/a")));
    QVERIFY(!isSafeModelAddress(QUrl("http://example.org/a")));
    QVERIFY(!isSafeModelAddress(QUrl("http://localhost.example.org/a")));
    QVERIFY(!isSafeModelAddress(QUrl("ftp://127.0.0.1/a")));
    QVERIFY(!isSafeModelAddress(QUrl("file:///etc/passwd")));
  }
};

QTEST_GUILESS_MAIN(ModelCatalogueTest)
#include "model_catalogue_test.moc"
