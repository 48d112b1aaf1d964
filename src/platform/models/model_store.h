// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

#include <QCoroTask>
#include <QObject>
#include <stop_token>

namespace velun {

/// The models on this computer: one folder each, of which nothing is used before every file in it
/// was verified. Main thread.
class ModelStore : public QObject {
  Q_OBJECT

 public:
  /// Whether every file of the model is in place, verified, and unchanged since. Reads no more than
  /// file dates: may be asked at any time.
  virtual bool isInstalled(const Model& model) const = 0;

  /// Where the model's files are, or would be.
  virtual QString folder(const Model& model) const = 0;

  /// Returns when the model is ready to use; at once when it is. Takes what was put into its folder
  /// by hand, goes on with a download that was broken off, and waits for another download of the
  /// same model. Throws `Failure` with a text that says what to do, or `Cancelled` soon after a
  /// stop was requested.
  virtual QCoro::Task<> install(Model model, std::stop_token stop) = 0;

  /// Installs when there is time for it: not over a metered connection, and at most one try a day
  /// when it fails. Failures are not reported. Ends with the store.
  virtual void installQuietly(const Model& model) = 0;

  /// The ids of the models that `install` or `installQuietly` is busy with.
  virtual QStringList busy() const = 0;

 Q_SIGNALS:
  void busyChanged();
};

}  // namespace velun
