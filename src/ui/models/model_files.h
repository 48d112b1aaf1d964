// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstdint>
#include <optional>
#include <QObject>
#include <QString>

namespace velun {

/// The disk space of all models, and models that users add from files. Texts are in the interface
/// language. Main thread.
class ModelFiles : public QObject {
  Q_OBJECT

 public:
  /// The bytes on the disk of all models.
  virtual std::int64_t diskBytes() const = 0;

  /// Lets the user choose a file and adds it to the models.
  virtual void addFromFile() = 0;
  /// Stops adding.
  virtual void cancelAdding() = 0;

  /// How much of the chosen file has been read, 0…1; nullopt when none is being added.
  virtual std::optional<double> progress() const = 0;
  /// What became of the last file; empty before the first.
  virtual QString outcome() const = 0;

 Q_SIGNALS:
  void changed();
};

}  // namespace velun
