// The DC blocker over the finished block, on the bypassed signal too. Last thing in a frame.
#pragma once

#include "engine/realtime.hpp"
#include "engine/simd.hpp"

namespace zum {

/// y = x - x' + 0.998 y', the feedback in 64 bit, the state in 32 bit.
struct DcFilter {
  Float4 lastIn{};
  Double2 lastOut{};  // a 32-bit value, kept wide

  void reset() ZUM_REALTIME { *this = DcFilter{}; }

  Float4 next(Float4 x) ZUM_REALTIME {
    const Double2 y = widenLow(x - lastIn) + lastOut * Double2{0.998, 0.998};
    lastIn = x;
    const Float4 out = narrow(y);
    lastOut = widenLow(out);
    return out;
  }
};

}  // namespace zum
