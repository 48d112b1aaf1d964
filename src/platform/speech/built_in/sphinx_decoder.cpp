// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/built_in/sphinx_decoder.h"

#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <pocketsphinx.h>
#include <QFile>
#include <sphinxbase/err.h>

namespace velun {

namespace {

constexpr const char* kAcousticModel = VELUN_ENGLISH_MODEL "/en-us";
constexpr const char* kLanguageModel = VELUN_ENGLISH_MODEL "/en-us.lm.bin";
constexpr const char* kDictionary = VELUN_ENGLISH_MODEL "/cmudict-en-us.dict";

Failure cannotLoad() {
  return Failure(
      L("The English speech model couldn’t be loaded. Install the package "
        "“pocketsphinx-en-us” again.",
        "영어 음성 모델을 불러올 수 없습니다. “pocketsphinx-en-us” 패키지를 다시 "
        "설치하세요."));
}

}  // namespace

void SphinxDecoder::Free::operator()(ps_decoder_s* decoder) const {
  ps_free(decoder);
}

SphinxDecoder::SphinxDecoder(const Options& options) {
  err_set_logfp(nullptr);
  std::vector<char*> arguments;
  const auto add = [&arguments](const char* text) {
    arguments.push_back(const_cast<char*>(text));  // only read
  };
  for (const char* text :
       {"velun", "-hmm", kAcousticModel, "-lm", kLanguageModel, "-dict", kDictionary}) {
    add(text);
  }
  for (const auto& [name, value] : options) {
    add(name);
    add(value);
  }
  cmd_ln_t* configuration = cmd_ln_parse_r(nullptr, ps_args(), static_cast<int>(arguments.size()),
                                           arguments.data(), TRUE);
  if (!configuration) throw cannotLoad();
  decoder_.reset(ps_init(configuration));
  cmd_ln_free_r(configuration);
  if (!decoder_) throw cannotLoad();
}

SphinxDecoder::~SphinxDecoder() = default;

void SphinxDecoder::begin() {
  ps_start_utt(decoder_.get());
}

void SphinxDecoder::process(std::span<const std::int16_t> samples) {
  ps_process_raw(decoder_.get(), samples.data(), samples.size(), FALSE, FALSE);
}

QStringList SphinxDecoder::words() const {
  std::int32_t score = 0;
  const char* hypothesis = ps_get_hyp(decoder_.get(), &score);
  if (!hypothesis) return {};
  return QString::fromUtf8(hypothesis).split(u' ', Qt::SkipEmptyParts);
}

void SphinxDecoder::end() {
  ps_end_utt(decoder_.get());
}

bool SphinxDecoder::isInstalled() {
  return QFile::exists(QString::fromLatin1(kAcousticModel) + QStringLiteral("/mdef")) &&
         QFile::exists(QString::fromLatin1(kLanguageModel)) &&
         QFile::exists(QString::fromLatin1(kDictionary));
}

}  // namespace velun
