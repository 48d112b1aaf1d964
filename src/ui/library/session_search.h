// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/listing/folded_text.h"
#include "model/listing/listed_session.h"
#include "platform/foundation/latest_job.h"

#include <QHash>
#include <QObject>
#include <QString>

namespace velun {

/// Searches sessions by their title and whole transcript with all translations. The signatures say
/// at once which sessions may match; the files of these are then read on other threads. Main
/// thread.
class SessionSearch final : public QObject {
  Q_OBJECT

 public:
  using QObject::QObject;

  /// Sets the sessions to search.
  void setSessions(const SavedSessions& sessions);

  /// The sessions that contain `text`, in their order; all of them for an empty text. A few that
  /// do not contain it may be among them until their files are read: `ready` follows then, and the
  /// next call leaves them out.
  SavedSessions matches(const QString& text);

  /// Whether files are being read.
  bool isReading() const { return reading_.isRunning(); }

  /// Stops reading until the next search.
  void forget();

 Q_SIGNALS:
  void ready();

 private:
  /// Whether a session contains the searched text, as its file says.
  using Findings = QHash<const ListedSession*, bool>;

  void search(const QString& folded);
  void startReading(const SavedSessions& sessions);

  SavedSessions sessions_;
  /// The searched text, folded.
  QString folded_;
  Findings findings_;
  LatestJob reading_;
};

}  // namespace velun
