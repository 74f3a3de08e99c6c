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
  const std::array<float, 3> columns[] = {{0.3F, 0, 0.3F},  {1.4F, 0, 1.4F},   {1.5F, 1, 0.5F},
                                          {10.4F, 9, 1.4F}, {10.5F, 10, 0.0F}, {1e6F, 10, 0.0F}};
  for (const auto& [x, column, fx] : columns) {
    const ColumnPosition at = columnOf(x, 1.0F);
    EXPECT_EQ(at.column, column) << x;
    EXPECT_NEAR(at.fx, fx, 1e-6F) << x;
    EXPECT_NEAR(at.oneMinusFx, 1.0F - fx, 1e-6F) << x;
  }
  for (const auto& [curve, row, ry] :
       {std::tuple{0.14F, 0, 1.4F}, {0.5F, 4, 1.0F}, {0.94F, 8, 1.4F}, {0.98F, 9, 0.8F}}) {
    EXPECT_EQ(rowOf(curve).row, row) << curve;
    EXPECT_NEAR(rowOf(curve).ry, ry, 1e-5F) << curve;
  }
}

/// Cube law of a cutoff value, in Hz.
double hertzOf(double raw) { return std::pow((raw + 0.13) * 0.87, 3.0) * 16011.0; }

// A pulse small enough that the shapers are straight, against the recursion's closed form in z, at
// a rate that the known answers do not have.
TEST(SvfStage, HasTheResponseOfItsRecursion) {
  constexpr double kRate = 96000.0;
  for (const auto& [cutoff, resonance] : {std::pair{0.45F, 0.3F}, {0.75F, 0.8F}, {0.9F, 0.05F}}) {
    const auto x = static_cast<float>(hertzOf(static_cast<double>(cutoff)) * 20.0 / kRate);
    const SvfCoeffs c =
        lookupCoefficients(columnOf(x, 1.0F), rowOf(0.94F * std::pow(resonance, 0.84F)));
    const auto f = static_cast<double>(c.f);
    const auto q = static_cast<double>(c.q);
    for (const int type : {0, 2, 4}) {
      TestHost host(static_cast<float>(kRate));
      host.prepare(type, cutoff, resonance, 0.0F);
      host.render(Stereo(9600));  // until all glides have run out
      Stereo pulse(16384);
      pulse.left[0] = 1e-4F;
      const std::vector<float> out = host.render(pulse).left;
      for (const double hz : {130.0, 760.0, 2200.0, 5400.0, 15000.0, 33000.0}) {
        const double turn = -2.0 * kPi * hz / kRate;
        Complex found;
        for (std::size_t i = 0; i < out.size(); ++i) {
          found += std::polar(1e4 * static_cast<double>(out[i]), turn * static_cast<double>(i));
        }
        const Complex z = std::polar(1.0, turn);  // a delay of one frame
        const Complex d = 1.0 - z;
        const Complex high = d * d / (d * d + q * f * z * d + f * f * z);
        const Complex band = f * z / d * high;
        const Complex stage = type == 0 ? high : type == 2 ? band : f / d * band;
        const Complex expected = stage * d / (1.0 - 0.998 * z);  // the DC filter
        EXPECT_LT(std::abs(found - expected), 0.003 * std::abs(expected) + 1e-4)
            << "type " << type << " cutoff " << cutoff << " at " << hz << " Hz";
      }
    }
  }
}

TEST(Ramps, TickRampCountsControlPasses) {
  TickRamp ramp;
  // target, passes of the line, where it then stands; a new target starts a new line
  const std::array<float, 3> cases[] = {{10, 4, 2.5F}, {10, 9, 5}, {10, 9, 7.5F}, {10, 9, 10},
                                        {2, 4, 8},     {-1, 3, 5}, {-1, 9, 2},    {-1, 9, -1}};
  for (const auto& [target, ticks, expected] : cases) {
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
  for (const auto silent : {&Stereo::left, &Stereo::right}) {  // the louder side counts
    TestHost other;
    Stereo oneSide = noise(1600, 4.0F);
    (oneSide.*silent).assign(1600, 0.0F);
    other.render(oneSide);
    const auto& points = other.client().signal().meters().meter.points;
    EXPECT_GT(*std::max_element(points.begin(), points.end()), 0.1F);
  }
}

}  // namespace
}  // namespace zum::test
