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

  struct State {
    Float4 in{};         // the two frames before
    Double2 out{};       // a 32-bit value, kept wide
    bool rests = false;  // without a move, `out` stays as it is
    Float4 rest{};       // a pair of it
  };
  State enter(bool fading) const ZUM_REALTIME {
    State run = kept;
    run.rests = run.rests && fading;
    return run;
  }
  void leave(const State& run) ZUM_REALTIME { kept = run; }

  /// Once an output was not finite, none is until a reset.
  bool isFinite() const ZUM_REALTIME { return areFinite(narrow(kept.out)); }

  /// In silence the state decays to where 32-bit numbers lose their leading bits, and stays there.
  /// Many processors convert to such numbers a hundred times slower.
  bool isFading() const ZUM_REALTIME {
    constexpr double kFading = 1e-36;
    return std::fabs(kept.out[0]) < kFading || std::fabs(kept.out[1]) < kFading;
  }

  /// One side's samples in place, with the state of the first lane.
  void filter(float* samples, std::size_t frames) ZUM_REALTIME {
    const bool fading = isFading();
    kept.rests = kept.rests && fading;
    for (std::size_t i = 0; i < frames; ++i) {
      samples[i] = next<1>(kept, splat(samples[i]), fading)[0];
    }
  }

  /// `frames` frames, 1 or 2. `fading` is isFading() at the start of a run.
  template <int frames>
  static Float4 next(State& run, Float4 x, bool fading) ZUM_REALTIME {
    const Float4 moved = x - lastTwo(run.in, x, 1);
    run.in = lastTwo(run.in, x, frames);
    if (fading) [[unlikely]]
      return nextFading<frames>(run, moved);
    const Float4 first = narrow(mixed(run.out, moved));
    run.out = widenLow(first);
    if constexpr (frames == 1) return first;
    const Float4 second = narrow(mixed(run.out, highTwice(moved)));
    run.out = widenLow(second);
    return joinLow(first, second);
  }

 private:
  using Long2 = std::int64_t __attribute__((vector_size(16)));

  static Double2 mixed(Double2 out, Float4 moved) ZUM_REALTIME {
    return widenLow(moved) + out * Double2{0.998, 0.998};
  }

  /// The same numbers, and fast in silence: the end of a decay is computed once.
  template <int frames>
  static Float4 nextFading(State& run, Float4 moved) ZUM_REALTIME {
    const bool isStill = !anyLaneSet((frames == 2 ? moved : lowTwice(moved)) != splat(0.0F));
    if (isStill && run.rests) return run.rest;
    const Double2 before = run.out;
    const Float4 first = narrowTiny(run.out, mixed(run.out, moved));
    const Float4 last = frames == 2 ? narrowTiny(run.out, mixed(run.out, highTwice(moved))) : first;
    run.rests = isStill && run.out[0] == before[0] && run.out[1] == before[1];
    run.rest = lowTwice(last);
    return joinLow(first, last);
  }

  /// Without a conversion to so small a float.
  static Float4 narrowTiny(Double2& out, Double2 y) ZUM_REALTIME {
    const Long2 isSmall = absolute(y) < Double2{0x1p-126, 0x1p-126};
    const Float4 normal = narrow(keepWhere(~isSmall, y));
    const Double2 tiny = keepWhere(isSmall, y);
    // To a small number, 1.5 * 2^52 units are added: what is left of it in the low word is a whole
    // count of units.
    constexpr double kUnits = 0x1.8p52 * 0x1p-149;  // in last places of such a small float
    const Double2 counted = tiny + Double2{kUnits, kUnits};
    out = widenLow(normal) + (counted - Double2{kUnits, kUnits});
    const Int4 count = lowWords(counted);
    const Int4 negative = count >> 31;
    const Int4 magnitude = (count ^ negative) - negative;
    const Int4 sign = highWords(tiny) & splat(INT32_MIN);
    return reinterpret_cast<Float4>(reinterpret_cast<Int4>(normal) | magnitude | sign);
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

  State kept;
};

}  // namespace zum
