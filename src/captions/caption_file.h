// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "captions/caption_file_writer.h"
#include "settings/sharing_settings.h"

#include <cstddef>
#include <optional>
#include <QObject>
#include <QString>
#include <QUuid>

namespace velun {

class CaptionViewModel;

/// Keeps the last lines of the running captions in the file that the user has chosen, for programs
/// that show a text file in a video stream. Texts are those that the panel shows; a line whose
/// translation is shown appears once it is translated. Main thread.
class CaptionFile final : public QObject {
  Q_OBJECT

 public:
  /// Both must outlive this object.
  CaptionFile(const CaptionViewModel& model, const SharingSettings& settings);
  /// As a stop of captions: the file is emptied or removed if the user wants it.
  ~CaptionFile() override;

  /// Why the file could not be written last, localized; nullopt if it was written.
  const std::optional<QString>& error() const { return error_; }

 Q_SIGNALS:
  /// Emitted once for a row of failures with the same text, and when they have ended.
  void errorChanged();

 private:
  void begin();
  void settingsChanged();
  void update();
  void end();
  QString text() const;
  void written(const std::optional<QString>& error);

  const CaptionViewModel& model_;
  const SharingSettings& settings_;
  /// The file that is kept; empty outside captions.
  QString path_;
  /// What happens to it at the end.
  CaptionFileEnd ending_ = CaptionFileEnd::empty;
  QUuid session_;
  /// The first line of this run of captions.
  std::size_t firstLine_ = 0;
  std::optional<QString> error_;
  /// What the file shall be at the moment.
  std::optional<CaptionFileWriter::Order> last_;
  CaptionFileWriter writer_;
};

}  // namespace velun
