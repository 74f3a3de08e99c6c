// Catches a parameter that lands on the wrong position, resets what it should not, shows the wrong
// name or value to a host, or lets a value from outside reach past a table.

#include <gtest/gtest.h>

#include <climits>
#include <cstring>
#include <limits>
#include <map>
#include <set>

#include "core/tags.hpp"
#include "platform/random_source.hpp"
#include "support/control_passes.hpp"

namespace zum::test {
namespace {

constexpr float kInf = std::numeric_limits<float>::infinity();

/// The stored forms of a parameter that the engine reads.
const ControlValue& forms(TestHost& host, int tag) {
  return host.client().controls().*findRow(tag)->value;
}

bool isHosts(int tag) {
  return (tag >= tag::vowelCutoff && tag <= tag::masterSeq) || tag == tag::vowelA ||
         tag == tag::vowelB;
}

TEST(Parameter, StepsTruncateToTheirPositions) {
  const std::pair<int, std::vector<std::pair<float, int>>> cases[] = {
      {tag::vowelType, {{0.0F, 0}, {0.0998F, 0}, {0.95F, 9}, {1.0F, 9}}},
      {tag::multiType, {{0.0999F, 1}, {0.0998F, 0}, {0.8999F, 9}, {-0.3F, 0}, {1e30F, 9}}},
      {tag::bank, {{0.4994F, 0}, {0.4996F, 1}, {1e9F, 1}}},
      {tag::lfoStyle, {{0.4994F, 0}, {0.5F, 1}}},
      {tag::modChoice, {{0.3329F, 0}, {0.3331F, 1}, {0.6662F, 1}, {0.6664F, 2}, {kInf, 2}}},
      {tag::lfoTrigOnOff, {{0.4994F, 0}, {0.4996F, 1}}},
      {tag::bypass, {{0.4F, 0}, {0.5F, 1}, {-kInf, 0}}},
      {tag::seqMode, {{0.19999F, 0}, {0.2F, 1}, {0.7999F, 3}, {0.8F, 4}, {1.0F, 4}, {kInf, 4}}},
  };
  TestHost host;
  for (const auto& [tag, positions] : cases) {
    for (const auto& [value, position] : positions) {
      host.set(tag, value);
      const ControlValue& set = forms(host, tag);
      EXPECT_EQ(std::tuple(set.integer, set.stepped, set.raw),
                std::tuple(position, static_cast<float>(position), value))
          << tag;
    }
  }
}

TEST(Parameter, ReadoutsFollowTheirParameters) {
  TestHost host;
  const Readouts& shown = host.client().readouts();
  const std::tuple<int, float, const float&, double> cases[] = {
      {tag::efGain, 0.0F, shown.efGainDb, -160.0},
      {tag::efGain, 1.0F, shown.efGainDb, 6.0206},
      {tag::efGain, 0.75F, shown.efGain, 1.5},
      {tag::lfoTrigSens, 0.0F, shown.lfoThresholdDb, -160.0},
      {tag::lfoTrigSens, 0.5F, shown.lfoThreshold, 0.25},
      {tag::lfoTrigSens, 0.5F, shown.lfoThresholdDb, -12.0412},
      {tag::seqGlide, 0.37F, shown.glidePercent, 37.0},
  };
  for (const auto& [tag, value, readout, expected] : cases) {
    host.set(tag, value);
    EXPECT_NEAR(static_cast<double>(readout), expected, 1e-4) << tag << ' ' << value;
  }
}

/// A button, the amounts that it centres, and the knob that the buttons beside it speak of: those
/// of sequencer tempo and glide are crossed.
const struct {
  int tag, first, last, knob;
} kResets[] = {{tag::efFreqRangePanel.reset, tag::efRangeLfo, tag::efRangeSeq, tag::efFreqRange},
               {tag::efReleasePanel.reset, tag::efReleaseLfo, tag::efReleaseSeq, tag::efRelease},
               {tag::efAttackPanel.reset, tag::efAttackLfo, tag::efAttackSeq, tag::efAttack},
               {tag::efGainPanel.reset, tag::efGainLfo, tag::efGainSeq, tag::efGain},
               {tag::lfoRatePanel.reset, tag::lfoRateEf, tag::lfoRateSeq, tag::lfoRate},
               {tag::lfoWavePanel.reset, tag::lfoWaveEf, tag::lfoWaveSeq, tag::lfoWave},
               {tag::lfoTrigSensPanel.reset, tag::lfoSensEf, tag::lfoSensSeq, tag::lfoTrigSens},
               {tag::seqTempoPanel.reset, tag::seqTempoEf, tag::seqTempoLfo, tag::seqGlide},
               {tag::seqGlidePanel.reset, tag::seqGlideEf, tag::seqGlideLfo, tag::seqTempo},
               {tag::cutoffPanel.reset, tag::cutoffEf, tag::cutoffSeq, tag::cutoff},
               {tag::vowelCutoffPanel.reset, tag::vowelEf, tag::vowelSeq, tag::vowelCutoff},
               {tag::resonancePanel.reset, tag::resoEf, tag::resoSeq, tag::resonance},
               {tag::overdrivePanel.reset, tag::driveEf, tag::driveSeq, tag::overdrive},
               {tag::mixDryWetPanel.reset, tag::mixEf, tag::mixSeq, tag::mixDryWet},
               {tag::masterPanel.reset, tag::masterEf, tag::masterSeq, tag::master},
               {tag::resetAll, tag::cutoffEf, tag::masterSeq, -1}};

TEST(Parameter, ResetButtonsCentreTheirListOncePerMove) {
  const std::pair<float, float> moves[] = {{0.4999F, 0.75F},  // still released
                                           {0.5F, 0.50001F},  // pressed
                                           {1.0F, 0.75F},     // pressed again
                                           {0.0F, 0.5F},      // released
                                           {0.2F, 0.75F}};    // released again
  for (const auto& reset : kResets) {
    const auto row = static_cast<std::size_t>(rowOfTag(reset.tag));
    const std::size_t buttons = reset.knob < 0 ? 1 : 4;  // of a panel: reset, close, learn, clear
    for (const ParameterRow& button : parameterRows().subspan(row, buttons)) {
      EXPECT_EQ(button.panel != nullptr ? button.panel->learns : -1, reset.knob) << button.tag;
    }
    TestHost host;
    for (const auto& [button, centre] : moves) {
      for (int tag = 0; tag < kHostParameters; ++tag) host.set(tag, 0.75F);
      host.set(reset.tag, button);
      for (int tag = 0; tag < kHostParameters; ++tag) {
        const bool member = tag >= reset.first && tag <= reset.last;
        EXPECT_TRUE(!isHosts(tag) || host.get(tag) == (member ? centre : 0.75F))
            << tag << " by " << reset.tag << " at " << button;
      }
      EXPECT_TRUE(centre != 0.5F || forms(host, reset.first).bipolar == 0.0F);
    }
  }
}

TEST(Parameter, NothingElseCentresAmounts) {
  TestHost host;
  for (const auto& reset : kResets) host.set(reset.tag, 1.0F);  // so that they stay pressed
  for (int tag = tag::cutoffEf; tag <= tag::masterSeq; ++tag) host.set(tag, 0.7F);
  for (int tag = tag::masterSeq + 1; tag <= kLastTag + 1; ++tag) {
    host.set(tag, 1.0F);
    if (findRow(tag) == nullptr || findRow(tag)->resets.empty()) host.set(tag, 0.0F);
  }
  host.dispatch(effSetSampleRate, 0, 0, nullptr, 48000.0F);
  host.giveTime(97.0);
  host.render(noise(64));
  for (int tag = tag::cutoffEf; tag <= tag::masterSeq; ++tag) EXPECT_EQ(host.get(tag), 0.7F) << tag;
}

TEST(Parameter, ChanceMovesAmountsByAQuarterAndKnobsByAll) {
  SystemRandom random(1);
  const std::tuple<int, float, float, float> cases[] = {{tag::cutoffEf, 0.5F, 0.25F, 0.75F},
                                                        {tag::masterSeq, 0.9F, 0.65F, 1.0F},
                                                        {tag::cutoff, 0.3F, 0.0F, 1.0F}};
  for (const auto& [tag, from, low, high] : cases) {
    TestHost host;
    std::set<float> seen;
    for (int i = 0; i < 300; ++i) {
      host.set(tag, from);
      host.client().randomise(random);
      seen.insert(host.get(tag));
    }
    EXPECT_NEAR(*seen.begin(), low + 0.025F, 0.02501F) << tag;
    EXPECT_NEAR(*seen.rbegin(), high - 0.025F, 0.02501F) << tag;
  }
}

TEST(Parameter, TheEngineSendsThePageAgainAndKeepsIt) {
  TestHost host;
  for (const auto& [value, raw, page] :
       {std::tuple{0.5F, 0.33898306F, 1}, {1.0F, 0.67796612F, 2}, {0.1F, 0.0F, 0}}) {
    host.set(tag::modChoice, value);
    host.render(noise(64));
    EXPECT_NEAR(forms(host, tag::modChoice).raw, raw, 1e-6F);
    EXPECT_EQ(forms(host, tag::modChoice).integer, page);
  }
}

TEST(Parameter, ThePageFollowsTheTabStripWhileItIsHeld) {
  ControlPasses host;
  host.prepare(4, 0.5F, 0.3F, 0.0F);
  KvUniClient& client = host.client();
  const auto pageAt = [&](float held, float x) {
    client.setMouseArea({held, 0.0F, x, 0.0F, 0.0F, 0.0F});
    client.setParameter(tag::mouseArea, x);
    host.pass(0.0F);
    return client.value(tag::modChoice).integer;
  };
  EXPECT_EQ(pageAt(0.0F, 0.9F), 0);
  EXPECT_EQ(pageAt(1.0F, 0.9F), 2);
  EXPECT_EQ(pageAt(1.0F, 0.4F), 1);  // slid along
  EXPECT_EQ(pageAt(0.0F, 0.4F), 1);  // and stays
  client.setParameter(tag::modChoice, 1.0F);
  host.pass(0.0F);
  EXPECT_EQ(client.value(tag::modChoice).integer, 2);
  EXPECT_EQ(pageAt(1.0F, 0.0F), 0);
}

// Hosts keep automation by these numbers and names, sessions and presets keep values by these
// identifiers, and what a preset does not hold starts here: none of it may ever change.
TEST(Parameter, WhatOthersKeepStaysAsItWas) {
  std::string rows;
  for (const ParameterRow& row : parameterRows().first(kPresetRows)) {
    rows += std::to_string(row.tag) + ' ' + std::to_string(row.id) + ' ' + row.name + ' ' +
            std::to_string(row.initial) + '\n';
  }
  std::uint32_t sum = 0;
  for (const char c : rows) sum = (sum ^ static_cast<unsigned char>(c)) * 16777619U;
  EXPECT_EQ(sum, 1163042348U) << rows;
}

TEST(Parameter, HostsSeeNamesValuesAndSwitches) {
  TestHost host;
  using Seen = std::vector<std::string>;  // the answer, its label and flags, and three texts
  const auto seen = [&host](int index) {
    VstParameterProperties properties;
    std::memset(&properties, 0x7F, sizeof properties);
    const auto answer = host.dispatch(effGetParameterProperties, index, 0, &properties) & 0xFF;
    Seen all = {std::to_string(answer), properties.label, std::to_string(properties.flags)};
    for (const int opcode : {effGetParamName, effGetParamLabel, effGetParamDisplay}) {
      all.push_back(host.text(opcode, index));
    }
    return all;
  };
  for (const int index : {INT_MIN, -1, tag::masterSeq + 1, tag::vowelA - 1, kHostParameters,
                          tag::modChoice, kLastTag, INT_MAX}) {
    EXPECT_EQ(seen(index), (Seen{"0", "empty", "0", "empty", "empty", "empty"})) << index;
  }
  for (int index = 0; index < kHostParameters; ++index) {
    if (!isHosts(index)) continue;
    const ParameterRow& row = *findRow(index);
    EXPECT_EQ(host.get(index), row.initial) << index;
    host.set(index, 0.69531F);
    const char* const flags = index == tag::lfoTrigOnOff || index == tag::seqMode ? "1" : "0";
    EXPECT_EQ(seen(index), (Seen{"1", row.name, flags, row.name, row.name, "0.695310 "}));
  }
}

TEST(Parameter, PathsAndTitlesTellEachFromTheOthers) {
  std::map<std::string, int> tags;
  for (const ParameterRow& row : parameterRows()) {
    EXPECT_FALSE(*row.path == '\0' || row.title.front() == '\0') << row.tag;
    const std::string name = std::string(row.path) + ": " + row.title.data();
    EXPECT_TRUE(tags.emplace(name, row.tag).second) << name;
  }
  for (const auto& [name, tag] : {std::pair{"Filter: Vowel A", tag::vowelA},
                                  {"LFO: Rate by follower", tag::lfoRateEf},
                                  {"Sequencer: Glide by LFO", tag::seqGlideLfo},
                                  {"Filter: Morph by sequencer", tag::vowelSeq},
                                  {"Output: Master: learn", tag::masterPanel.learn}}) {
    EXPECT_EQ(tags[name], tag) << name;
  }
}

}  // namespace
}  // namespace zum::test
