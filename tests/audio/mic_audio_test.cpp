// SPDX-License-Identifier: GPL-3.0-or-later
#include "audio/mic_audio.h"

#include "support/scripted_input_node.h"
#include "support/suite.h"

using namespace velun;
using test::InputNodeScript;
using test::ScriptedInputNode;

class MicAudioTest final : public test::Suite {
  Q_OBJECT

 private Q_SLOTS:
  void theTapIsInstalledInTheInputsFormatBeforeTheEngineStarts() {
    const auto script = std::make_shared<InputNodeScript>();
    MicAudio mic(std::make_unique<ScriptedInputNode>(script));
    mic.start([](const PcmBuffer&) {});
    QCOMPARE(script->calls, QStringList({"outputFormat", "installTap", "startEngine"}));
    QCOMPARE(script->bufferSize, std::size_t(4096));
    QVERIFY(script->tapFormat == script->format);
  }

  void buffersReachTheHandlerAsTheyAre() {
    const auto script = std::make_shared<InputNodeScript>();
    MicAudio mic(std::make_unique<ScriptedInputNode>(script));
    const PcmBuffer* seen = nullptr;
    mic.start([&seen](const PcmBuffer& buffer) { seen = &buffer; });
    const PcmBuffer buffer(script->format, 4096);
    script->block(buffer);
    QCOMPARE(seen, &buffer);
  }

  void theInputsErrorIsThrownAsItIsAndTheTapStays() {
    const auto script = std::make_shared<InputNodeScript>();
    script->startFailure = "No microphone was found";
    MicAudio mic(std::make_unique<ScriptedInputNode>(script));
    try {
      mic.start([](const PcmBuffer&) {});
      QFAIL("started");
    } catch (const Failure& failure) {
      QCOMPARE(failure.errorDescription(), QString("No microphone was found"));
    }
    QVERIFY(script->block);
    script->calls.clear();
    mic.stop();
    QCOMPARE(script->calls, QStringList({"removeTap", "stopEngine"}));
  }

  void stoppingRemovesTheTapAndThenStopsTheEngine() {
    const auto script = std::make_shared<InputNodeScript>();
    MicAudio mic(std::make_unique<ScriptedInputNode>(script));
    mic.start([](const PcmBuffer&) {});
    script->calls.clear();
    mic.stop();
    QCOMPARE(script->calls, QStringList({"removeTap", "stopEngine"}));
  }

  void stoppingWithoutAStartIsHarmless() {
    const auto script = std::make_shared<InputNodeScript>();
    MicAudio mic(std::make_unique<ScriptedInputNode>(script));
    mic.stop();
    QCOMPARE(script->calls, QStringList({"removeTap", "stopEngine"}));
  }
};

QTEST_GUILESS_MAIN(MicAudioTest)
#include "mic_audio_test.moc"
