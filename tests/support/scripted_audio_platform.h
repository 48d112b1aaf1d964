// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/audio/audio_platform.h"
#include "platform/foundation/failure.h"
#include "platform/foundation/one_shot.h"

#include <memory>
#include <optional>
#include <QPointer>
#include <QStringList>
#include <variant>

namespace velun::test {

/// How scripted sources behave, and what was done with them.
struct AudioScript {
  /// The text of the failure that a start ends with.
  std::optional<QString> startFailure;
  /// Whether a start waits for `started`, or for a stop.
  bool isSlow = false;
  OneShot<std::monostate> started;

  /// "start output", "start input", with the id of a chosen device, and "stop", in order.
  QStringList calls;
  AudioSource::Handler handler;
};

class ScriptedAudioSource final : public AudioSource {
 public:
  ScriptedAudioSource(const AudioTarget& target, std::shared_ptr<AudioScript> script)
      : target_(target), script_(std::move(script)) {}
  ~ScriptedAudioSource() override {
    if (isStarted_) stop();
  }

  QCoro::Task<> start(Handler handler) override {
    const bool isOutput = target_.kind == AudioTarget::Kind::output;
    QString call = isOutput ? "start output" : "start input";
    if (!target_.id.isEmpty()) call += ' ' + target_.id;
    script_->calls << call;
    isStarted_ = true;
    if (script_->startFailure) throw Failure(*script_->startFailure);
    script_->handler = std::move(handler);
    const OneShot<std::monostate> started = script_->started;
    if (script_->isSlow) co_await started;
  }
  void stop() override {
    isStarted_ = false;
    script_->calls << "stop";
    script_->handler = nullptr;
    if (script_->isSlow) script_->started.fail(std::make_exception_ptr(Cancelled()));
  }

 private:
  AudioTarget target_;
  std::shared_ptr<AudioScript> script_;
  bool isStarted_ = false;
};

/// A list of devices that the test sets.
class ScriptedAudioTargets final : public AudioTargets {
 public:
  std::vector<AudioTarget> list() const override { return targets_; }
  void set(std::vector<AudioTarget> targets) {
    targets_ = std::move(targets);
    Q_EMIT changed();
  }

 private:
  std::vector<AudioTarget> targets_;
};

/// An audio platform whose sources follow a script.
class ScriptedAudioPlatform final : public AudioPlatform {
 public:
  std::unique_ptr<AudioTargets> followTargets() override {
    auto made = std::make_unique<ScriptedAudioTargets>();
    if (onFollow) onFollow(*made);
    return made;
  }
  std::unique_ptr<AudioSource> makeSource(const AudioTarget& target) override {
    auto made = std::make_unique<ScriptedAudioSource>(target, script);
    source = made.get();
    return made;
  }

  /// Called with every new list.
  std::function<void(ScriptedAudioTargets&)> onFollow;
  std::shared_ptr<AudioScript> script = std::make_shared<AudioScript>();
  /// The last source made, while it exists.
  QPointer<AudioSource> source;
};

}  // namespace velun::test
