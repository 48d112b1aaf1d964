// SPDX-License-Identifier: GPL-3.0-or-later
// The time from a finished line to its stored translation with a model of the largest size. Its
// random weights never emit the end token, so every translation has the maximum length.
#include "captions/running_captions.h"
#include "measure.h"
#include "platform/translation/local_translation_platform.h"
#include "platform/translation/student/student_translator.h"
#include "platform/translation/support/made_up_model.h"

#include <algorithm>

using namespace velun;

namespace {

constexpr int kLines = 100;
constexpr int kTokens = 20;

/// Offers one model.
class ModelBackend final : public TranslatorBackend {
 public:
  explicit ModelBackend(StudentFiles files) : files_(std::move(files)) {}

  std::vector<LanguagePair> installedPairs() const override { return {pair_}; }
  std::vector<LanguagePair> downloadablePairs() const override { return {}; }
  QCoro::Task<> install(LanguagePair, std::stop_token) override { co_return; }
  std::shared_ptr<TextTranslator> makeTranslator(const LanguagePair& pair) override {
    return std::make_shared<StudentTranslator>(files_, pair);
  }

 private:
  LanguagePair pair_{QStringLiteral("en"), QStringLiteral("es")};
  StudentFiles files_;
};

QCoro::Task<QStringList> noLanguages() {
  co_return QStringList();
}

}  // namespace

int main(int argc, char** argv) {
  const QCoreApplication application(argc, argv);
  const test::MadeUpModel model = test::MadeUpModel::base();
  const QTemporaryDir folder;
  model.write(folder.path());
  test::ManualClock clock;
  std::vector<std::unique_ptr<TranslatorBackend>> backends;
  backends.push_back(std::make_unique<ModelBackend>(test::MadeUpModel::files(folder.path())));
  LocalTranslationPlatform platform(std::move(backends), noLanguages, clock);
  bench::RunningCaptions session(false, &platform);

  int translated = 0;
  CaptionViewModel* const captions = session.model.get();
  QObject::connect(captions, &CaptionViewModel::translationChanged, captions,
                   [&translated] { ++translated; });
  std::vector<double> times;
  for (const QString& sentence : model.sentences(kLines + 1, kTokens)) {
    times.push_back(bench::millisecondsOf([&] {
      const int before = translated;
      session.final(sentence);
      while (translated == before) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }));
  }
  times.erase(times.begin());  // includes loading the model
  std::ranges::sort(times);
  bench::report("translated_line_ms", times[kLines / 2], "ms");
  bench::report("translated_line_p95_ms", times[kLines * 95 / 100], "ms");
  return 0;
}
