// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/caption_file.h"

#include "captions/caption_view_model.h"
#include "captions/update.h"
#include "language/localization.h"
#include "model/file_error_text.h"
#include "model/renderings.h"

#include <QStringList>

namespace velun {

CaptionFile::CaptionFile(const CaptionViewModel& model, const SharingSettings& settings)
    : model_(model), settings_(settings) {
  connect(&model, &CaptionViewModel::isRunningChanged, this, &CaptionFile::begin);
  // Not before: the last words of captions that were stopped still arrive.
  connect(&model, &CaptionViewModel::isTransitioningChanged, this, [this] {
    if (!model_.isRunning() && !model_.isTransitioning()) end();
  });
  connect(&model, &CaptionViewModel::sessionChanged, this, &CaptionFile::update);
  connect(&model.settings(), &AppSettings::showTranslationOnlyChanged, this, &CaptionFile::update);
  connect(&model.settings(), &AppSettings::translateChanged, this, &CaptionFile::update);
  connect(&settings, &SharingSettings::captionFileChanged, this, &CaptionFile::settingsChanged);
  connect(&writer_, &CaptionFileWriter::finished, this,
          [this](const std::optional<FileError>& error) {
            written(error ? std::optional(fileErrorText(*error)) : std::nullopt);
          });
  begin();
}

CaptionFile::~CaptionFile() {
  end();
}

void CaptionFile::begin() {
  if (!model_.isRunning() || !path_.isEmpty() || settings_.captionFile().isEmpty()) return;
  path_ = settings_.captionFile();
  ending_ = settings_.captionFileEnd();
  session_ = model_.session().id;
  firstLine_ = model_.lines().size();
  update();
}

void CaptionFile::settingsChanged() {
  if (!path_.isEmpty() && settings_.captionFile() != path_) end();
  ending_ = settings_.captionFileEnd();
  begin();
  update();
}

void CaptionFile::update() {
  if (path_.isEmpty()) return;
  if (velun::update(session_, model_.session().id)) firstLine_ = 0;
  const CaptionFileWriter::Order order{path_, text().toUtf8()};
  // A failed order is repeated with the next change.
  if (velun::update(last_, order) || error_) writer_.add(order);
}

void CaptionFile::end() {
  if (path_.isEmpty()) return;
  if (ending_ == CaptionFileEnd::empty) writer_.add({path_, QByteArray()});
  if (ending_ == CaptionFileEnd::remove) writer_.add({path_, std::nullopt});
  path_.clear();
  last_.reset();
}

QString CaptionFile::text() const {
  const std::vector<Line>& lines = model_.lines();
  const TranscriptContent content = model_.captionContent();
  const QString& language = model_.settings().targetID();
  QStringList texts;
  for (std::size_t i = lines.size(); i > firstLine_; --i) {
    const Line& line = lines[i - 1];
    const QString text = model_.session().named(line, renderTranscript(line, content, language));
    if (!text.isEmpty()) texts.prepend(text);
    if (texts.size() == settings_.captionFileLines()) break;
  }
  return texts.isEmpty() ? QString() : texts.join(QLatin1Char('\n')) + QLatin1Char('\n');
}

void CaptionFile::written(const std::optional<QString>& error) {
  const auto sentence =
      error
          ? std::optional(L("The caption file isn’t written: %1", "자막 파일을 쓰지 못했습니다: %1")
                              .arg(*error))
          : std::nullopt;
  if (velun::update(error_, sentence)) Q_EMIT errorChanged();
}

}  // namespace velun
