// SPDX-License-Identifier: GPL-3.0-or-later
// What holds after every step of a `ModelChecker`.
#include "captions/model_checker.h"
#include "model/session_file/session_file.h"

namespace velun::test {

void ModelChecker::check() {
  checkEngine();
  checkLines();
  checkDerived();
  checkSaving();
}

void ModelChecker::checkEngine() {
  if (fixture_.engine->overlaps > 0) fail("engine operations overlapped");
  if (fixture_.engine->isBusy() && !fixture_.model->isTransitioning()) {
    fail("an operation is running outside a transition");
  }
  const bool isDownloading = fixture_.model->isRunning() && fixture_.engine->isDownloading;
  if (fixture_.model->isSwitching() != (fixture_.model->isTransitioning() && !isDownloading)) {
    fail("a download and a switch are mixed up");
  }
}

void ModelChecker::checkLines() {
  if (fixture_.model->session().id != sessionID_) return fail("the session was replaced");
  if (fixture_.texts() != expectedTexts_) {
    return fail("the lines are " + fixture_.texts().join(" ") + "\nand not " +
                expectedTexts_.join(" "));
  }
  for (const Line& line : fixture_.model->lines()) {
    for (const auto& [language, text] : line.translations) {
      if (text == translationOf(line.text, language)) continue;
      fail("the line " + line.text + " holds the translation " + text + " under " + language);
    }
  }
}

void ModelChecker::checkDerived() {
  const CaptionViewModel& model = *fixture_.model;
  const TranscriptContent content = model.captionContent();
  const QString& target = fixture_.settings.targetID();

  QString text = model.session().transcript(content, target);
  if (content != TranscriptContent::translation && !model.volatileText().isEmpty()) {
    text += (text.isEmpty() ? QString() : QStringLiteral("\n\n")) + model.volatileText();
  }
  if (model.captionText() != text) fail("the caption text is not the transcript");

  QSet<QUuid> pending;
  if (content == TranscriptContent::translation && !model.translationStatus()) {
    for (const Line& line : model.lines()) {
      if (line.sourceLanguage == fixture_.settings.localeID() &&
          line.translatedTexts(target).empty()) {
        pending.insert(line.id);
      }
    }
  }
  if (model.pendingTranslationIDs() != pending) fail("the wrong lines are pending");
}

void ModelChecker::checkSaving() {
  const CaptionViewModel& model = *fixture_.model;
  if (model.isSavingSession() != expectsSaving_) return fail("the saving mode is wrong");
  if (!expectsSaving_ || model.lines().empty() || model.saveError() || isBroken_) return;
  if (!model.savedURL()) return fail("a session in saving mode has no file");
  CaptionSession expected = model.session();
  if (writtenEnd_) expected.endedAt = writtenEnd_;
  QFile file(model.savedURL()->toLocalFile());
  if (!file.open(QIODevice::ReadOnly)) return fail("the session's file is missing");
  if (file.readAll() != encodeSession(expected)) fail("the file is not the session");
  ++counts_.comparedFiles;
}

/// Once no events are pending, a transition lasts only while an operation is running.
void ModelChecker::checkSettled() {
  if (fixture_.engine->isBusy()) return;
  if (fixture_.model->isTransitioning()) return fail("a transition does not end");
  if (fixture_.model->isRunning() != fixture_.engine->isStarted) {
    return fail("the engine and the model disagree");
  }
}

void ModelChecker::checkTranslatorsClosed() {
  for (const auto& script : fixture_.translation.scripts) {
    if (script->isOpen) fail("a translator is kept that nobody uses");
  }
}

}  // namespace velun::test
