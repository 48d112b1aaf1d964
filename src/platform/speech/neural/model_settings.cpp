// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/neural/model_settings.h"

#include "platform/foundation/language_identifier.h"

#include <QDir>

namespace velun {

namespace {

class Options {
 public:
  Options(const Model& model, const QString& folder) : options_(model.options), folder_(folder) {}

  /// The path of the file that an option names; empty without the option.
  QString path(const char* name) const {
    const QString file = text(name);
    return file.isEmpty() ? QString() : folder_.filePath(file);
  }
  QString text(const char* name) const { return options_[name].toString(); }
  bool flag(const char* name) const { return options_[name].toBool(); }
  int number(const char* name, int otherwise) const { return options_[name].toInt(otherwise); }
  double seconds(const char* name, double otherwise) const {
    return options_[name].toDouble(otherwise);
  }

 private:
  const QJsonObject options_;
  const QDir folder_;
};

}  // namespace

RecognizerSettings modelSettings(const Model& model, const QString& folder, const QString& locale) {
  RecognizerSettings settings;
  const Options options(model, folder);
  settings.language = languageCode(locale);
  settings.encoder = options.path("encoder");
  settings.decoder = options.path("decoder");
  settings.joiner = options.path("joiner");
  settings.ctc = options.path("ctc");
  settings.nemoCtc = options.path("nemoCtc");
  settings.tokens = options.path("tokens");
  settings.voskArchive = options.path("archive");
  if (runsInVosk(model)) {
    settings.voskArchiveSum = QString::fromLatin1(model.downloads.front().sha256);
  }
  settings.modelType = options.text("modelType");
  settings.hearsLanguage = options.flag("languageOption");
  settings.foldsLetters = options.text("letters") == "fold";
  settings.textFromTokens = options.text("text") == "tokens";
  settings.writesMarks = model.writesPunctuation;
  settings.keepsContext = options.flag("keepsContext");
  settings.leadSilenceMs = options.number("leadSilenceMs", settings.leadSilenceMs);
  settings.tailSilenceMs = options.number("tailSilenceMs", settings.tailSilenceMs);
  settings.endpointSilence = options.seconds("endpointSilence", settings.endpointSilence);
  settings.idleSilence = options.seconds("idleSilence", settings.idleSilence);
  settings.maxPhrase = options.seconds("maxPhrase", settings.maxPhrase);
  settings.featureDimension = options.number("featureDimension", settings.featureDimension);
  settings.minimumLibrary = options.text("minimumLibrary");
  return settings;
}

bool runsInVosk(const Model& model) {
  return model.options["engine"] == "vosk";
}

QVersionNumber minimumLibrary(const Model& model) {
  return QVersionNumber::fromString(model.options["minimumLibrary"].toString());
}

}  // namespace velun
