// SPDX-License-Identifier: GPL-3.0-or-later
#include "captions/recording_queue.h"

#include "captions/missing_models.h"
#include "captions/recording_progress.h"
#include "language/localization.h"
#include "platform/foundation/failure.h"

#include <algorithm>
#include <QFileInfo>
#include <utility>

namespace velun {

RecordingQueue::RecordingQueue(const AppSettings& settings, SessionStore store,
                               MakeSource makeSource, TranslationPlatform& translation,
                               const Clock& clock)
    : settings_(settings),
      store_(std::move(store)),
      makeSource_(std::move(makeSource)),
      translation_(translation),
      clock_(clock) {}

RecordingQueue::~RecordingQueue() = default;

std::size_t RecordingQueue::unfinishedCount() const {
  const auto count = std::ranges::count_if(items_, [](const Item& item) {
    return item.state == State::waiting || item.state == State::running;
  });
  return static_cast<std::size_t>(count);
}

const RecordingQueue::Item* RecordingQueue::item(int id) const {
  const auto found = std::ranges::find(items_, id, &Item::id);
  return found == items_.end() ? nullptr : &*found;
}

RecordingQueue::Item* RecordingQueue::find(int id) {
  const auto found = std::ranges::find(items_, id, &Item::id);
  return found == items_.end() ? nullptr : &*found;
}

bool RecordingQueue::hasUnsavedCaptions(int id) const {
  if (id == runningID_) return captions_ && !captions_->session().lines.empty();
  return std::ranges::any_of(unwritten_, [id](const auto& entry) { return entry.first == id; });
}

void RecordingQueue::add(const QStringList& paths) {
  for (const QString& path : paths) items_.push_back({.id = ++lastID_, .path = path});
  next();
  Q_EMIT changed();
}

void RecordingQueue::remove(int id) {
  if (id == runningID_) {
    captions_.reset();
    runningID_ = 0;
  }
  std::erase_if(items_, [id](const Item& item) { return item.id == id; });
  std::erase_if(unwritten_, [id](const auto& entry) { return entry.first == id; });
  next();
  Q_EMIT changed();
}

void RecordingQueue::retry(int id) {
  Item* item = find(id);
  if (!item || !item->canBeRetried()) return;
  const auto unwritten = std::ranges::find(unwritten_, id, &std::pair<int, CaptionSession>::first);
  if (unwritten != unwritten_.end()) {
    const CaptionSession session = std::move(unwritten->second);
    unwritten_.erase(unwritten);
    save(*item, session);
  } else {
    *item = {.id = item->id, .path = item->path};
    next();
  }
  Q_EMIT changed();
}

void RecordingQueue::saveProgress() {
  const auto trySaving = [this](const CaptionSession& session) {
    try {
      store_.save(session);
    } catch (const std::exception&) {
      // Nobody is left who could be asked where else to save it.
    }
  };
  if (captions_ && !captions_->session().lines.empty()) {
    CaptionSession session = captions_->session();
    session.endedAt = session.startedAt + durationOf(captions_->position());
    trySaving(session);
  }
  for (const auto& [id, session] : unwritten_) trySaving(session);
}

void RecordingQueue::next() {
  if (runningID_ != 0) return;
  const auto waiting = std::ranges::find(items_, State::waiting, &Item::state);
  if (waiting == items_.end()) return;
  waiting->state = State::running;
  runningID_ = waiting->id;
  CaptionSession session;
  session.startedAt = clock_.now();
  session.title = QFileInfo(waiting->path).completeBaseName();
  const QString localeID = settings_.localeID();
  const QString target = targetOf(*waiting, localeID);
  auto source = makeSource_(waiting->path, localeID, session.startedAt);
  startedAt_ = clock_.monotonicSeconds();
  captions_ = std::make_unique<RecordingCaptions>(std::move(session), std::move(source), localeID,
                                                  target, translation_, clock_);
  connect(captions_.get(), &RecordingCaptions::advanced, this, &RecordingQueue::advanced);
  // Queued: the captions are destroyed then.
  connect(captions_.get(), &RecordingCaptions::finished, this, &RecordingQueue::finished,
          Qt::QueuedConnection);
  captions_->start();
}

QString RecordingQueue::targetOf(Item& item, const QString& localeID) const {
  const QString target = settings_.targetID();
  if (!settings_.translate() || CaptionTranslator::hasSameLanguage(localeID, target)) return {};
  // Nothing is downloaded unasked.
  const auto missing = missingTranslation(translation_, localeID, target);
  item.remark = missing.value_or(QString());
  return missing ? QString() : target;
}

void RecordingQueue::advanced() {
  Item* item = running();
  if (!item) return;
  const double position = captions_->position();
  const std::optional<double> duration = captions_->duration();
  const QString text =
      recordingProgress(position, duration, clock_.monotonicSeconds() - startedAt_);
  if (text == item->progress) return;
  item->progress = text;
  if (duration && *duration > 0) item->fraction = std::clamp(position / *duration, 0.0, 1.0);
  Q_EMIT changed();
}

void RecordingQueue::finished(const std::optional<QString>& error) {
  // A recording that was removed meanwhile leaves its signal in the queue.
  if (!captions_ || sender() != captions_.get()) return;
  const CaptionSession session = captions_->session();
  const std::optional<QString> translationError = captions_->translationError();
  captions_.release()->deleteLater();
  Item* item = find(std::exchange(runningID_, 0));
  if (translationError) item->remark = *translationError;
  if (!session.lines.empty()) {
    save(*item, session);
    if (error && item->state == State::done) item->error = *error;
  } else {
    item->state = State::failed;
    item->error =
        error ? *error
              : L("No words were recognized. Check that the recognition language is the one that "
                  "is spoken.",
                  "인식된 말이 없습니다. 인식 언어가 녹음의 언어와 같은지 확인하세요.");
  }
  next();
  Q_EMIT changed();
}

void RecordingQueue::save(Item& item, const CaptionSession& session) {
  try {
    item.session = store_.save(session);
    item.state = State::done;
    item.error.clear();
    Q_EMIT sessionSaved(item.session);
  } catch (const std::exception& failure) {
    item.state = State::failed;
    item.error = L("The captions couldn’t be saved: %1 They are kept until Velun quits; try again "
                   "once that is solved.",
                   "자막을 저장하지 못했습니다: %1 Velun을 종료할 때까지 자막을 보관하니, 문제를 "
                   "해결한 뒤 다시 시도하세요.")
                     .arg(descriptionOf(failure));
    unwritten_.emplace_back(item.id, session);
  }
}

}  // namespace velun
