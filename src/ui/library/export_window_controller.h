// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/common/file_panels.h"

#include <memory>
#include <QObject>
#include <QWidget>

namespace velun {

/// Shows the export window for one session at a time and writes the file. Main thread.
class ExportWindowController final : public QObject {
  Q_OBJECT

 public:
  explicit ExportWindowController(FilePanels panels, QObject* parent = nullptr);
  ~ExportWindowController() override;

  /// Opens the window for a session; one that is open is closed first.
  void show(const CaptionSession& session);

  /// Asks where, renders and writes. A failure is shown to the user.
  void exportSession(const CaptionSession& session, SessionFormat format, TranscriptContent content,
                     const std::optional<QString>& language);

  /// Sets the title of an open window anew, in the interface language.
  void updateTitle();

  /// The open window; null when there is none.
  QWidget* window() const { return window_.get(); }

 private:
  void close();

  FilePanels panels_;
  std::unique_ptr<QWidget> window_;
};

}  // namespace velun
