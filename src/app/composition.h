// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_services.h"

#include <memory>

namespace velun {

class ApplicationService;
class CaptionViewModel;

/// Everything real that the program runs on, made once and put together: preferences, sound,
/// recognition, translation, the desktop. Main thread.
class Composition final {
 public:
  /// `application` must outlive the composition.
  explicit Composition(ApplicationService& application);
  ~Composition();

  CaptionViewModel& model();
  AppServices services();

 private:
  struct Parts;
  std::unique_ptr<Parts> parts_;
};

}  // namespace velun
