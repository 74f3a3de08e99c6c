// Catches a wrong coefficient, stage order, tap, ramp or gain: sound and numbers against the slow
// obvious way of computing them.

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <complex>

#include "engine/ramp.hpp"
#include "engine/sample_hold.hpp"
#include "engine/svf_lookup.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

using Complex = std::complex<double>;
constexpr double kPi = 3.141592653589793;

TEST(SvfLookup, ColumnsAndRowsLagByHalfAStep) {
  const std::array<float, 3> columns[] = {
      {0.0F, 0, 0.0F},   {0.3F, 0, 0.3F},  {1.4F, 0, 1.4F},   {1.5F, 1, 0.5F},   {2.0F, 1, 1.0F},
      {9.75F, 9, 0.75F}, {10.4F, 9, 1.4F}, {10.5F, 10, 0.0F}, {11.5F, 10, 0.0F}, {1e6F, 10, 0.0F}};
  for (const auto& [x, column, fx] : columns) {
    const ColumnPosition at = columnOf(x, 1.0F);
    EXPECT_EQ(at.column, column) << x;
    EXPECT_NEAR(at.fx, fx, 1e-6F) << x;
    EXPECT_NEAR(at.oneMinusFx, 1.0F - fx, 1e-6F) << x;
  }
  for (const auto& [curve, row, ry] : {std::tuple{0.0F, 0, 0.0F},
                                       {0.14F, 0, 1.4F},
                                       {0.5F, 4, 1.0F},
                                       {0.94F, 8, 1.4F},
                                       {0.98F, 9, 0.8F}}) {
    EXPECT_EQ(rowOf(curve).row, row) << curve;
    EXPECT_NEAR(rowOf(curve).ry, ry, 1e-5F) << curve;
  }
}

TEST(SvfLookup, WeighsFourCornersAndExtrapolates) {
  const std::tuple<float, float, double, double> cases[] = {
      {0.0F, 0.0F, 0.0, 2.0},
      {0.0F, 0.94F, 0.0, -0.4 * 0.39527 + 1.4 * 0.19920},
      {1.4F, 0.0F, 1.4 * 0.28179, -0.4 * 2.0 + 1.4 * 1.71821},
      {5.0F, 0.94F, -0.4 * 1.18417 + 1.4 * 1.28234, -0.4 * 0.49105 + 1.4 * 0.27533},
      {1.5F, 0.05F, 0.25 * (0.28179 + 0.50392 + 0.26786 + 0.48407),
       0.25 * (1.71821 + 1.49608 + 1.67581 + 1.48093)},
      {12.0F, 0.94F, 1.0, 1.0},
      {7.0F, 1.0F, 2.0 * std::sin(kPi * 7 / 20), 0.0},
  };
  for (const auto& [x, curve, f, q] : cases) {
    const SvfCoeffs found = lookupCoefficients(columnOf(x, 1.0F), curve);
    EXPECT_NEAR(found.f, f, 2e-5) << x << ' ' << curve;
    EXPECT_NEAR(found.q, q, 2e-5) << x << ' ' << curve;
  }
}

/// Cube law of a cutoff value, in Hz.
double hertzOf(double raw) { return std::pow((raw + 0.13) * 0.87, 3.0) * 16011.0; }

/// Coefficients of the multi-mode bank's stages at 44100 Hz.
std::pair<double, double> coefficientsOf(float cutoff, float resonance) {
  const auto x = static_cast<float>(hertzOf(static_cast<double>(cutoff)) * 20.0 / 44100.0);
  const SvfCoeffs c = lookupCoefficients(columnOf(x, 1.0F), 0.94F * std::pow(resonance, 0.84F));
  return {static_cast<double>(c.f), static_cast<double>(c.q)};
}

/// An instance with all glides run out.
struct SettledHost : TestHost {
  SettledHost(int type, float cutoff, float resonance, float drive) {
    prepare(type, cutoff, resonance, drive);
    render(Stereo(4800));
  }
};

// A pulse small enough that the shapers are straight, against the recursion's closed form in z.
TEST(SvfStage, HasTheResponseOfItsRecursion) {
  for (const auto& [cutoff, resonance] : {std::pair{0.35F, 0.3F}, {0.6F, 0.8F}, {0.85F, 0.05F}}) {
    const auto [f, q] = coefficientsOf(cutoff, resonance);
    for (const int type : {0, 2, 4}) {
      SettledHost host(type, cutoff, resonance, 0.0F);
      Stereo pulse(16384);
      pulse.left[0] = 1e-4F;
      const std::vector<float> out = host.render(pulse).left;
      for (const double hz : {60.0, 350.0, 1000.0, 2500.0, 7000.0, 15000.0}) {
        const double turn = -2.0 * kPi * hz / 44100.0;
        Complex found;
        for (std::size_t i = 0; i < out.size(); ++i) {
          found += std::polar(1e4 * static_cast<double>(out[i]), turn * static_cast<double>(i));
        }
        const Complex z = std::polar(1.0, turn);  // a delay of one frame
        const Complex d = 1.0 - z;
        const Complex high = d * d / (d * d + q * f * z * d + f * f * z);
        const Complex band = f * z / d * high;
        const Complex expected = (type == 0   ? high
                                  : type == 2 ? band
                                              : f / d * band) *
                                 d / (1.0 - 0.998 * z);  // the DC filter
        EXPECT_LT(std::abs(found - expected), 0.003 * std::abs(expected) + 1e-4)
            << "type " << type << " cutoff " << cutoff << " at " << hz << " Hz";
      }
    }
  }
}

/// What went into the DC filter, from what came out since construction.
std::vector<double> undoDc(const std::vector<float>& out) {
  std::vector<double> in;
  double x = 0.0;
  double before = 0.0;
  for (const float y : out) {
    x += static_cast<double>(y) - 0.998 * before;
    before = static_cast<double>(y);
    in.push_back(x);
  }
  return in;
}

TEST(OutputStage, ClipsShapesAndLimitsTheWetSignal) {
  const auto shaped = [](double x, double k) { return x * (1.0 - std::fabs(x) * k); };
  for (const float level : {10.0F, -10.0F, 2.0F, 1.0F, 0.3F, -0.3F}) {
    for (const float master : {0.5F, 1.0F, 0.2F}) {
      SettledHost host(4, 0.5F, 0.1F, 0.0F);  // passes a constant as it is
      host.set(1, master);
      const double wet = undoDc(host.render(Stereo(4000, level)).left).back();
      const double clipped = std::fmin(2.0, std::fmax(-2.0, static_cast<double>(level)));
      const double expected =
          shaped(shaped(clipped, 0.25) * 2.0 * static_cast<double>(master), 0.25 / 1.1);
      EXPECT_NEAR(wet, expected, 1e-3) << level << ' ' << master;
    }
  }
}

// The comb of the multi-mode bank is silent while the left side is, so the right side's output is
// the dry part of the mix alone.
TEST(Ramps, MixMovesInALineOverOneControlBlock) {
  SettledHost host(6, 0.5F, 0.5F, 0.0F);
  host.set(2, 0.0F);
  host.render(Stereo(160));
  Stereo in(64);
  for (std::size_t i = 0; i < in.frames(); ++i) in.right[i] = i % 2 == 0 ? 1.0F : -1.0F;
  for (const auto& [mix, from] : {std::pair{0.75, 0.0}, {0.25, 0.75}, {1.0, 0.25}}) {
    host.dispatch(effMainsChanged, 0, 1);  // the DC filter starts anew
    host.set(2, static_cast<float>(mix));
    const std::vector<double> dry = undoDc(host.render(in, {5}).right);
    for (std::size_t i = 0; i < in.frames(); ++i) {
      const double part = std::fmin(1.0, static_cast<double>(i + 1) / 16.0);
      ASSERT_NEAR(dry[i] / static_cast<double>(in.right[i]), 1.0 - (from + (mix - from) * part),
                  1e-5)
          << i;
    }
  }
}

TEST(Ramps, TickRampCountsControlPasses) {
  TickRamp ramp;
  // target, passes of the line, where it then stands; a new target starts a new line
  for (const auto& [target, ticks, expected] : {std::tuple{10.0F, 4.0F, 2.5F},
                                                {10.0F, 9.0F, 5.0F},
                                                {10.0F, 9.0F, 7.5F},
                                                {10.0F, 9.0F, 10.0F},
                                                {2.0F, 4.0F, 8.0F},
                                                {-1.0F, 3.0F, 5.0F},
                                                {-1.0F, 9.0F, 2.0F},
                                                {-1.0F, 9.0F, -1.0F}}) {
    EXPECT_TRUE(ramp.advance(target, ticks, 1.0F));
    EXPECT_EQ(ramp.current, expected);
  }
  EXPECT_FALSE(ramp.advance(-1.0F, 4.0F, 1.0F));
  for (const auto& [rate, passes] : {std::pair{44100.0F, 67}, {48000.0F, 73}, {96000.0F, 145}}) {
    TestHost host(rate);
    TickRamp glide;
    int count = 0;
    while (glide.advance(1.0F, 24.0F, host.client().timing().ticksPerMs)) ++count;
    EXPECT_EQ(count, passes) << rate;
  }
}

/// The one-pole of the whole system, one channel, in double.
struct ScalarPole {
  double k, w = 0.0;
  ScalarPole(double hz, double rate) {
    const double x = 3.14159012 * hz / rate;
    k = x + x * x * x * 0.333333 + x * x * x * x * x * 1.333333;
  }
  double next(double in) {
    const double before = w;
    w = (in - before * (k - 1.0)) / (k + 1.0);
    return (w + before) * k;
  }
};

/// Renders noise and gives the largest error of the left side against `wetOf`, a scalar model of
/// all that lies ahead of the output stage at unity master.
template <class Model>
double worstError(TestHost& host, Model wetOf) {
  const Stereo in = noise(6000, 0.8F);
  const Stereo out = host.render(in);
  double lastWet = 0.0;
  double blocked = 0.0;
  double worst = 0.0;
  for (std::size_t i = 0; i < in.frames(); ++i) {
    double wet = std::fmin(2.0, std::fmax(-2.0, wetOf(static_cast<double>(in.left[i]))));
    wet *= 1.0 - std::fabs(wet) * 0.25;
    wet *= 1.0 - std::fabs(wet) * 0.25 / 1.1;
    blocked = wet - std::exchange(lastWet, wet) + 0.998 * blocked;
    worst = std::fmax(worst, std::fabs(blocked - static_cast<double>(out.left[i])));
  }
  return worst;
}

TEST(SampleHold, TakesTheInputAsACellBegins) {
  SampleHold apart;
  SampleHold series;  // the second hold takes what the first one holds
  for (int frame = 1; frame <= 200; ++frame) {
    const auto x = static_cast<float>(frame);
    const Float4 steps = halves(0.25F, 0.3125F);
    const Float4 held = apart.next<false>(splat(x), steps);
    const auto second =
        static_cast<float>(static_cast<int>(std::ceil(std::floor(x * 0.3125F) / 0.3125F)));
    ASSERT_EQ(held[0], static_cast<float>(frame - frame % 4)) << frame;
    ASSERT_EQ(held[2], frame < 52 ? second : held[2]) << frame;  // up to the wrap at 16
    const Float4 both = series.next<true>(splat(x), steps);
    ASSERT_EQ(both[0], held[0]) << frame;
    ASSERT_EQ(both[2], std::floor(held[2] / 4.0F) * 4.0F) << frame;
  }
}

TEST(Meter, RingsWrapAndMirrorEachOther) {
  TestHost host;
  for (std::int32_t passes = 1; passes <= 300; ++passes) {
    host.render(noise(16, 4.0F));
    const OutputStage& meters = host.client().signal().meters();
    ASSERT_EQ(meters.meter.writeIndex, passes % 139);
    const auto newest = static_cast<std::size_t>(meters.meter.writeIndex);
    ASSERT_EQ(meters.meter.points[newest], meters.meterValue);
    ASSERT_EQ(meters.meterInverse.points[newest], 1.0F - meters.meterValue);
    ASSERT_TRUE(meters.meterValue >= 0.0F && meters.meterValue <= 0.98F);
  }
}

}  // namespace
}  // namespace zum::test
