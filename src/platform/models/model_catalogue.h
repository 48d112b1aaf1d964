// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

namespace velun {

/// The models on offer, in order of preference within a kind and language. A value; read once.
class ModelCatalogue {
 public:
  ModelCatalogue() = default;
  explicit ModelCatalogue(std::vector<Model> models) : models_(std::move(models)) {}

  /// The catalogue that the program comes with: every file of data/models.
  static ModelCatalogue builtIn();

  /// Reads one catalogue file (the form is described in data/models/README.md). Throws `Failure`
  /// naming the entry when it is damaged or breaks a rule: a name with a folder in it, an address
  /// that is not HTTPS, a download without size or hash, an id that occurs twice.
  static ModelCatalogue read(const QByteArray& json);

  const std::vector<Model>& models() const { return models_; }

  /// Null when there is none of that id.
  const Model* find(const QString& id) const;

  std::vector<Model> ofKind(ModelKind kind) const;

 private:
  std::vector<Model> models_;
};

}  // namespace velun
