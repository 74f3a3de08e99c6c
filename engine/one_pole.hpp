// One-pole low-pass and the tangent approximation behind its coefficients. Used by the overdrive,
// the combs and the envelope follower.
#pragma once

#include "engine/numbers.hpp"
#include "engine/simd.hpp"

namespace zum {

/// Tuned by ear and not the tangent's series: its fifth-power term would be ten times smaller.
constexpr float tanApprox(float x) ZUM_REALTIME {
  return x + x * x * x * 0.33333298563957214F + (x * x) * (x * x * x) * 1.3333330154418945F;
}

/// tanApprox of the cutoff's half angle: the k of a bilinear one-pole. Hz over Hz.
constexpr float onePoleGain(float cutoffHz, float sampleRate) ZUM_REALTIME {
  return tanApprox(3.141590118408203F * cutoffHz / sampleRate);
}

/// Coefficients of `OnePole`, the same in all lanes.
struct OnePoleCoeffs {
  Float4 k{};
  Float4 inv{};    // 1 / (k + 1)
  Float4 minus{};  // k - 1

  void tune(float cutoffHz, float sampleRate) ZUM_REALTIME {
    const float gain = onePoleGain(cutoffHz, sampleRate);
    k = splat(gain);
    inv = splat(1.0F / (gain + 1.0F));
    minus = splat(gain - 1.0F);
  }
};

/// The filter's one state: this frame's w is next frame's previous w.
struct OnePole {
  Float4 w{};

  Float4 next(Float4 in, const OnePoleCoeffs& c) ZUM_REALTIME {
    const Float4 previous = w;
    w = (in - previous * c.minus) * c.inv + splat(kDenormalGuard);
    return (w + previous) * c.k;
  }
};

}  // namespace zum
