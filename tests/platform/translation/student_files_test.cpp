// SPDX-License-Identifier: GPL-3.0-or-later
#include "language/localization.h"
#include "platform/foundation/failure.h"
#include "platform/translation/student/model_format_error.h"
#include "platform/translation/student/shortlist.h"
#include "platform/translation/student/student_config.h"
#include "platform/translation/student/student_model.h"
#include "platform/translation/student/student_translator.h"
#include "platform/translation/support/model_writer.h"
#include "platform/translation/support/toy_models.h"
#include "platform/translation/support/vocabulary_writer.h"
#include "support/failing_calls.h"
#include "support/suite.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <functional>
#include <limits>
#include <QTest>
#include <sys/syscall.h>

using namespace velun;
using namespace velun::test;
using namespace std::string_view_literals;

namespace {

using Bytes = std::vector<std::byte>;

Bytes modelBytes() {
  return readModelBytes(toyFiles(QStringLiteral("enko")).model);
}
Bytes shortlistBytes() {
  return readModelBytes(toyFiles(QStringLiteral("enko")).shortlist);
}

constexpr int kSourceTokens = 400;
constexpr int kTargetTokens = 424;

template <class T>
void put(Bytes& bytes, std::size_t at, T value) {
  std::memcpy(bytes.data() + at, &value, sizeof value);
}

// A trie of replacements is an array of units. The XOR of a unit's index, its offset and a byte is
// the index of the unit for that byte; without a byte, of the unit that holds the offset of the
// text and has the highest bit set.
constexpr std::uint32_t kBranchesPerUnit = 256;
constexpr int kOffsetShift = 10;
constexpr std::uint32_t kHasText = 1U << 8;
constexpr std::uint32_t kIsText = 1U << 31;

/// A trie that replaces one character by the first text.
std::vector<std::uint32_t> treeOf(char character) {
  std::vector<std::uint32_t> units(kBranchesPerUnit);
  const auto at = static_cast<std::uint32_t>(character);
  units[at] = at | kHasText | (at ^ 1U) << kOffsetShift;
  units[1] = kIsText;
  return units;
}

std::string replacing(char character, std::string_view by) {
  return writeReplacementTable(treeOf(character), std::string(by) + '\0');
}

std::optional<ModelFormatError::Reason> reasonOf(const std::function<void()>& action) {
  try {
    action();
  } catch (const ModelFormatError& error) {
    return error.reason();
  }
  return std::nullopt;
}

const auto kDamaged = std::optional(ModelFormatError::Reason::damaged);
const auto kUnsupported = std::optional(ModelFormatError::Reason::unsupported);

std::optional<ModelFormatError::Reason> reasonOfModel(const Bytes& bytes) {
  return reasonOf([&bytes] { const StudentModel model{StudentModelFile(bytes)}; });
}

std::optional<ModelFormatError::Reason> reasonOfItems(const std::vector<WrittenItem>& items) {
  return reasonOfModel(writeModel(items));
}

std::vector<WrittenItem> items() {
  return itemsOf(StudentModelFile(modelBytes()));
}

WrittenItem& named(std::vector<WrittenItem>& items, const std::string& name) {
  return *std::ranges::find(items, name, &WrittenItem::name);
}

std::string configText() {
  return std::string(StudentModelFile(modelBytes()).configuration());
}

}  // namespace

/// Model files that are truncated, inconsistent or of another kind.
class StudentFilesTest final : public Suite {
  Q_OBJECT

 private Q_SLOTS:
  void readsAValidFile() {
    const StudentModelFile file(modelBytes());
    QCOMPARE(file.at("encoder_Wemb").rows(), kSourceTokens);
    QCOMPARE(file.at("decoder_Wemb").rows(), kTargetTokens);
    QVERIFY(!file.find("no_such_array"));
    const StudentModel model(StudentModelFile{modelBytes()});
    QCOMPARE(model.sourceVocabulary(), kSourceTokens);
    QVERIFY(!model.hasOneVocabulary());
  }

  void roundTripsAFile() {
    const StudentModelFile file(writeModel(items()));
    const StudentModelFile original(modelBytes());
    QCOMPARE(file.items().size(), original.items().size());
    for (const auto& [name, item] : original.items()) {
      QVERIFY(std::ranges::equal(file.at(name).data, item.data));
    }
  }

  void rejectsEveryTruncation() {
    const Bytes whole = modelBytes();
    for (std::size_t size = 0; size < whole.size(); size += size < 8192 ? 13 : 9973) {
      const Bytes cut(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
      QCOMPARE(reasonOfModel(cut), kDamaged);
    }
  }

  void rejectsHostileHeaders() {
    constexpr std::size_t kCount = 8;
    constexpr std::size_t kFirstHead = 16;
    const auto huge = std::numeric_limits<std::uint64_t>::max();
    Bytes bytes = modelBytes();
    put(bytes, 0, std::uint64_t{2});
    QCOMPARE(reasonOfModel(bytes), kUnsupported);
    for (const std::size_t at : {kCount, kFirstHead, kFirstHead + 16, kFirstHead + 24}) {
      for (const std::uint64_t value : {huge, huge / 2, std::uint64_t{1} << 40}) {
        bytes = modelBytes();
        put(bytes, at, value);
        QCOMPARE(reasonOfModel(bytes), kDamaged);
      }
    }
    bytes = modelBytes();
    put(bytes, kFirstHead + 8, std::uint64_t{0x1801});
    QCOMPARE(reasonOfModel(bytes), kUnsupported);
  }

  void rejectsShapesThatOverflow() {
    auto changed = items();
    named(changed, "encoder_Wemb").shape = {1 << 20, 1 << 20, 1 << 24};
    const Bytes bytes = writeModel(changed);
    QCOMPARE(reasonOf([&bytes] { const StudentModelFile file(bytes); }), kDamaged);
  }

  void rejectsAVocabularyThatSentencePieceThrowsFor() {
    Bytes bytes = writeVocabulary({"one", "two"});
    QCOMPARE(reasonOf([&bytes] { const Vocabulary vocabulary(bytes); }), std::nullopt);
    // A piece that starts with NUL.
    const auto* const mark = reinterpret_cast<const std::byte*>("\u2581");
    const auto piece = std::search(bytes.begin(), bytes.end(), mark, mark + 3);
    QVERIFY(piece != bytes.end());
    *piece = std::byte{0};
    QCOMPARE(reasonOf([&bytes] { const Vocabulary vocabulary(bytes); }), kDamaged);
  }

  void aVocabularyNormalizesText() {
    const Vocabulary vocabulary(writeVocabulary(
        {"one", "two"}, {.before = replacing('x', "one"sv), .after = replacing('w', "v"sv)}));
    QCOMPARE(vocabulary.encode(QStringLiteral("x")), vocabulary.encode(QStringLiteral("one")));
    QCOMPARE(vocabulary.decode(vocabulary.encode(QStringLiteral("x two"))),
             QStringLiteral("one tvo"));
  }

  void rejectsReplacementsOutsideOfTheirTable_data() {
    QTest::addColumn<QByteArray>("table");
    const auto row = [](const char* name, const std::string& table) {
      QTest::newRow(name) << QByteArray::fromStdString(table);
    };
    row("no tree", writeReplacementTable({}, "one\0"sv));
    row("less than a block", writeReplacementTable(std::vector<std::uint32_t>(255), "one\0"sv));
    row("half a unit", writeReplacementTable(treeOf('x'), "one\0"sv).replace(0, 1, "\x02"));
    row("no texts", writeReplacementTable(treeOf('x'), ""sv));
    row("texts without an end", writeReplacementTable(treeOf('x'), "one"sv));
    row("shorter than its size", "\x01\x02\x03");
    row("size beyond the end", std::string("\xff\xff\xff\x7f", 4) + "one");

    auto units = treeOf('x');
    units[0] = kBranchesPerUnit << kOffsetShift;
    row("root leads out", writeReplacementTable(units, "one\0"sv));
    units = treeOf('x');
    units[0] = kIsText;
    row("root that looks like a text leads out", writeReplacementTable(units, "one\0"sv));
    units = treeOf('x');
    units['x'] = 'x' | 1U << 9 | 1U << kOffsetShift;
    row("branch leads out", writeReplacementTable(units, "one\0"sv));
    units = treeOf('x');
    units[1] |= 4;
    row("text beyond the texts", writeReplacementTable(units, "one\0"sv));
  }

  void rejectsReplacementsOutsideOfTheirTable() {
    QFETCH(QByteArray, table);
    for (const auto& tables : {ReplacementTables{.before = table.toStdString(), .after = {}},
                               ReplacementTables{.before = {}, .after = table.toStdString()}}) {
      const Bytes bytes = writeVocabulary({"one", "two"}, tables);
      const auto use = [&bytes] {
        const Vocabulary vocabulary(bytes);
        vocabulary.decode(vocabulary.encode(QStringLiteral("x one two")));
      };
      QCOMPARE(reasonOf(use), kDamaged);
    }
  }

  void rejectsAKeyThatSentencePieceTruncates() {
    Bytes bytes = writeVocabulary({"one", "two"});
    // Key 1 << 32 | 26, whose lower half is that of the normalizer, without content.
    for (const int byte : {0x9A, 0x80, 0x80, 0x80, 0x10, 0x00}) bytes.push_back(std::byte(byte));
    QCOMPARE(reasonOf([&bytes] { const Vocabulary vocabulary(bytes); }), kDamaged);
  }

  void rejectsArraysOfAnotherSize_data() {
    QTest::addColumn<QString>("array");
    for (const char* name :
         {"encoder_Wemb", "decoder_Wemb", "encoder_l1_self_Wq", "encoder_l2_ffn_b1",
          "decoder_l1_rnn_Wf", "decoder_l2_context_Wo_ln_scale", "decoder_ff_logit_out_b"}) {
      QTest::newRow(name) << QString::fromLatin1(name);
    }
  }

  void rejectsArraysOfAnotherSize() {
    QFETCH(QString, array);
    const std::string name = array.toStdString();
    auto changed = items();
    std::erase_if(changed, [&](const WrittenItem& item) { return item.name == name; });
    QCOMPARE(reasonOfItems(changed), kDamaged);

    changed = items();
    named(changed, name).shape.back() -= 8;
    QCOMPARE(reasonOfItems(changed), kDamaged);

    changed = items();
    named(changed, name).shape.back() += 8;
    QCOMPARE(reasonOfItems(changed), kDamaged);

    changed = items();
    named(changed, name).type = ModelItem::Type::characters;
    QCOMPARE(reasonOfItems(changed), kDamaged);

    changed = items();
    changed.push_back(named(changed, name));
    QCOMPARE(reasonOfItems(changed), kDamaged);
  }

  void rejectsScalesThatAreNotPositiveNumbers() {
    for (const float scale : {0.0F, -1.0F, std::numeric_limits<float>::infinity(),
                              std::numeric_limits<float>::quiet_NaN()}) {
      auto changed = items();
      WrittenItem& item = named(changed, "encoder_l1_self_Wq_QuantMultA");
      put(item.data, 0, scale);
      QCOMPARE(reasonOfItems(changed), kDamaged);
    }
  }

  void rejectsOtherNetworks_data() {
    QTest::addColumn<QByteArray>("from");
    QTest::addColumn<QByteArray>("to");
    const auto row = [](const char* from, const char* to) {
      QTest::newRow(to) << QByteArray(from) << QByteArray(to);
    };
    row("dec-cell: ssru", "dec-cell: gru");
    row("transformer-decoder-autoreg: rnn", "transformer-decoder-autoreg: self-attention");
    row("transformer-decoder-autoreg: rnn\n", "");
    row("transformer-ffn-activation: relu", "transformer-ffn-activation: swish");
    row("transformer-preprocess: \"\"", "transformer-preprocess: n");
    row("transformer-tied-layers:\n  []", "transformer-tied-layers:\n  - 1\n  - 1");
    row("right-left: false", "right-left: true");
    row("dim-emb: 128", "dim-emb: 127");
    row("dim-emb: 128", "dim-emb: x");
    row("dim-emb: 128", "dim-emb: 99999999999999999999");
    row("enc-depth: 2", "enc-depth: 0");
    row("transformer-heads: 8", "transformer-heads: 7");
    row("tied-embeddings: true", "tied-embeddings: false");
  }

  void rejectsOtherNetworks() {
    QFETCH(QByteArray, from);
    QFETCH(QByteArray, to);
    QByteArray text = QByteArray::fromStdString(configText());
    QVERIFY(text.contains(from));
    text.replace(from, to);
    QCOMPARE(reasonOf([&text] { parseStudentConfig(text.toStdString()); }), kUnsupported);
  }

  void missingKeysOfOlderFilesHaveDefaults() {
    QByteArray text = QByteArray::fromStdString(configText());
    for (const char* line : {"transformer-rnn-projection: false\n",
                             "transformer-decoder-dim-ffn: 0\n", "right-left: false\n"}) {
      QVERIFY(text.contains(line));
      text.replace(line, "");
    }
    const StudentConfig config = parseStudentConfig(text.toStdString());
    QCOMPARE(config.width, 128);
    QCOMPARE(config.decoderLayers, 2);
    QVERIFY(!config.oneVocabulary);
  }

  void shortlistChoosesItsCandidates() {
    const Shortlist shortlist(shortlistBytes(), kSourceTokens, kTargetTokens);
    const std::vector<int> tokens = shortlist.candidates(std::vector<int>{0, 5, 9}, false);
    QVERIFY(std::ranges::is_sorted(tokens));
    QCOMPARE(tokens.size() % 8, std::size_t{0});
    QCOMPARE(tokens.front(), 0);
    QVERIFY(tokens.back() < kTargetTokens);
    // With one vocabulary the tokens of the source are always candidates.
    const int last = kSourceTokens - 1;
    QVERIFY(!std::ranges::binary_search(tokens, last));
    const std::vector<int> with = shortlist.candidates(std::vector<int>{0, 5, 9, last}, true);
    QVERIFY(std::ranges::binary_search(with, last));
  }

  void rejectsDamagedShortlists() {
    const auto reason = [](const Bytes& bytes) {
      return reasonOf([&bytes] { const Shortlist list(bytes, kSourceTokens, kTargetTokens); });
    };
    const Bytes whole = shortlistBytes();
    QCOMPARE(reason(whole), std::nullopt);
    for (std::size_t size = 0; size < whole.size(); size += size < 4096 ? 7 : 1009) {
      QCOMPARE(reason(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size))),
               kDamaged);
    }
    constexpr std::size_t kOffsetCount = 32;
    constexpr std::size_t kTokenCount = 40;
    constexpr std::size_t kOffsets = 48;
    const auto changed = [&](std::size_t at, std::uint64_t value) {
      Bytes bytes = whole;
      put(bytes, at, value);
      return reason(bytes);
    };
    QCOMPARE(changed(0, 1), kUnsupported);
    QCOMPARE(changed(kOffsetCount, std::numeric_limits<std::uint64_t>::max()), kDamaged);
    QCOMPARE(changed(kTokenCount, std::numeric_limits<std::uint64_t>::max()), kDamaged);
    QCOMPARE(changed(kOffsets + 8, std::numeric_limits<std::uint64_t>::max()), kDamaged);
    Bytes foreign = whole;
    put(foreign, whole.size() - 4, std::uint32_t{kTargetTokens});
    QCOMPARE(reason(foreign), kDamaged);
  }

  void rejectsFilesOfDifferentModels() {
    const StudentFiles spanish = toyFiles(QStringLiteral("enes"));
    StudentFiles mixed = toyFiles(QStringLiteral("enko"));
    mixed.sourceVocabulary = spanish.sourceVocabulary;
    QCOMPARE(reasonOf([&] { const StudentEngine engine(mixed); }), kDamaged);
    mixed = toyFiles(QStringLiteral("enko"));
    mixed.targetVocabulary.clear();
    QCOMPARE(reasonOf([&] { const StudentEngine engine(mixed); }), kDamaged);
    mixed = toyFiles(QStringLiteral("enko"));
    mixed.shortlist = spanish.shortlist;
    QCOMPARE(reasonOf([&] { const StudentEngine engine(mixed); }), kDamaged);
    mixed = toyFiles(QStringLiteral("enko"));
    mixed.sourceVocabulary = mixed.model;
    QCOMPARE(reasonOf([&] { const StudentEngine engine(mixed); }), kDamaged);
  }

  void theErrorNamesTheDamagedModel() {
    StudentFiles files = toyFiles(QStringLiteral("enko"));
    files.shortlist = toyFiles(QStringLiteral("enes")).shortlist;
    QCOMPARE(loadingError(files), QString("The translation model English → Korean is damaged."));
  }

  void modelThatCannotBeReadIsNotDamaged() {
    StudentFiles files = toyFiles(QStringLiteral("enko"));
    QVERIFY(test::runWithFailingCall(SYS_openat, EMFILE, [&] {
      if (loadingError(files) !=
          QString(
              "The translation model English → Korean couldn’t be read: Too many open files.")) {
        ::_exit(1);
      }
    }));
    QCOMPARE(loadingError(files), QString());
  }

 private:
  /// The text of the error of loading the model; empty if there is none.
  static QString loadingError(const StudentFiles& files) {
    StudentTranslator translator(files, {QStringLiteral("en"), QStringLiteral("ko")});
    try {
      translator.load();
    } catch (const Failure& failure) {
      return failure.errorDescription();
    }
    return {};
  }
};

QTEST_GUILESS_MAIN(StudentFilesTest)
#include "student_files_test.moc"
