// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/speech/helper/recognizer_settings.h"

#include <memory>
#include <mutex>
#include <vector>

namespace velun {

/// Models in memory, loaded once for all streams that use the same settings at the same time. Any
/// thread.
template <class Model>
class SharedModel {
 public:
  /// The model of the settings that a stream is using already; otherwise the one that `load`
  /// returns. Waits while another stream is loading. Throws what `load` throws.
  template <class Load>
  std::shared_ptr<Model> get(const RecognizerSettings& settings, const Load& load) {
    const std::lock_guard lock(mutex_);
    std::erase_if(loaded_, [](const Loaded& each) { return each.model.expired(); });
    for (const Loaded& each : loaded_) {
      if (each.settings != settings) continue;
      if (std::shared_ptr<Model> model = each.model.lock()) return model;
    }
    std::shared_ptr<Model> model = load();
    loaded_.push_back({settings, model});
    return model;
  }

 private:
  struct Loaded {
    RecognizerSettings settings;
    std::weak_ptr<Model> model;
  };

  std::mutex mutex_;
  std::vector<Loaded> loaded_;  ///< guarded by mutex_
};

}  // namespace velun
