// A filter over a run of frames, and beside it the band filter of the envelope follower, which
// rides in the filter's own registers where these have room.
#pragma once

#include "engine/svf.hpp"

namespace zum {

/// Lanes 2 and 3 of the first stage are free.
template <class Filter>
concept SparesLanes = requires(typename Filter::State& state) {
  Filter::first(state);
};

/// Works on copies, which the compiler keeps in registers. `frames` of next() is 1 or 2.
template <class Filter>
class FilterRun {
 public:
  /// Over `frames` frames. `band` is the follower's stage, with its coefficients.
  FilterRun(Filter& played, std::size_t frames, SvfStage& band, const SvfLanes& bandCoeffs)
      : filter(played),
        coeffs(played.coeffs),
        state(played.enter(frames)),
        bandStage(band),
        bandLanes(bandCoeffs) {}

  /// The output for the pair `in`; `bands` becomes the follower's for a frame a lane of `heard`.
  template <int frames>
  Float4 next(Float4 in, Float4 heard, Float4& bands) ZUM_REALTIME {
    const Float4 first = filter.next(state, coeffs, lowTwice(in));
    bands = bandStage.next(firstLane(heard), bandLanes).band;
    if constexpr (frames == 1) return Filter::join(first, first);
    const Float4 second = filter.next(state, coeffs, highTwice(in));
    bands = interleaveLow(bands, bandStage.next(secondLane(heard), bandLanes).band);
    return Filter::join(first, second);
  }
  void leave() ZUM_REALTIME { filter.leave(state); }

 private:
  Filter& filter;
  typename Filter::Coeffs coeffs;
  typename Filter::State state;
  SvfStage& bandStage;
  const SvfLanes& bandLanes;
};

/// The two filters in one stage's registers.
template <SparesLanes Filter>
class FilterRun<Filter> {
 public:
  FilterRun(Filter& played, std::size_t frames, SvfStage& band, const SvfLanes& bandCoeffs)
      : filter(played), coeffs(played.coeffs), state(played.enter(frames)), bandStage(band) {
    Filter::first(coeffs).lend(bandCoeffs);
    Filter::first(state).lend(band);
  }

  template <int frames>
  Float4 next(Float4 in, Float4 heard, Float4& bands) ZUM_REALTIME {
    Float4 firstBand;
    Float4 secondBand;
    const Float4 first =
        Filter::next(state, coeffs, __builtin_shufflevector(in, heard, 0, 1, 4, 4), firstBand);
    bands = highTwice(firstBand);
    if constexpr (frames == 1) return Filter::join(first, first);
    const Float4 second =
        Filter::next(state, coeffs, __builtin_shufflevector(in, heard, 2, 3, 5, 5), secondBand);
    bands = evenLanes(joinHigh(firstBand, secondBand));
    return Filter::join(first, second);
  }
  void leave() ZUM_REALTIME {
    bandStage = Filter::first(state).guest();
    filter.leave(state);
  }

 private:
  Filter& filter;
  typename Filter::Coeffs coeffs;
  typename Filter::State state;
  SvfStage& bandStage;
};

}  // namespace zum
