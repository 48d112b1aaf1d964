// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/linux/built_in/built_in_recognizer_provider.h"

#include "platform/speech/linux/built_in/built_in_backend.h"
#include "platform/speech/linux/built_in/sphinx_decoder.h"

#include <malloc.h>

namespace velun {

namespace {

const auto kLocale = QStringLiteral("en_US");

/// Gives the decoders' memory back to the system once they are freed; the allocator would keep
/// some of it.
class TrimmedBackend final : public RecognizerBackend {
 public:
  explicit TrimmedBackend(std::unique_ptr<RecognizerBackend> backend)
      : backend_(std::move(backend)) {}
  ~TrimmedBackend() override {
    backend_.reset();
    malloc_trim(0);
  }
  void load() override { backend_->load(); }
  void acceptAudio(std::span<const float> samples) override { backend_->acceptAudio(samples); }
  std::vector<TranscriptionResult> poll() override { return backend_->poll(); }
  bool expectsResults() const override { return backend_->expectsResults(); }
  void finalize() override { backend_->finalize(); }
  void cancel() override { backend_->cancel(); }

 private:
  std::unique_ptr<RecognizerBackend> backend_;
};

}  // namespace

BuiltInRecognizerProvider::BuiltInRecognizerProvider(
    std::shared_ptr<PunctuationProvider> punctuation)
    : punctuation_(std::move(punctuation)) {}

QStringList BuiltInRecognizerProvider::supportedLocales() const {
  return {kLocale};
}

bool BuiltInRecognizerProvider::isInstalled(const QString& locale) const {
  return locale == kLocale && SphinxDecoder::isInstalled();
}

RecognizerProvider::Factory BuiltInRecognizerProvider::factory(const QString& locale) const {
  PunctuationRestorer::Factory marks;
  if (punctuation_) marks = punctuation_->punctuationFactory(locale);
  return [marks]() -> std::unique_ptr<RecognizerBackend> {
    auto backend = std::make_unique<BuiltInBackend>(marks ? marks() : nullptr);
    return std::make_unique<TrimmedBackend>(std::move(backend));
  };
}

std::shared_ptr<AssetInstallationRequest> BuiltInRecognizerProvider::installationRequest(
    const QString&) {
  return nullptr;
}

void BuiltInRecognizerProvider::fetchInBackground(const QString&) {}

}  // namespace velun
