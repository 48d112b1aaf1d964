// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/recording_captions.h"
#include "model/session_store.h"
#include "settings/app_settings.h"

#include <functional>
#include <memory>
#include <optional>
#include <QObject>
#include <QStringList>
#include <QUrl>
#include <vector>

namespace velun {

/// Recordings that are captioned one after another with the languages of the settings; each becomes
/// a session in the folder of the saved sessions. Main thread.
class RecordingQueue final : public QObject {
  Q_OBJECT

 public:
  enum class State { waiting, running, done, failed };

  struct Item {
    int id = 0;
    QString path;
    State state = State::waiting;
    /// While it runs, see `recordingProgress`.
    QString progress = {};
    /// From 0 to 1; nullopt if the recording does not tell its length.
    std::optional<double> fraction = {};
    /// What failed and what to do, localized. Also of a recording that is done, but only up to
    /// where it failed.
    QString error = {};
    /// Why lines have no translation and what to do, localized; empty if they have one, or need
    /// none.
    QString remark = {};
    /// The session's file, once it is done.
    QUrl session = {};

    bool canBeRetried() const {
      return state == State::failed ||
             (state == State::done && !(error.isEmpty() && remark.isEmpty()));
    }
  };

  /// Makes the source of a recording, not started: its path, the locale and the session's start.
  using MakeSource =
      std::function<std::unique_ptr<CaptionSource>(const QString&, const QString&, Instant)>;

  /// All references must outlive the queue.
  RecordingQueue(const AppSettings& settings, SessionStore store, MakeSource makeSource,
                 TranslationPlatform& translation, const Clock& clock);
  ~RecordingQueue() override;

  const std::vector<Item>& items() const { return items_; }
  /// Null if it was removed. Valid until the queue changes.
  const Item* item(int id) const;
  /// How many recordings wait or run.
  std::size_t unfinishedCount() const;
  /// How many recordings have captions that could not be saved.
  std::size_t unsavedCount() const { return unwritten_.size(); }

  /// Whether an item has captions that are in no file yet, so that removing it loses them.
  bool hasUnsavedCaptions(int id) const;

  void add(const QStringList& paths);
  /// Ends the work on an item and removes it; nothing of it is kept but a session that is done.
  void remove(int id);
  /// Captions an item again that failed or is incomplete; one whose session could not be written is
  /// only written again.
  void retry(int id);
  /// Saves what is captioned so far of the recording that runs, which goes on, and tries once more
  /// to save what could not be saved. For the end of the program; failures are ignored.
  void saveProgress();

 Q_SIGNALS:
  /// Items were added, removed or have changed.
  void changed();
  void sessionSaved(const QUrl& file);

 private:
  Item* find(int id);
  Item* running() { return find(runningID_); }
  void next();
  /// The language to translate the item into; empty: none.
  QString targetOf(Item& item, const QString& localeID) const;
  void advanced();
  void finished(const std::optional<QString>& error);
  void save(Item& item, const CaptionSession& session);

  const AppSettings& settings_;
  SessionStore store_;
  MakeSource makeSource_;
  TranslationPlatform& translation_;
  const Clock& clock_;
  std::vector<Item> items_;
  /// Sessions that could not be written, by item.
  std::vector<std::pair<int, CaptionSession>> unwritten_;
  int lastID_ = 0;
  int runningID_ = 0;
  double startedAt_ = 0;
  std::unique_ptr<RecordingCaptions> captions_;
};

}  // namespace velun
