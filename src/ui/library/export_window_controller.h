// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "model/caption_session.h"
#include "ui/common/file_panels.h"

#include <functional>
#include <memory>
#include <QObject>
#include <QWidget>

namespace velun {

/// Shows the export window for one session at a time and writes the file. Main thread.
class ExportWindowController final : public QObject {
  Q_OBJECT

 public:
  /// `windowMade` is called with every window before it is first shown.
  ExportWindowController(FilePanels panels, std::function<void(QWidget*)> windowMade);
  ~ExportWindowController() override;

  /// Opens the window for a session; an open window is closed first.
  /// `selected` are the lines that may be exported alone.
  void show(const CaptionSession& session, std::optional<LineRange> selected = {});

  /// Asks for a file, renders the session and writes it. Shows a failure to the user.
  void exportSession(const CaptionSession& session, const ExportOptions& options);

  /// Updates the title of an open window to the interface language.
  void updateTitle();

 private:
  void close();

  FilePanels panels_;
  std::function<void(QWidget*)> windowMade_;
  std::unique_ptr<QWidget> window_;
};

}  // namespace velun
