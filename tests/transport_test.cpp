// Catches tempo, position or sample rate taken by the wrong rule, a host asked more than once a
// block, and an offline block that touches anything.

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "support/test_host.hpp"

namespace zum::test {
namespace {

constexpr double kNan = std::numeric_limits<double>::quiet_NaN();
constexpr double kInf = std::numeric_limits<double>::infinity();

TEST(Transport, TempoIsHeldAboveItsLowerEndAndIgnoredAboveItsUpper) {
  const std::pair<double, double> cases[] = {{44.999, 45.0}, {45.0, 45.0},    {120.5, 120.5},
                                             {500.0, 500.0}, {500.001, 90.0}, {kInf, 90.0},
                                             {kNan, 90.0},   {-kInf, 45.0},   {0.0, 45.0}};
  for (const auto& [tempo, used] : cases) {
    TestHost host;
    EXPECT_EQ(host.client().timing().tempoBpm, 120.0);
    host.giveTime(90.0);
    host.render(noise(64));
    host.giveTime(tempo);
    host.render(noise(64));
    const KvSystemInfo& timing = host.client().timing();
    EXPECT_EQ(timing.tempoBpm, used) << tempo;
    EXPECT_NEAR(timing.samplesPerBeat, 44100.0 * 60.0 / used, 1e-8) << tempo;
    EXPECT_NEAR(timing.controlTicksPerBeat, 44100.0 * 3.75 / used, 1e-3) << tempo;
  }
}

TEST(Transport, TempoWaitsForTheControlPass) {
  TestHost host;
  host.render(noise(1));
  host.giveTime(80.0);
  host.render(noise(15), {1});
  EXPECT_EQ(host.client().timing().tempoBpm, 120.0);
  host.render(noise(1));
  EXPECT_EQ(host.client().timing().tempoBpm, 80.0);
}

TEST(Transport, PositionCountsWhileThePlayingBitIsSetOrTheHostHidesIt) {
  const struct {
    const char* product;
    std::int32_t flags;
    double position;
    bool running;
  } cases[] = {
      {"Test Host", kVstTransportPlaying, 12.25, true},
      {"Test Host", kVstTransportPlaying, 0.0, true},
      {"Test Host", kVstTransportPlaying, -0.5, false},
      {"Test Host", kVstTransportPlaying, kNan, false},
      {"Test Host", ~kVstTransportPlaying, 12.0, false},
      {"Sony ACID Pro", 0, 12.0, true},
      {"Sony ACID Pro", 0, -0.5, false},
      {"sony acid pro", 0, 12.0, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.product << ' ' << c.flags << ' ' << c.position);
    HostState state;
    state.product = c.product;
    TestHost host(44100.0F, state);
    host.giveTime(100.0, 7.0, kVstTransportPlaying);
    host.render(noise(3));
    host.giveTime(100.0, c.position, c.flags);
    host.render(noise(3));
    const KvSystemInfo& timing = host.client().timing();
    const double position = c.running ? c.position : 0.0;
    EXPECT_EQ(std::tuple(timing.transportRunning, timing.transportPpqWide, timing.transportPpq),
              std::tuple(c.running ? 1.0F : 0.0F, position, static_cast<float>(position)));
  }
}

TEST(Transport, AnotherSourceOfTimeOrNoneAtAll) {
  TestHost host;
  host.giveTime(77.0, 3.5, kVstTransportPlaying);
  host.render(noise(64));
  host.host.hasTime = false;  // the last values stay
  host.render(noise(64));
  const KvSystemInfo& timing = host.client().timing();
  EXPECT_EQ(std::tuple(timing.tempoBpm, timing.transportPpqWide, timing.transportRunning),
            std::tuple(77.0, 3.5, 1.0F));
  host.client().adaptorTransport = true;  // an adaptor's record stands in for the host's
  VstTimeInfo& time = host.client().adaptorTime();
  time.tempo = 150.0;
  time.ppqPos = 9.0;
  time.flags = kVstTransportPlaying;
  host.render(noise(64));
  EXPECT_EQ(std::tuple(timing.tempoBpm, timing.transportPpqWide, host.host.timeCalls),
            std::tuple(150.0, 9.0, 2));
}

TEST(Transport, OneCallEachForLevelAndTimeHoweverLongTheBlock) {
  TestHost host;
  host.giveTime(600.0);  // differs in every control pass
  host.host.calls.clear();
  for (const std::int32_t frames : {1, 17, 65536}) {
    host.render(noise(static_cast<std::size_t>(frames)), {frames});
  }
  EXPECT_EQ(std::pair(host.host.levelCalls, host.host.timeCalls), std::pair(3, 3));
  EXPECT_EQ(host.host.timeFilter, 0x1E02);
  EXPECT_TRUE(host.host.calls.empty());
}

TEST(Transport, AnOfflineBlockTouchesNothing) {
  TestHost host;
  TestHost twin;
  const Stereo in = noise(2000);
  ASSERT_EQ(host.render(in), twin.render(in));
  EXPECT_FALSE(host.client().inProcess);

  host.host.level = kVstProcessLevelOffline;
  host.giveTime(60.0, 5.0, kVstTransportPlaying);
  const Stereo before = noise(333, 3.0F);
  Stereo out = before;
  host.process(in, out, 0, 333);
  EXPECT_EQ(out, before);
  EXPECT_TRUE(host.client().inProcess);
  EXPECT_EQ(host.host.timeCalls, twin.host.timeCalls);
  EXPECT_EQ(host.client().timing().tempoBpm, 120.0);

  host.host.level = kVstProcessLevelUser;
  host.host.hasTime = false;
  EXPECT_EQ(host.render(in), twin.render(in));
  EXPECT_FALSE(host.client().inProcess);
}

TEST(Transport, SampleRatesOutsideTheLimitsLeaveTheOldOne) {
  TestHost host;
  const float below = std::nextafter(11050.0F, 0.0F);
  const float above = std::nextafter(196000.0F, 1e9F);
  for (const float taken : {11050.0F, 196000.0F, 22050.0F}) {
    for (const float rate : {taken, below, above, -44100.0F, static_cast<float>(kNan)}) {
      host.dispatch(effSetSampleRate, 0, 0, nullptr, rate);
      EXPECT_EQ(host.client().timing().sampleRate, taken) << rate;
      EXPECT_EQ(host.client().timing().samplesPerBeat, static_cast<double>(taken) / 2.0) << rate;
    }
    for (const int type : {6, 16}) {  // the combs' rings follow the rate
      host.selectFilter(type);
      EXPECT_TRUE(std::isfinite(energy(host.render(noise(6000))))) << taken;
    }
  }
}

TEST(Transport, DerivedConstantsAreExact) {
  // clang-format off
  const std::array<float, 12> cases[] = {
      {44100.0F, 1.0F, 2.26757365e-05F, 4.53514731e-05F, 0.000142475867F, 7.12379333e-05F,
       0.000362811785F, 2.75625014F, 44.1000023F, 7018.73291F, 0.0232199542F, 1378.125F},
      {96000.0F, 2.17687082F, 1.04166666e-05F, 2.08333331e-05F, 6.54498508e-05F, 3.27249254e-05F,
       0.000166666665F, 6.00000048F, 96.0000076F, 15278.874F, 0.0106666666F, 3000.0F},
  };
  // clang-format on
  for (const auto& expected : cases) {
    TestHost host(expected[0]);
    const KvSystemInfo& t = host.client().timing();
    const std::array<float, 12> derived = {
        t.sampleRate,    t.rateRatio,     t.invSampleRate,        t.twoOverRate,
        t.twoPiOverRate, t.piOverRate,    t.controlPeriod,        t.ticksPerMs,
        t.samplesPerMs,  t.rateOverTwoPi, t.inverseOfRatePer1024, t.controlTicksPerBeat};
    EXPECT_EQ(derived, expected);
  }
}

}  // namespace
}  // namespace zum::test
