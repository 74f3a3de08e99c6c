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
    Float4 in{};    // the two frames before
    Double2 out{};  // a 32-bit value, kept wide; 0 for a side at rest
    Int4 atRest{};  // sides whose output stays `rest` until a move
    Float4 rest{};
  };
  State enter() const ZUM_REALTIME { return kept; }
  void leave(const State& run) ZUM_REALTIME { kept = run; }

  /// Once an output was not finite, none is until a reset.
  bool isFinite() const ZUM_REALTIME { return areFinite(narrow(kept.out)); }

  /// In silence the state decays to where 32-bit numbers lose their leading bits, and stays there.
  /// Many processors convert to such numbers a hundred times slower.
  bool isFading() const ZUM_REALTIME { return anySet(isTiny(kept.out)); }

  /// One side's samples in place, with the state of the first lane.
  void filter(float* samples, std::size_t frames) ZUM_REALTIME {
    const bool fading = isFading();
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
    return nextNormal<frames>(run, moved);
  }

 private:
  using Long2 = std::int64_t __attribute__((vector_size(16)));

  static Double2 mixed(Double2 out, Float4 moved) ZUM_REALTIME {
    return widenLow(moved) + out * Double2{0.998, 0.998};
  }

  template <int frames>
  static Float4 nextNormal(State& run, Float4 moved) ZUM_REALTIME {
    const Float4 first = narrow(mixed(run.out, moved));
    run.out = widenLow(first);
    if constexpr (frames == 1) return first;
    const Float4 second = narrow(mixed(run.out, highTwice(moved)));
    run.out = widenLow(second);
    return joinLow(first, second);
  }

  /// The same numbers, and fast in silence: the end of a side's decay is computed once.
  template <int frames>
  static Float4 nextFading(State& run, Float4 moved) ZUM_REALTIME {
    const Int4 moves = moved != splat(0.0F);
    const Int4 isMoved =
        frames == 2 ? moves | __builtin_shufflevector(moves, moves, 2, 3, 0, 1) : twice(moves);
    const Int4 woken = run.atRest & isMoved;
    if (anyLaneSet(woken)) {
      run.out += keepWhere(wide(woken), widenLow(run.rest));
      run.atRest &= ~woken;
    }
    const Int4 atRest = run.atRest;
    const bool decays = anySet(isTiny(run.out) & ~wide(atRest));
    const Float4 out =
        decays ? nextDecaying<frames>(run, moved, ~isMoved) : nextNormal<frames>(run, moved);
    return select(atRest, run.rest, out);
  }

  /// Sides of `isStill` without a move come to rest here.
  template <int frames>
  static Float4 nextDecaying(State& run, Float4 moved, Int4 isStill) ZUM_REALTIME {
    const Double2 before = run.out;
    const Float4 first = narrowTiny(run.out, mixed(run.out, moved));
    const Float4 last = frames == 2 ? narrowTiny(run.out, mixed(run.out, highTwice(moved))) : first;
    const Int4 ends = isStill & ~run.atRest & low(isTiny(run.out) & (run.out == before));
    run.rest = select(ends, lowTwice(last), run.rest);
    run.atRest |= ends;
    run.out = keepWhere(~wide(ends), run.out);
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
    const Int4 count = low(reinterpret_cast<Long2>(counted));
    const Int4 negative = count >> 31;
    const Int4 magnitude = (count ^ negative) - negative;
    const Int4 sign = highWords(tiny) & splat(INT32_MIN);
    return reinterpret_cast<Float4>(reinterpret_cast<Int4>(normal) | magnitude | sign);
  }

  static Double2 absolute(Double2 x) ZUM_REALTIME {
    return reinterpret_cast<Double2>(reinterpret_cast<Long2>(x) & Long2{INT64_MAX, INT64_MAX});
  }
  static Long2 isTiny(Double2 out) ZUM_REALTIME { return absolute(out) < Double2{1e-36, 1e-36}; }
  static bool anySet(Long2 mask) ZUM_REALTIME { return anyLaneSet(reinterpret_cast<Int4>(mask)); }
  /// Masks of the sides as they are for doubles, and for two frames of floats.
  static Long2 wide(Int4 sides) ZUM_REALTIME {
    return reinterpret_cast<Long2>(__builtin_shufflevector(sides, sides, 0, 0, 1, 1));
  }
  static Int4 low(Long2 sides) ZUM_REALTIME {
    const auto words = reinterpret_cast<Int4>(sides);
    return __builtin_shufflevector(words, words, 0, 2, 0, 2);
  }
  static Int4 twice(Int4 x) ZUM_REALTIME { return __builtin_shufflevector(x, x, 0, 1, 0, 1); }
  static Double2 keepWhere(Long2 mask, Double2 x) ZUM_REALTIME {
    return reinterpret_cast<Double2>(reinterpret_cast<Long2>(x) & mask);
  }
  /// The high words of both lanes, in lanes 0 and 1.
  static Int4 highWords(Double2 x) ZUM_REALTIME {
    const auto words = reinterpret_cast<Int4>(x);
    return __builtin_shufflevector(words, words, 1, 3, 1, 3);
  }

  State kept;
};

}  // namespace zum
