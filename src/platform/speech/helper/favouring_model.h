// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/foundation/file_descriptor.h"

#include <memory>
#include <QString>
#include <QTemporaryDir>

namespace velun {

/// A libvosk model whose language model favours the user's words: a temporary folder with links to
/// the files of the original and to the changed language model, which is only in memory, so that
/// it does not stay behind when the process ends.
class FavouringModel {
 public:
  /// `model` is the folder of the original and must stay. Null if it has no language model of the
  /// kind that can be changed. Throws `std::runtime_error`.
  static std::unique_ptr<FavouringModel> make(const QString& model, const QString& userWords);

  QString folder() const { return folder_.path(); }

 private:
  FavouringModel(const QString& model, const QByteArray& languageModel);

  QTemporaryDir folder_;
  FileDescriptor languageModel_;
};

}  // namespace velun
