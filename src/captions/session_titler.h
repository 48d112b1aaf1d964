// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QObject>

namespace velun {

class CaptionViewModel;
class LibrarySettings;

/// Gives the current session its first sentence as title, if the user wants that and has given it
/// none. Main thread.
class SessionTitler final : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive this object.
  SessionTitler(CaptionViewModel& model, const LibrarySettings& settings);

 private:
  void update();

  CaptionViewModel& model_;
  const LibrarySettings& settings_;
};

}  // namespace velun
