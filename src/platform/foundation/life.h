// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <memory>

namespace velun {

/// Lets callbacks and suspended coroutines ask whether their owner is still there. Declared as the
/// owner's last member it ends first, so that nothing that the other members do while they are
/// destroyed reaches the owner. (`QPointer` only turns null after all members are gone.)
template <class Owner>
class Life {
 public:
  explicit Life(Owner* owner) : token_(owner, [](Owner*) {}) {}
  Life(const Life&) = delete;
  Life& operator=(const Life&) = delete;

  /// Gives the owner as long as it lives. It keeps nothing alive: use what `lock` gives at once,
  /// and lock again after every suspension.
  std::weak_ptr<Owner> weak() const { return token_; }

 private:
  std::shared_ptr<Owner> token_;
};

}  // namespace velun
