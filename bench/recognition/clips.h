// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "recognition/wav_file.h"

#include <QString>
#include <vector>

namespace velun::bench {

/// A sound and the words spoken in it.
struct Clip {
  QString name;
  QString text;
  Sound sound;
};

/// The clips of a folder, WAV files that are listed in its file `transcription`, one
/// "words (clip-name)" per line.
std::vector<Clip> readClips(const QString& folder);

/// Sentences of our own in synthetic voices, made in `folder`; with `noise`, pink noise 23 dB below
/// the voice is added.
std::vector<Clip> synthesise(const QString& folder, bool noise);

/// About two minutes of noises and music-like sounds without any speech, made in `folder`.
std::vector<Clip> soundsWithoutSpeech(const QString& folder);

/// Where speech begins and ends in a sound, in seconds.
struct SpeechSpan {
  double begin = 0;
  double end = 0;
};
SpeechSpan speechIn(const Sound& sound);

}  // namespace velun::bench
