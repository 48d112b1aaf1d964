// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <QCoroTask>
#include <QObject>
#include <stop_token>

namespace velun {

/// The models on this computer, one folder each. A model is used only after all of its files have
/// been verified. Main thread.
class ModelStore : public QObject {
  Q_OBJECT

 public:
  /// Whether every file of the model is there, verified, and unchanged since. Cheap: compares sizes
  /// and modification times only.
  virtual bool isInstalled(const Model& model) const = 0;

  /// The folder of the model, which may not exist.
  virtual QString folder(const Model& model) const = 0;

  /// Completes when the model is installed; at once if it is already. Uses files that the user has
  /// put into its folder, resumes an interrupted download, and waits for another download of the
  /// same model. Throws `Failure`, or `Cancelled` without delay after a stop request; the download
  /// may take a moment longer to end.
  virtual QCoro::Task<> install(Model model, std::stop_token stop) = 0;

  /// Installs in the background: not over a metered connection, and not within a day of a failed
  /// attempt. Failures are not reported. Destroying the store stops it.
  virtual void installQuietly(const Model& model) = 0;

  /// The ids of the models that are being installed.
  virtual QStringList busy() const = 0;

 Q_SIGNALS:
  void busyChanged();
};

}  // namespace velun
