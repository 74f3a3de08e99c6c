// Catches a wrong coefficient or stage order: sound against the closed form of its recursion.

#include <gtest/gtest.h>

#include <cmath>
#include <complex>

#include "engine/svf_lookup.hpp"
#include "support/test_host.hpp"

namespace zum::test {
namespace {

using Complex = std::complex<double>;
constexpr double kPi = 3.141592653589793;

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

}  // namespace
}  // namespace zum::test
