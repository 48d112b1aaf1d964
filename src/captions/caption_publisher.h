// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/caption_feed.h"

#include <cstddef>
#include <QObject>
#include <QUuid>

namespace velun {

class CaptionViewModel;
class SharingSettings;

/// Passes drafts, lines and translations on to other programs while the user offers them. Lines
/// from before the switch are not passed on. Main thread.
class CaptionPublisher final : public QObject {
  Q_OBJECT

 public:
  /// All must outlive the publisher.
  CaptionPublisher(const CaptionViewModel& model, const SharingSettings& settings,
                   CaptionFeed& feed);
  ~CaptionPublisher() override;

 private:
  void switchFeed();
  void publishState();
  void publishLines();
  void publishInserted(std::size_t index);
  void publishTranslation(std::size_t index);
  CaptionFeed::State state() const;

  const CaptionViewModel& model_;
  const SharingSettings& settings_;
  CaptionFeed& feed_;
  bool isOpen_ = false;
  CaptionFeed::State state_ = CaptionFeed::State::stopped;
  QUuid session_;
  /// The lines before this one are not offered.
  std::size_t firstLine_ = 0;
  /// The lines before this one are published or not offered.
  std::size_t nextLine_ = 0;
};

}  // namespace velun
