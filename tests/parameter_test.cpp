// Catches a parameter that lands on the wrong position, resets what it should not, shows the wrong
// name or value to a host, or lets a value from outside reach past a table.

#include <gtest/gtest.h>

#include <bit>
#include <climits>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <limits>
#include <set>

#include "support/test_host.hpp"

namespace zum::test {
namespace {

constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kInf = std::numeric_limits<float>::infinity();

/// The stored forms of a parameter that the engine reads.
const ControlValue& forms(TestHost& host, int tag) {
  return host.client().controls().*parameterRows()[static_cast<std::size_t>(rowOfTag(tag))].value;
}

TEST(Parameter, StepsTruncateToTheirPositions) {
  const std::tuple<int, float, int> cases[] = {
      {60, 0.0F, 0},     {60, 0.0998F, 0}, {60, 0.95F, 9},    {60, 1.0F, 9},     {61, 0.0999F, 1},
      {61, 0.0998F, 0},  {61, 0.8999F, 9}, {61, 0.8998F, 8},  {62, 0.4994F, 0},  {62, 0.4996F, 1},
      {65, 0.4994F, 0},  {65, 0.5F, 1},    {165, 0.3329F, 0}, {165, 0.3331F, 1}, {165, 0.6662F, 1},
      {165, 0.6664F, 2}, {12, 0.4994F, 0}, {12, 0.4996F, 1},  {222, 0.4F, 0},    {222, 0.5F, 1},
      {15, 0.19999F, 0}, {15, 0.2F, 1},    {15, 0.7999F, 3},  {15, 0.8F, 4},     {15, 1.0F, 4},
      {61, -0.3F, 0},    {61, -1e30F, 0},  {61, -kInf, 0},    {61, 7.0F, 9},     {61, 1e30F, 9},
      {165, kInf, 2},    {15, kInf, 4},    {222, -kInf, 0},   {62, 1e9F, 1},
  };
  TestHost host;
  for (const auto& [tag, value, position] : cases) {
    host.set(tag, value);
    EXPECT_EQ(forms(host, tag).integer, position) << tag << ' ' << value;
    EXPECT_EQ(forms(host, tag).stepped, static_cast<float>(position)) << tag << ' ' << value;
    EXPECT_EQ(forms(host, tag).raw, value) << tag;
  }
}

TEST(Parameter, HostileValuesOnAnyTagStayInsideTheTables) {
  const Stereo in = noise(256);
  for (const float value : {kNan, kInf, -kInf, 1e30F, -1e30F, -0.5F, 1.5F, 1e-40F}) {
    TestHost host;
    for (int tag = -5; tag <= 400; ++tag) {
      host.set(tag, value);
      const bool stored = (tag >= 0 && tag <= 52) || tag == 58 || tag == 59;
      const float back = host.get(tag);
      const float expected = stored ? value : 0.0F;
      EXPECT_EQ(std::bit_cast<std::uint32_t>(back), std::bit_cast<std::uint32_t>(expected))
          << "tag " << tag << ": " << back;
    }
    for (int type = 0; type < 20; ++type) {
      host.selectFilter(type);
      host.set(222, 0.0F);
      const Stereo out = host.render(in, {37});
      EXPECT_TRUE(std::isfinite(energy(out))) << "type " << type << " value " << value;
    }
  }
}

TEST(Parameter, VowelSelectorsHaveNineStepsAndNoGlide) {
  const std::array<float, 3> cases[] = {
      {0.0F, 320, 800},    {0.0625F, 320, 800},  {0.1249F, 320, 800}, {0.125F, 500, 1000},
      {0.25F, 700, 1150},  {0.375F, 1000, 1400}, {0.5F, 1500, 500},   {0.55F, 1500, 500},
      {0.625F, 1650, 320}, {0.75F, 1800, 700},   {0.875F, 2300, 500}, {0.999F, 2300, 500},
      {1.0F, 3200, 320},   {1.2F, 3200, 320},    {1e20F, 3200, 320},  {-0.1F, 320, 800},
      {-kInf, 320, 800},
  };
  TestHost host;
  for (const auto& [value, one, two] : cases) {
    SCOPED_TRACE(value);
    for (const int tag : {58, 59}) {
      host.set(117 - tag, 0.3F);  // the other one, which stays at 700 Hz
      host.set(tag, value);
      const EngineControls& controls = host.client().controls();
      const VowelFormants& moved = tag == 58 ? controls.formantsA : controls.formantsB;
      EXPECT_EQ(moved.formantOneHz, one);
      EXPECT_EQ(moved.formantTwoHz, two);
      EXPECT_EQ((tag == 58 ? controls.formantsB : controls.formantsA).formantOneHz, 700.0F);
    }
  }
}

TEST(Parameter, ReadoutsFollowTheirParameters) {
  TestHost host;
  const Readouts& shown = host.client().readouts();
  const std::tuple<int, float, const float&, double> cases[] = {
      {9, 0.0F, shown.efGainDb, -160.0},        {9, 0.5F, shown.efGainDb, 0.0},
      {9, 1.0F, shown.efGainDb, 6.0206},        {9, 0.75F, shown.efGain, 1.5},
      {13, 0.0F, shown.lfoThresholdDb, -160.0}, {13, 1.0F, shown.lfoThresholdDb, 0.0},
      {13, 0.5F, shown.lfoThreshold, 0.25},     {13, 0.5F, shown.lfoThresholdDb, -12.0412},
      {14, 0.37F, shown.glidePercent, 37.0},
  };
  for (const auto& [tag, value, readout, expected] : cases) {
    host.set(tag, value);
    EXPECT_NEAR(static_cast<double>(readout), expected, 1e-4) << tag << ' ' << value;
  }
}

TEST(Parameter, AmountsAreBipolar) {
  TestHost host;
  for (int tag = 17; tag <= 52; ++tag) {
    for (const auto& [value, bipolar] : {std::pair{0.0F, -1.0F}, {0.25F, -0.5F}, {0.5F, 0.0F}}) {
      host.set(tag, value);
      EXPECT_EQ(forms(host, tag).bipolar, bipolar) << tag;
    }
  }
}

const struct {
  int tag;
  int first, last;  // amounts
} kResets[] = {
    {72, 32, 33},  {79, 36, 37},  {86, 34, 35},  {93, 38, 39},  {100, 40, 41}, {107, 42, 43},
    {114, 44, 45}, {121, 46, 47}, {128, 48, 49}, {155, 17, 19}, {166, 20, 22}, {173, 23, 25},
    {180, 26, 28}, {187, 29, 31}, {213, 50, 52}, {199, 17, 52},
};

TEST(Parameter, ResetButtonsCentreTheirListOncePerMove) {
  for (const auto& reset : kResets) {
    TestHost host;
    const auto setAll = [&] {
      for (int tag = 0; tag <= 59; ++tag) host.set(tag, 0.75F);
    };
    const auto expectList = [&](float value, const char* when) {
      for (int tag = 0; tag <= 59; ++tag) {
        if (tag >= 53 && tag <= 57) continue;
        const bool member = tag >= reset.first && tag <= reset.last;
        EXPECT_EQ(host.get(tag), member ? value : 0.75F)
            << when << ", button " << reset.tag << ", tag " << tag;
      }
    };
    setAll();
    host.set(reset.tag, 0.4999F);
    expectList(0.75F, "still released");
    host.set(reset.tag, 0.5F);
    expectList(0.50001F, "pressed");
    setAll();
    host.set(reset.tag, 1.0F);
    expectList(0.75F, "pressed again");
    host.set(reset.tag, 0.0F);
    expectList(0.5F, "released");
    EXPECT_EQ(forms(host, reset.first).bipolar, 0.0F);
    setAll();
    host.set(reset.tag, 0.2F);
    expectList(0.75F, "released again");
  }
}

TEST(Parameter, OnlyResetButtonsAndOnlyPressesReset) {
  TestHost host;
  std::set<int> resetTags;
  for (const auto& reset : kResets) {
    host.set(reset.tag, 1.0F);
    resetTags.insert(reset.tag);
  }
  for (int tag = 17; tag <= 52; ++tag) host.set(tag, 0.7F);
  const auto expectKept = [&](const char* when) {
    for (int tag = 17; tag <= 52; ++tag) EXPECT_EQ(host.get(tag), 0.7F) << when << ' ' << tag;
  };
  for (int tag = 53; tag <= 223; ++tag) {
    if (resetTags.contains(tag)) continue;
    host.set(tag, 1.0F);
    host.set(tag, 0.0F);
  }
  expectKept("other buttons");
  host.dispatch(effSetSampleRate, 0, 0, nullptr, 48000.0F);
  expectKept("sample rate");
  host.host.hasTime = true;
  host.host.time.tempo = 97.0;
  host.render(noise(64));
  ASSERT_EQ(host.client().timing().tempoBpm, 97.0);
  expectKept("tempo");
}

TEST(Parameter, SelectorsShowTheirGroupsBelowAShownParent) {
  TestHost host;
  const auto shown = [&] {
    std::set<int> groups;
    for (int g = 0; g < GroupMask::kGroups; ++g) {
      if (host.client().groups().test(g)) groups.insert(g);
    }
    return groups;
  };
  EXPECT_EQ(shown(), (std::set{0, 1, 3}));
  const std::tuple<int, float, std::set<int>> steps[] = {
      {62, 1.0F, {0, 2, 3}},     {65, 1.0F, {0, 2, 3}},  // parent is hidden
      {165, 0.5F, {0, 2, 4, 7}},                         // the hidden choice comes back
      {65, 0.0F, {0, 2, 4, 6}},  {65, 0.9F, {0, 2, 4, 7}},  {165, 1.0F, {0, 2, 5}},
      {65, 0.0F, {0, 2, 5}},     {165, 0.4F, {0, 2, 4, 6}}, {62, 0.0F, {0, 1, 4, 6}},
      {165, 0.4F, {0, 1, 4, 6}}, {165, 0.0F, {0, 1, 3}},    {60, 1.0F, {0, 1, 3}},
      {61, 0.3F, {0, 1, 3}},     {165, kInf, {0, 1, 5}},
  };
  for (const auto& [tag, value, groups] : steps) {
    host.set(tag, value);
    EXPECT_EQ(shown(), groups) << "tag " << tag << " value " << value;
  }
}

TEST(Parameter, TheEngineSendsThePageAgainAndKeepsIt) {
  TestHost host;
  for (const auto& [value, raw, page] :
       {std::tuple{0.5F, 0.33898306F, 1}, {1.0F, 0.67796612F, 2}, {0.1F, 0.0F, 0}}) {
    host.set(165, value);
    EXPECT_EQ(forms(host, 165).raw, value);
    host.render(noise(64));
    EXPECT_NEAR(forms(host, 165).raw, raw, 1e-6F);
    EXPECT_EQ(forms(host, 165).integer, page);
  }
}

struct HostRow {
  int id;
  const char* name;
  float initial;
};
// By host index; the places of 53 to 57 are empty.
// clang-format off
const HostRow kHostRows[kHostParameters] = {
    {65, "Vowelcutoff", 0.0F}, {59, "Master", 0.6099F}, {2, "Mix_Dry_Wet", 0.5198F},
    {46, "Cutoff", 0.2157F}, {1, "Resonance", 1.0F}, {45, "Overdrive", 0.0F},
    {24, "EF_Freq_Range", 0.3798F}, {16, "EFAttack", 0.2298F}, {17, "EFRelease", 0.7797F},
    {15, "EF_Gain", 0.5493F}, {13, "LFO_Rate", 0.1496F}, {14, "LFO_Wave", 0.01F},
    {4, "LFO_TrigOnOff", 0.0F}, {21, "LFO_TrigSens", 0.25F}, {18, "Stepseq_Glide", 0.0F},
    {20, "xxx", 0.8F}, {19, "Stepseq_Tempo", 0.2518F}, {41, "CutoffEFAmt", 0.5F},
    {42, "CutoffLFOAmt", 0.5F}, {43, "CutoffSeqAmt", 0.5F}, {47, "VowelEFAmt", 0.5F},
    {48, "VowelLFOAmt", 0.5F}, {49, "VowelSeqAmt", 0.5F}, {50, "ResoEFAmt", 0.5F},
    {51, "ResoLFOAmt", 0.5F}, {52, "ResoSeqAmt", 0.5F}, {53, "DriveEFAmt", 0.5F},
    {54, "DriveLFOAmt", 0.5F}, {55, "DriveSeqAmt", 0.5F}, {56, "MixEFAmt", 0.5F},
    {57, "MixLFOAmt", 0.5F}, {58, "MixSeqAmt", 0.5F}, {22, "EFRangeLFOmod", 0.5F},
    {23, "EFRangeSEQmod", 0.5F}, {27, "EFAttLFOmod", 0.5F}, {28, "EFAttSeqMod", 0.5F},
    {25, "EFRelLFOMod", 0.5F}, {26, "EFRelSeqMod", 0.5F}, {29, "EFGainLFOMod", 0.5F},
    {30, "EFGainSeqMod", 0.5F}, {31, "LFOrateEFmod", 0.5F}, {32, "LFOrateSeqmod", 0.5F},
    {33, "LFOwaveEFmod", 0.5F}, {34, "LFOwaveSeqmod", 0.5F}, {35, "LFOtrigEFmod", 0.5F},
    {36, "LFOtrigSEQmod", 0.5F}, {37, "SeqtempoEFmod", 0.5F}, {38, "SeqtempoLFOmod", 0.5F},
    {39, "SeqGlideEFmod", 0.5F}, {64, "SeqGlideLFOmod", 0.5F}, {61, "MasterEFamt", 0.5F},
    {62, "MasterLFOamt", 0.5F}, {63, "MasterSEQamt", 0.5F}, {}, {}, {}, {}, {},
    {67, "Vowel_A", 0.3897F}, {68, "Vowel_B", 0.9098F},
};
// clang-format on

TEST(Parameter, HostsSeeNamesValuesAndSwitches) {
  TestHost host;
  for (const int index : {INT_MIN, -1, 60, 61, 62, 165, 222, 223, 1000, INT_MAX}) {
    EXPECT_EQ(host.text(effGetParamName, index), "empty") << index;
  }
  for (int index = -1; index <= kHostParameters; ++index) {
    SCOPED_TRACE(index);
    const bool inside = index >= 0 && index < kHostParameters;
    const HostRow row = inside ? kHostRows[index] : HostRow{};
    const bool known = row.name != nullptr;
    const std::string name = known ? row.name : "empty";
    EXPECT_EQ(host.text(effGetParamName, index), name);
    EXPECT_EQ(host.text(effGetParamLabel, index), name);
    EXPECT_EQ(host.get(index), row.initial);
    if (known) {
      EXPECT_EQ(parameterRows()[static_cast<std::size_t>(rowOfTag(index))].id, row.id);
      host.set(index, 0.69531F);
      EXPECT_EQ(host.text(effGetParamDisplay, index), "0.695310 ");
    } else {
      EXPECT_EQ(host.text(effGetParamDisplay, index), "empty");
    }
    VstParameterProperties properties;
    std::memset(&properties, 0x7F, sizeof properties);
    const auto answer = host.dispatch(effGetParameterProperties, index, 0, &properties);
    EXPECT_EQ(answer & 0xFF, known ? 1 : 0);
    EXPECT_STREQ(properties.label, name.c_str());
    EXPECT_EQ(properties.flags, index == 12 || index == 15 ? kVstParameterIsSwitch : 0);
  }
}

}  // namespace
}  // namespace zum::test
