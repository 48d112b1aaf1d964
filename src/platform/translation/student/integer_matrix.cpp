// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/translation/student/integer_matrix.h"

#include <dnnl.h>

namespace velun {

IntegerMatrix::IntegerMatrix(int inputs, int outputs, std::span<const std::int8_t> weights)
    : inputs_(inputs), outputs_(outputs), weights_(weights) {}

IntegerMatrix::IntegerMatrix(int inputs, int outputs, std::vector<std::int8_t> weights)
    : inputs_(inputs), outputs_(outputs), own_(std::move(weights)), weights_(own_) {}

std::span<const std::int8_t> IntegerMatrix::row(int output) const {
  const auto width = static_cast<std::size_t>(inputs_);
  return weights_.subspan(static_cast<std::size_t>(output) * width, width);
}

void IntegerMatrix::multiply(std::span<const std::uint8_t> x, int rowCount,
                             std::span<std::int32_t> result) const {
  const std::int32_t nothingAdded = 0;
  dnnl_gemm_u8s8s32('N', 'T', 'F', rowCount, outputs_, inputs_, 1.0F, x.data(), inputs_, 0,
                    weights_.data(), inputs_, 0, 0.0F, result.data(), outputs_, &nothingAdded);
}

}  // namespace velun
