// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/weight_reader.h"

#include "platform/translation/student/float_linear.h"
#include "platform/translation/student/integer_linear.h"
#include "platform/translation/student/model_format_error.h"

#include <cmath>
#include <cstring>

namespace velun {

namespace {

std::vector<float> readFloats(const ModelItem& item) {
  std::vector<float> values(item.elements());
  std::memcpy(values.data(), item.data.data(), values.size() * sizeof(float));
  return values;
}

void require(bool fits, const std::string& name) {
  if (!fits) throw ModelFormatError::damaged("the array " + name + " has another size or kind");
}

}  // namespace

std::vector<float> WeightReader::row(const std::string& name, int size) const {
  const ModelItem& item = file_.at(name);
  require(
      item.type == ModelItem::Type::float32 && item.elements() == static_cast<std::size_t>(size),
      name);
  return readFloats(item);
}

std::unique_ptr<Linear> WeightReader::linear(const std::string& name, const std::string& bias,
                                             int inputs, int outputs) const {
  const ModelItem& item = file_.at(name);
  require(item.shape.size() == 2 && item.rows() == inputs && item.columns() == outputs &&
              item.type != ModelItem::Type::characters,
          name);
  std::vector<float> biases = bias.empty() ? std::vector<float>() : row(bias, outputs);
  // 8-bit matrices are stored output by output, whatever their shape says; float matrices are
  // stored as their shape says.
  if (item.type == ModelItem::Type::int8) {
    return integerLinear(name, item, inputs, outputs, std::move(biases));
  }
  const std::vector<float> stored = readFloats(item);
  std::vector<float> weights(stored.size());
  const auto rows = static_cast<std::size_t>(inputs);
  const auto columns = static_cast<std::size_t>(outputs);
  for (std::size_t i = 0; i < rows; ++i) {
    for (std::size_t o = 0; o < columns; ++o) weights[o * rows + i] = stored[i * columns + o];
  }
  return std::make_unique<FloatLinear>(inputs, outputs, std::move(weights), std::move(biases));
}

std::unique_ptr<Linear> WeightReader::outputLayer(const std::string& table, const std::string& bias,
                                                  int width) const {
  const ModelItem& item = file_.at(table);
  require(
      item.shape.size() == 2 && item.columns() == width && item.type != ModelItem::Type::characters,
      table);
  std::vector<float> biases = row(bias, item.rows());
  if (item.type == ModelItem::Type::int8) {
    return integerLinear(table, item, width, item.rows(), std::move(biases));
  }
  return std::make_unique<FloatLinear>(width, item.rows(), readFloats(item), std::move(biases));
}

std::unique_ptr<Linear> WeightReader::integerLinear(const std::string& name, const ModelItem& item,
                                                    int inputs, int outputs,
                                                    std::vector<float> bias) const {
  Quantization quantization;
  std::memcpy(&quantization.weights, item.data.data() + item.elements(), sizeof(float));
  const std::string scale = name + "_QuantMultA";
  if (file_.find(scale)) quantization.input = row(scale, 1).front();
  const auto isScale = [](float value) {
    return std::isfinite(value) && value > 0;
  };
  require(isScale(quantization.weights) && isScale(quantization.input.value_or(1)), name);
  const std::span<const std::int8_t> weights(reinterpret_cast<const std::int8_t*>(item.data.data()),
                                             item.elements());
  return std::make_unique<IntegerLinear>(IntegerMatrix(inputs, outputs, weights), quantization,
                                         std::move(bias));
}

}  // namespace velun
