// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/models/model.h"

namespace velun {

/// The available models, in order of preference within a kind and language.
class ModelCatalogue {
 public:
  ModelCatalogue() = default;
  explicit ModelCatalogue(std::vector<Model> models) : models_(std::move(models)) {}

  /// The catalogue that is compiled in: every file of data/models. The models of the file that the
  /// environment variable VELUN_MODEL_CATALOGUE names come before them; a warning is logged if that
  /// file cannot be read. Takes some milliseconds: the program calls it once.
  static ModelCatalogue builtIn();

  /// Reads a catalogue file (format: data/models/README.md). Throws `Failure` that names the entry
  /// if it is damaged or not allowed: a file name with a folder, an address that is not HTTPS, a
  /// download without size or hash, a duplicate id.
  static ModelCatalogue read(const QByteArray& json);

  const std::vector<Model>& models() const { return models_; }

  /// Null if there is no model with this id.
  const Model* find(const QString& id) const;

  /// The punctuation model for a recognition model that writes none; null if it needs none or there
  /// is none for the language.
  const Model* punctuationFor(const Model& model, const QString& language) const;

  std::vector<Model> ofKind(ModelKind kind) const;

 private:
  std::vector<Model> models_;
};

}  // namespace velun
