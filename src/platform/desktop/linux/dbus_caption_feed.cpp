// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/desktop/linux/dbus_caption_feed.h"

#include <algorithm>
#include <chrono>

namespace velun {

namespace {

const auto kPath = QStringLiteral("/app/velun/Velun/Captions");

QVariantMap details(const FeedLine& line) {
  QVariantMap details;
  if (line.time) {
    const auto time = std::chrono::floor<std::chrono::milliseconds>(line.time->time_since_epoch());
    details.insert("time", qlonglong(time.count()));
  }
  if (!line.language.isEmpty()) details.insert("language", line.language);
  if (!line.speaker.isEmpty()) details.insert("speaker", line.speaker);
  if (!line.input.isEmpty()) details.insert("input", line.input);
  if (!line.translations.isEmpty()) {
    details.insert("translations", QVariant::fromValue(line.translations));
  }
  return details;
}

}  // namespace

DBusCaptionFeed::DBusCaptionFeed(const QDBusConnection& bus)
    : bus_(bus), adaptor_(new CaptionsAdaptor(this, *this)) {}

void DBusCaptionFeed::open(State state) {
  lines_.clear();
  state_ = state;
  bus_.registerObject(kPath, this, QDBusConnection::ExportAdaptors);
  Q_EMIT adaptor_->StateChanged(stateName());
}

void DBusCaptionFeed::close() {
  bus_.unregisterObject(kPath);
  lines_.clear();
}

void DBusCaptionFeed::setState(State state) {
  state_ = state;
  Q_EMIT adaptor_->StateChanged(stateName());
}

void DBusCaptionFeed::setDraft(const QString& text) {
  Q_EMIT adaptor_->Draft(text);
}

void DBusCaptionFeed::addLine(const FeedLine& line) {
  lines_.push_back(line);
  if (lines_.size() > kMaxLines) lines_.pop_front();
  Q_EMIT adaptor_->Line(line.id, line.text, details(line));
}

void DBusCaptionFeed::addTranslation(const QString& id, const QString& language,
                                     const QString& text) {
  // From the newest, which is nearly always the one.
  const auto line = std::find_if(lines_.rbegin(), lines_.rend(),
                                 [&id](const FeedLine& each) { return each.id == id; });
  if (line != lines_.rend()) line->translations.insert(language, text);
  Q_EMIT adaptor_->Translation(id, language, text);
}

QString DBusCaptionFeed::stateName() const {
  switch (state_) {
    case State::stopped:
      return QStringLiteral("stopped");
    case State::starting:
      return QStringLiteral("starting");
    case State::running:
      return QStringLiteral("running");
    case State::stopping:
      break;
  }
  return QStringLiteral("stopping");
}

QList<DBusCaptionLine> DBusCaptionFeed::lastLines(std::size_t count) const {
  QList<DBusCaptionLine> last;
  const std::size_t first = lines_.size() - std::min(count, lines_.size());
  for (std::size_t i = first; i < lines_.size(); ++i) {
    last.append({lines_[i].id, lines_[i].text, details(lines_[i])});
  }
  return last;
}

}  // namespace velun
