#include "engine/svf_lookup.hpp"

#include "engine/svf_tables.hpp"

namespace zum {
namespace {

// Both tables side by side, so that a corner of the lookup is one read. One entry more than they
// have: the last column's neighbour in the last row, which only ever has weight 0.
constexpr std::array<SvfCoeffs, kSvfEntries + 1> kCorners = [] {
  std::array<SvfCoeffs, kSvfEntries + 1> corners{};
  for (std::size_t i = 0; i < kSvfEntries; ++i) corners[i] = SvfCoeffs{SvfTableF[i], SvfTableQ[i]};
  corners.back() = corners[kSvfEntries - 1];
  return corners;
}();

}  // namespace

ColumnPosition columnOf(float hz, float columnScale) ZUM_REALTIME {
  constexpr int kLastColumn = kSvfColumns - 1;
  const float x = hz * columnScale;
  const int n = truncate(x - 0.5F);
  ColumnPosition at;
  at.column = static_cast<float>(clampIndex(n, kLastColumn));
  at.fx = n < kLastColumn ? x - static_cast<float>(n) : 0.0F;
  at.oneMinusFx = 1.0F - at.fx;
  return at;
}

RowPosition rowOf(float resonanceCurve) ZUM_REALTIME {
  const float y = resonanceCurve * 10.0F;
  const int m = truncate(y - 0.5F);
  return RowPosition{clampIndex(m, kSvfRows - 2), y - static_cast<float>(m)};
}

SvfCoeffs lookupCoefficients(const ColumnPosition& at, const RowPosition& row) ZUM_REALTIME {
  const int first = row.row * kSvfColumns + static_cast<int>(at.column);
  const auto base = static_cast<std::size_t>(first);
  const float w00 = (1.0F - row.ry) * at.oneMinusFx;
  const float w01 = (1.0F - row.ry) * at.fx;
  const float w10 = at.oneMinusFx * row.ry;
  const float w11 = row.ry * at.fx;
  const SvfCoeffs c00 = kCorners[base];
  const SvfCoeffs c01 = kCorners[base + 1];
  const SvfCoeffs c10 = kCorners[base + kSvfColumns];
  const SvfCoeffs c11 = kCorners[base + kSvfColumns + 1];
  return SvfCoeffs{c00.f * w00 + c01.f * w01 + c10.f * w10 + c11.f * w11,
                   c00.q * w00 + c01.q * w01 + c10.q * w10 + c11.q * w11};
}

}  // namespace zum
