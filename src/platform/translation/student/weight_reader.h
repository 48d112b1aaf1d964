// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "platform/translation/student/linear.h"
#include "platform/translation/student/student_model_file.h"

#include <memory>
#include <string>
#include <vector>

namespace velun {

/// Makes the parts of a network from the arrays of a model file and checks their sizes. The file
/// must outlive 8-bit parts. Every function throws `ModelFormatError`.
class WeightReader {
 public:
  explicit WeightReader(const StudentModelFile& file) : file_(file) {}

  /// A row of `size` floats.
  std::vector<float> row(const std::string& name, int size) const;

  /// The product with the matrix `name`; `bias` may be empty for none.
  std::unique_ptr<Linear> linear(const std::string& name, const std::string& bias, int inputs,
                                 int outputs) const;

  /// The product with an embedding table, with one output for each token.
  std::unique_ptr<Linear> outputLayer(const std::string& table, const std::string& bias,
                                      int width) const;

 private:
  std::unique_ptr<Linear> integerLinear(const std::string& name, const ModelItem& item, int inputs,
                                        int outputs, std::vector<float> bias) const;

  const StudentModelFile& file_;
};

}  // namespace velun
