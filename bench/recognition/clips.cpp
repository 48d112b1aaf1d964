// SPDX-License-Identifier: GPL-3.0-or-later
#include "recognition/clips.h"

#include <algorithm>
#include <cmath>
#include <QFile>
#include <QProcess>
#include <QRegularExpression>
#include <stdexcept>

namespace velun::bench {

namespace {

const QStringList kSentences = {
    "good morning and welcome to the first lesson of the year",
    "today we will talk about the river and the people who live beside it",
    "in the spring the water is high and the fields are green",
    "every summer the children of the village swim near the old bridge",
    "please open the window because it is very warm in this room",
    "the train to the city leaves at eight o'clock in the morning",
    "she told me that the meeting was very long but also very useful",
    "we have to finish this work before the end of the month",
    "the doctor asked whether the children had slept well all through the long storm last night",
    "thank you for your time and see you again next week",
};

const QStringList kVoices = {"slt", "rms", "awb", "kal16"};

void run(const QString& program, const QStringList& arguments) {
  if (QProcess::execute(program, arguments) != 0) {
    throw std::runtime_error(qPrintable(program + QStringLiteral(" failed")));
  }
}

void sox(const QString& path, const QString& effects) {
  run("sox",
      QStringList({"-n", "-R", "-r", "16000", "-c", "1", "-b", "16", path}) + effects.split(u' '));
}

double rms(const Sound& sound) {
  double sum = 0;
  for (const float sample : sound.samples) sum += double(sample) * sample;
  return std::sqrt(sum / static_cast<double>(sound.samples.size()));
}

void addNoise(Sound& sound, const Sound& noise) {
  const double gain = rms(sound) / rms(noise) * std::pow(10.0, -23.0 / 20.0);
  for (std::size_t i = 0; i < sound.samples.size(); ++i) {
    const float added = noise.samples[i % noise.samples.size()] * static_cast<float>(gain);
    sound.samples[i] = std::clamp(sound.samples[i] + added, -1.0F, 1.0F);
  }
}

}  // namespace

std::vector<Clip> readClips(const QString& folder) {
  QFile file(folder + "/transcription");
  if (!file.open(QFile::ReadOnly)) throw std::runtime_error(qPrintable(file.fileName()));
  static const QRegularExpression line("^(?:<s> )?(.*?)(?: </s>)? \\(([^()]+)\\)$");
  std::vector<Clip> clips;
  for (const QString& each : QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts)) {
    const auto match = line.match(each.trimmed());
    if (!match.hasMatch()) continue;
    const QString name = match.captured(2);
    clips.push_back({name, match.captured(1), readWav(folder + u'/' + name + ".wav")});
  }
  return clips;
}

std::vector<Clip> synthesise(const QString& folder, bool noise) {
  Sound pink;
  if (noise) {
    sox(folder + "/pink.wav", "synth 10 pinknoise gain -10");
    pink = readWav(folder + "/pink.wav");
  }
  std::vector<Clip> clips;
  for (const QString& voice : kVoices) {
    for (const QString& text : kSentences) {
      const QString name = QStringLiteral("%1-%2").arg(voice).arg(clips.size());
      const QString path = folder + u'/' + name + ".wav";
      run("flite", {"-voice", voice, "-t", text, "-o", path});
      clips.push_back({name, text, readWav(path)});
      if (noise) addNoise(clips.back().sound, pink);
    }
  }
  return clips;
}

std::vector<Clip> soundsWithoutSpeech(const QString& folder) {
  const std::vector<std::pair<QString, QString>> sounds = {
      {"silence", "trim 0 15"},
      {"white", "synth 15 whitenoise gain -20"},
      {"pink", "synth 15 pinknoise gain -15"},
      {"brown-modulated", "synth 15 brownnoise synth 15 sine amod 3 gain -12"},
      {"chord", "synth 15 sine 262 sine 330 sine 392 remix - gain -15"},
      {"plucked", "synth 1 pluck 220 repeat 14 gain -12"},
      {"melody", "synth 0.4 triangle 330 synth 0.4 triangle fmod 440 repeat 37 gain -14"},
      {"sweep", "synth 15 sine 100:3000 gain -15"},
  };
  std::vector<Clip> clips;
  for (const auto& [name, effects] : sounds) {
    const QString path = folder + u'/' + name + ".wav";
    sox(path, effects);
    clips.push_back({name, QString(), readWav(path)});
  }
  return clips;
}

SpeechSpan speechIn(const Sound& sound) {
  constexpr double kFrame = 0.02;
  constexpr float kQuiet = 0.02F;  // of the peak
  const auto step = static_cast<std::size_t>(sound.sampleRate * kFrame);
  std::vector<float> levels;
  for (std::size_t i = 0; i < sound.samples.size(); i += step) {
    float level = 0;
    for (std::size_t j = i; j < std::min(i + step, sound.samples.size()); ++j) {
      level = std::max(level, std::abs(sound.samples[j]));
    }
    levels.push_back(level);
  }
  const float loud = *std::max_element(levels.begin(), levels.end()) * kQuiet;
  const auto isLoud = [loud](float level) {
    return level > loud;
  };
  const auto first = std::find_if(levels.begin(), levels.end(), isLoud);
  const auto last = std::find_if(levels.rbegin(), levels.rend(), isLoud);
  return {static_cast<double>(first - levels.begin()) * kFrame,
          static_cast<double>(levels.rend() - last) * kFrame};
}

}  // namespace velun::bench
