// Catches a follower that is too slow or fast, hears the wrong frequencies, or scales what it hears
// by a wrong law.

#include <gtest/gtest.h>

#include <cmath>

#include "support/control_passes.hpp"

namespace zum::test {
namespace {

constexpr float kUnityGain = 0.39763537F;  // 40 g^4 = 1

/// Unfiltered, unity gain, the fastest attack and the longest release.
struct FollowerPasses : ControlPasses {
  explicit FollowerPasses(double tempo = 120.0) : ControlPasses(48000.0F, tempo) {
    set(tag::efGain, kUnityGain);
    set(tag::efFreqRange, 0.0F);
    set(tag::efAttack, 0.0F);
    set(tag::efRelease, 1.0F);
  }
};

TEST(Follower, ANewAttackDoesNotJump) {
  FollowerPasses host;
  host.skip(3000, 0.5F);
  host.set(tag::efAttack, 1.0F);
  EXPECT_NEAR(host.pass(0.5F).efOut, 0.5F, 0.01F);
}

TEST(Follower, AttackIsAOnePoleOfTheTables) {
  const struct {
    float attack;
    double hz, shownMs;
  } cases[] = {{0.0F, 256.0, 0.0},        {0.5F, 32.0, 22.0},        {0.57735027F, 16.0, 45.0},
               {0.79056942F, 1.5, 545.0}, {0.81649658F, 1.0, 730.0}, {1.0F, 0.6, 1150.0}};
  for (const auto& c : cases) {
    FollowerPasses host;
    host.set(tag::efAttack, c.attack);
    host.skip(2);
    EXPECT_NEAR(host.client().signal().followerDisplay().readout().attackMs, c.shownMs, 0.01);
    const double timeConstant = 48000.0 / 16.0 / (2.0 * 3.14159265 * c.hz);  // passes
    for (int passes = 0; passes < 3.0 * timeConstant; ++passes) {
      const double heard = static_cast<double>(host.pass(0.5F).efOut);
      const double due = 0.5 * (1.0 - std::exp(-passes / timeConstant));
      ASSERT_NEAR(heard, due, 0.01) << c.attack << ", pass " << passes;
    }
  }
}

TEST(Follower, APeakFallsInItsNoteWhateverItsHeight) {
  const struct {
    int note;
    double tempo;
    float peak;
  } cases[] = {{4, 120.0, 0.2F}, {10, 60.0, 0.5F}, {16, 100.0, 0.9F}, {21, 50.0, 0.3F}};
  for (const auto& c : cases) {
    FollowerPasses host(c.tempo);
    host.set(tag::efRelease, 1.0F - notePosition(c.note));
    host.skip(60, c.peak);
    ASSERT_NEAR(host.efOut(), c.peak, 1e-3F);
    const double length = host.passesOf(kBars[c.note]);
    EXPECT_NEAR(host.client().signal().followerDisplay().readout().releaseMs, length / 3.0,
                length * 1e-5);
    const double lag = 48000.0 / 16.0 / (2.0 * 3.14159265 * 256.0);  // of the smoothing
    int passes = 0;
    for (const float part : {0.75F, 0.5F, 0.25F}) {
      for (; host.efOut() > part * c.peak && passes < 10000; ++passes) host.pass(0.0F);
      EXPECT_NEAR(passes, (1.0 - static_cast<double>(part)) * length + lag, 2.5 + length * 1e-3)
          << c.note << " at " << c.tempo << ", " << part;
    }
    host.skip(static_cast<int>(length + 8.0 * lag) + 2);
    EXPECT_LT(host.efOut(), 1e-3F);
  }
}

TEST(Follower, GainIsFortyTimesItsFourthPower) {
  for (const auto& [gain, level] :
       {std::pair{0.0F, 1e6F}, {0.2F, 0.3F}, {0.3F, 0.3F}, {0.45F, 0.3F}, {1.0F, 0.3F}}) {
    FollowerPasses host;
    host.set(tag::efGain, gain);
    host.skip(100, level);
    const double due = std::min(1.0, 12.0 * std::pow(static_cast<double>(gain), 4.0));
    EXPECT_NEAR(host.efOut(), due, 1e-3) << gain;
  }
}

TEST(Follower, HearsTheLargerSideAndNothingBelowZero) {
  const struct {
    float left, right, heard;
  } cases[] = {{0.5F, 0.2F, 0.5F}, {-0.9F, 0.2F, 0.2F}, {0.1F, -0.8F, 0.1F}, {-0.9F, -0.3F, 0.0F}};
  for (const auto& c : cases) {
    for (const float bypass : {0.0F, 1.0F}) {
      FollowerPasses host;
      host.set(tag::bypass, bypass);
      host.in.left.assign(16, c.left);
      host.in.right.assign(16, c.right);
      for (int i = 0; i < 100; ++i) host.pass();
      EXPECT_NEAR(host.efOut(), c.heard, 1e-3F) << c.left << ' ' << c.right;
    }
  }
}

// A constant level is nothing to a band.
TEST(Follower, RangesFromAThirdUpHearABand) {
  for (const float range : {0.0F, 0.36F, 0.38F, 0.6F, 1.0F}) {
    FollowerPasses host;
    host.set(tag::efFreqRange, range);
    host.set(tag::efRelease, 0.5F);
    host.skip(3000, 0.5F);
    EXPECT_NEAR(host.efOut(), range < 0.37F ? 0.5F : 0.0F, 1e-3F) << range;
    const double centre = std::pow(static_cast<double>(range), 3.0) * 7200.0 + 44.0;
    EXPECT_NEAR(host.client().signal().followerDisplay().readout().bandHz, centre, centre * 1e-5);
  }
}

// At a rate that the known answers do not have.
TEST(Follower, TheBandLiesAtItsFrequency) {
  const auto heard = [](double hz) {
    FollowerPasses host;
    host.set(tag::efFreqRange, 0.6F);  // 1599 Hz
    for (int frame = 0; frame < 600 * 16;) {
      for (float& x : host.in.left) {
        x = 0.1F * static_cast<float>(std::sin(6.283185307 * hz / 48000.0 * frame++));
      }
      host.in.right = host.in.left;
      host.pass();
    }
    return host.efOut();
  };
  const float inBand = heard(1599.0);
  EXPECT_GT(inBand, 0.05F);
  EXPECT_GT(inBand, 2.0F * heard(400.0));
  EXPECT_GT(inBand, 1.3F * heard(4000.0));
}

TEST(Follower, TheScopeRunsUnderItsTop) {
  FollowerPasses host;
  const FollowerScope& scope = host.client().signal().followerDisplay().scopeRing();
  const int before = scope.writeIndex;
  host.skip(2050, 5.0F);
  EXPECT_EQ(scope.writeIndex, (before + 2050) % 2048);
  EXPECT_EQ(scope.points[static_cast<std::size_t>(before)], 0.9890000224113464F);
}

}  // namespace
}  // namespace zum::test
