// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "audio/speech_recognizing.h"
#include "captions/caption_source.h"
#include "platform/audio/linux/pipewire_audio_platform.h"
#include "platform/foundation/system_clock.h"
#include "platform/models/store/download_store.h"
#include "platform/speech/caption_style.h"
#include "platform/speech/local_speech_platform.h"
#include "platform/translation/local_translation_platform.h"
#include "settings/app_settings.h"

#include <chrono>
#include <memory>

namespace velun {

/// What captions are made with, for the windows and the command line alike. Each member depends on
/// those above it. Main thread.
struct EngineServices {
  /// `preferences` must outlive the services.
  explicit EngineServices(PreferenceStore& preferences);

  SystemClock clock;
  AppSettings settings;
  PipeWireAudioPlatform audio;
  std::shared_ptr<const ModelCatalogue> catalogue;
  DownloadStore models;
  std::shared_ptr<RecognizerPreferences> recognizerPreferences;
  std::shared_ptr<const CaptionStyle> style;
  LocalSpeechPlatform speech;
  LocalTranslationPlatform translation;

  /// Captions what is played and spoken now. A stop waits for the last words no longer than
  /// `finishTimeout`. The services must outlive the engine.
  std::unique_ptr<SpeechRecognizing> makeLiveEngine(std::chrono::milliseconds finishTimeout);

  /// The captions of the recording at `path`, which begins at `start`; not started. Without drafts
  /// they come faster. The services must outlive the source.
  std::unique_ptr<CaptionSource> makeRecordingSource(const QString& path, const QString& localeID,
                                                     Instant start, bool withDrafts);
};

}  // namespace velun
