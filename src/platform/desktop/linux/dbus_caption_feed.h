// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/desktop/caption_feed.h"
#include "platform/desktop/linux/captions_adaptor.h"

#include <deque>
#include <QDBusConnection>
#include <QObject>

namespace velun {

/// Captions on the session bus, at the object path /app/velun/Velun/Captions. While the feed is
/// closed there is no such object, and nothing is sent.
class DBusCaptionFeed final : public QObject, public CaptionFeed {
  Q_OBJECT

 public:
  /// How many lines other programs can ask for.
  static constexpr std::size_t kMaxLines = 100;

  explicit DBusCaptionFeed(const QDBusConnection& bus = QDBusConnection::sessionBus());

  void open(State state) override;
  void close() override;
  void setState(State state) override;
  void setDraft(const QString& text) override;
  void addLine(const FeedLine& line) override;
  void addTranslation(const QString& id, const QString& language, const QString& text) override;
  void clear() override { lines_.clear(); }

  /// "stopped", "starting", "running" or "stopping".
  QString stateName() const;
  QList<DBusCaptionLine> lastLines(std::size_t count) const;

 private:
  QDBusConnection bus_;
  CaptionsAdaptor* adaptor_;
  State state_ = State::stopped;
  std::deque<FeedLine> lines_;
};

}  // namespace velun
