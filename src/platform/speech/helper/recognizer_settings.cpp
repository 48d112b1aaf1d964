// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/speech/helper/recognizer_settings.h"

#include <QJsonDocument>
#include <QJsonObject>

namespace velun {

namespace {

// Lists the members and their names once, for reading and writing.
template <class Settings, class Visitor>
void visit(Settings& settings, const Visitor& each) {
  each("voskLibrary", settings.voskLibrary);
  each("voskModel", settings.voskModel);
  each("voskModelSums", settings.voskModelSums);
  each("voskArchive", settings.voskArchive);
  each("voskArchiveSum", settings.voskArchiveSum);
  each("encoder", settings.encoder);
  each("decoder", settings.decoder);
  each("joiner", settings.joiner);
  each("ctc", settings.ctc);
  each("nemoCtc", settings.nemoCtc);
  each("tokens", settings.tokens);
  each("modelType", settings.modelType);
  each("language", settings.language);
  each("hearsLanguage", settings.hearsLanguage);
  each("foldsLetters", settings.foldsLetters);
  each("textFromTokens", settings.textFromTokens);
  each("writesMarks", settings.writesMarks);
  each("keepsContext", settings.keepsContext);
  each("leadSilenceMs", settings.leadSilenceMs);
  each("tailSilenceMs", settings.tailSilenceMs);
  each("endpointSilence", settings.endpointSilence);
  each("idleSilence", settings.idleSilence);
  each("maxPhrase", settings.maxPhrase);
  each("featureDimension", settings.featureDimension);
  each("minimumLibrary", settings.minimumLibrary);
  each("threads", settings.threads);
  each("isRecording", settings.isRecording);
  each("userWords", settings.userWords);
  each("punctuationModel", settings.punctuationModel);
  each("punctuationVocabulary", settings.punctuationVocabulary);
  each("punctuationSums", settings.punctuationSums);
  each("speakerModel", settings.speakerModel);
}

void take(const QJsonValue& value, QString& member) {
  member = value.toString(member);
}
void take(const QJsonValue& value, bool& member) {
  member = value.toBool(member);
}
void take(const QJsonValue& value, int& member) {
  member = value.toInt(member);
}
void take(const QJsonValue& value, double& member) {
  member = value.toDouble(member);
}

}  // namespace

QByteArray RecognizerSettings::toJson() const {
  QJsonObject object;
  visit(*this, [&object](const char* name, const auto& member) { object[name] = member; });
  return QJsonDocument(object).toJson(QJsonDocument::Compact);
}

RecognizerSettings RecognizerSettings::fromJson(const QByteArray& json) {
  const QJsonObject object = QJsonDocument::fromJson(json).object();
  RecognizerSettings settings;
  visit(settings, [&object](const char* name, auto& member) { take(object[name], member); });
  return settings;
}

}  // namespace velun
