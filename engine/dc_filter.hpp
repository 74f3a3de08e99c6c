// The DC blocker over the finished block, on the bypassed signal too. Last thing in a frame.
#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>

#include "engine/realtime.hpp"
#include "engine/simd.hpp"

namespace zum {

/// y = x - x' + 0.998 y', the feedback in 64 bit, the state in 32 bit.
class DcFilter {
 public:
  void reset() ZUM_REALTIME { *this = DcFilter{}; }

  Float4 lastIn() const ZUM_REALTIME { return in; }
  Double2 lastOut() const ZUM_REALTIME { return out; }
  void leave(Float4 newIn, Double2 newOut) ZUM_REALTIME {
    in = newIn;
    out = newOut;
  }

  /// Once an output was not finite, none is until a reset.
  bool isFinite() const ZUM_REALTIME { return areFinite(narrow(out)); }

  /// In silence the state decays to where 32-bit numbers lose their leading bits, and stays there.
  /// Many processors convert to such numbers a hundred times slower.
  bool isFading() const ZUM_REALTIME {
    constexpr double kFading = 1e-36;
    return std::fabs(out[0]) < kFading || std::fabs(out[1]) < kFading;
  }

  /// One side's samples in place, with the state of the first lane.
  void filter(float* samples, std::size_t frames) ZUM_REALTIME {
    const bool fading = isFading();
    for (std::size_t i = 0; i < frames; ++i) {
      const Float4 before = in;
      in = splat(samples[i]);
      samples[i] = (fading ? nextFading(out, in, before) : next(out, in, before))[0];
    }
  }

  /// `out` is `lastOut` of a run; `before` is the input of the frame before `x`.
  static Float4 next(Double2& out, Float4 x, Float4 before) ZUM_REALTIME {
    const Float4 y = narrow(mixed(out, x, before));
    out = widenLow(y);
    return y;
  }

  /// The same numbers as next() gives, without a conversion to such a small float. For a run that
  /// starts while isFading().
  static Float4 nextFading(Double2& out, Float4 x, Float4 before) ZUM_REALTIME {
    const Double2 y = mixed(out, x, before);
    const Long2 isSmall = absolute(y) < Double2{0x1p-126, 0x1p-126};
    const Float4 normal = narrow(keepWhere(~isSmall, y));
    const Double2 small = keepWhere(isSmall, y);
    // To a small number, 1.5 * 2^52 units are added: what is left of it in the low word is a whole
    // count of units.
    constexpr double kUnits = 0x1.8p52 * 0x1p-149;  // in last places of such a small float
    const Double2 counted = small + Double2{kUnits, kUnits};
    out = widenLow(normal) + (counted - Double2{kUnits, kUnits});
    const Int4 count = lowWords(counted);
    const Int4 negative = count >> 31;
    const Int4 magnitude = (count ^ negative) - negative;
    const Int4 sign = highWords(small) & splat(INT32_MIN);
    return reinterpret_cast<Float4>(reinterpret_cast<Int4>(normal) | magnitude | sign);
  }

 private:
  using Long2 = std::int64_t __attribute__((vector_size(16)));

  static Double2 mixed(Double2 out, Float4 x, Float4 before) ZUM_REALTIME {
    return widenLow(x - before) + out * Double2{0.998, 0.998};
  }
  static Double2 absolute(Double2 x) ZUM_REALTIME {
    return reinterpret_cast<Double2>(reinterpret_cast<Long2>(x) & Long2{INT64_MAX, INT64_MAX});
  }
  static Double2 keepWhere(Long2 mask, Double2 x) ZUM_REALTIME {
    return reinterpret_cast<Double2>(reinterpret_cast<Long2>(x) & mask);
  }
  /// The low and the high words of both lanes, in lanes 0 and 1.
  static Int4 lowWords(Double2 x) ZUM_REALTIME {
    const auto words = reinterpret_cast<Int4>(x);
    return __builtin_shufflevector(words, words, 0, 2, 0, 2);
  }
  static Int4 highWords(Double2 x) ZUM_REALTIME {
    const auto words = reinterpret_cast<Int4>(x);
    return __builtin_shufflevector(words, words, 1, 3, 1, 3);
  }

  Float4 in{};
  Double2 out{};  // a 32-bit value, kept wide
};

}  // namespace zum
