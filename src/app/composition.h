// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "app/app_services.h"

#include <memory>

namespace velun {

class ApplicationService;
class CaptionViewModel;

/// Creates and connects the real services of the program: preferences, sound, recognition,
/// translation, the desktop. Main thread.
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
