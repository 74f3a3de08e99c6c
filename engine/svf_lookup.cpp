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

/// Frequency and damping of `entry` and of the one behind it.
Float4 corners(std::size_t entry) ZUM_REALTIME {
  return loadPairs(&kCorners[entry].f, &kCorners[entry + 1].f);
}

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
  // two corners of a row side by side
  const float above = 1.0F - row.ry;
  const Float4 upper = corners(base) * halves(above * at.oneMinusFx, above * at.fx);
  const Float4 lower = corners(base + kSvfColumns) * halves(at.oneMinusFx * row.ry, row.ry * at.fx);
  const Float4 sum = upper + highTwice(upper) + lower + highTwice(lower);
  return SvfCoeffs{sum[0], sum[1]};
}

SvfCoeffs KeptLookup::at(float hz, float columnScale, float resonanceCurve) ZUM_REALTIME {
  if (hz != lastHz || columnScale != lastScale || resonanceCurve != lastResonance) {
    lastHz = hz;
    lastScale = columnScale;
    lastResonance = resonanceCurve;
    kept = lookupCoefficients(columnOf(hz, columnScale), rowOf(resonanceCurve));
  }
  return kept;
}

}  // namespace zum
