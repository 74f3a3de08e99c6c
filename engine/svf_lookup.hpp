// From frequency and resonance to the coefficients of a stage, through the tuned tables. Called in
// the control pass by both filter banks and the envelope follower.
#pragma once

#include "engine/svf.hpp"

namespace zum {

/// The frequency side of a lookup.
struct ColumnPosition {
  float column = 0.0F;  // a whole number, 0 to 10
  float fx = 0.0F;      // weight of the next column
  float oneMinusFx = 1.0F;
};

/// The resonance side of a lookup.
struct RowPosition {
  int row = 0;  // 0 to 9
  float ry = 0.0F;
};

/// `columnScale` is 20 / sample rate: tenths of the Nyquist frequency per Hz. The column lags by
/// half a step, so the weight runs from 0.5 to 1.5 and the lookup extrapolates past the next
/// column: the tables were tuned that way.
ColumnPosition columnOf(float hz, float columnScale) ZUM_REALTIME;

/// `resonanceCurve` 0 to 1; lags as the column does.
RowPosition rowOf(float resonanceCurve) ZUM_REALTIME;

SvfCoeffs lookupCoefficients(const ColumnPosition& at, const RowPosition& row) ZUM_REALTIME;

/// A lookup that is made when its inputs move: most passes move nothing, and a processor starts on
/// the frames behind a pass without waiting for it.
class KeptLookup {
 public:
  SvfCoeffs at(float hz, float columnScale, float resonanceCurve) ZUM_REALTIME;

 private:
  float lastHz = -1.0F;
  float lastScale = 0.0F;
  float lastResonance = 0.0F;
  SvfCoeffs kept;
};

}  // namespace zum
