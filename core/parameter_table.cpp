#include "core/parameter_table.hpp"

#include <array>

#include "core/tags.hpp"

namespace zum {
namespace {

using C = EngineControls;
using namespace tag;

// clang-format off

// What presets hold, in the order in which they hold it.
constexpr std::array<ParameterRow, kPresetRows> kPresetTable = {{
// tag            id  name              initial  rule                  positions  flags    value
  {vowelType,    40, "textedit",         0.09F, Rule::step,            10, kRedraw, &C::vowelType},
  {vowelA,       67, "Vowel_A",        0.3897F, Rule::vowel,            0, 0,       &C::vowelA},
  {vowelB,       68, "Vowel_B",        0.9098F, Rule::vowel,            0, 0,       &C::vowelB},
  {resonance,     1, "Resonance",         1.0F, Rule::plain,            0, 0,       &C::resonance},
  {mixDryWet,     2, "Mix_Dry_Wet",    0.5198F, Rule::plain,            0, 0,       &C::mixDryWet},
  {multiType,     3, "textedit",         0.05F, Rule::step,            10, kRedraw, &C::multiType},
  {bank,         60, "Switch",           0.25F, Rule::selector,         2, kRedraw, &C::bank},
  {lfoTrigOnOff,  4, "LFO_TrigOnOff",     0.0F, Rule::step,             2, 0,       &C::lfoTrigOnOff},
  {lfoStyle,     69, "LFO_Style",         0.0F, Rule::selector,         2, kRedraw, &C::lfoStyle},
  {stepTable,     5, "EventTableXY",      0.0F, Rule::table,            0, 0,       nullptr},
  {lfoRate,      13, "LFO_Rate",       0.1496F, Rule::plain,            0, 0,       &C::lfoRate},
  {lfoWave,      14, "LFO_Wave",         0.01F, Rule::plain,            0, 0,       &C::lfoWave},
  {efGain,       15, "EF_Gain",        0.5493F, Rule::gain,             0, 0,       &C::efGain},
  {efAttack,     16, "EFAttack",       0.2298F, Rule::plain,            0, 0,       &C::efAttack},
  {efRelease,    17, "EFRelease",      0.7797F, Rule::plain,            0, 0,       &C::efRelease},
  {seqGlide,     18, "Stepseq_Glide",     0.0F, Rule::percent,          0, 0,       &C::seqGlide},
  {seqTempo,     19, "Stepseq_Tempo",  0.2518F, Rule::plain,            0, 0,       &C::seqTempo},
  {seqMode,      20, "xxx",               0.8F, Rule::stepExact,        5, 0,       &C::seqMode},
  {lfoTrigSens,  21, "LFO_TrigSens",     0.25F, Rule::threshold,        0, 0,       &C::lfoTrigSens},
  {efRangeLfo,   22, "EFRangeLFOmod",     0.5F, Rule::amount,           0, 0,       &C::efRangeLfo},
  {efRangeSeq,   23, "EFRangeSEQmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::efRangeSeq},
  {efFreqRange,  24, "EF_Freq_Range",  0.3798F, Rule::plain,            0, 0,       &C::efFreqRange},
  {efReleaseLfo, 25, "EFRelLFOMod",       0.5F, Rule::amount,           0, 0,       &C::efReleaseLfo},
  {efReleaseSeq, 26, "EFRelSeqMod",       0.5F, Rule::sequencedAmount,  0, 0,       &C::efReleaseSeq},
  {efAttackLfo,  27, "EFAttLFOmod",       0.5F, Rule::amount,           0, 0,       &C::efAttackLfo},
  {efAttackSeq,  28, "EFAttSeqMod",       0.5F, Rule::sequencedAmount,  0, 0,       &C::efAttackSeq},
  {efGainLfo,    29, "EFGainLFOMod",      0.5F, Rule::amount,           0, 0,       &C::efGainLfo},
  {efGainSeq,    30, "EFGainSeqMod",      0.5F, Rule::sequencedAmount,  0, 0,       &C::efGainSeq},
  {lfoRateEf,    31, "LFOrateEFmod",      0.5F, Rule::amount,           0, 0,       &C::lfoRateEf},
  {lfoRateSeq,   32, "LFOrateSeqmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::lfoRateSeq},
  {lfoWaveEf,    33, "LFOwaveEFmod",      0.5F, Rule::amount,           0, 0,       &C::lfoWaveEf},
  {lfoWaveSeq,   34, "LFOwaveSeqmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::lfoWaveSeq},
  {lfoSensEf,    35, "LFOtrigEFmod",      0.5F, Rule::amount,           0, 0,       &C::lfoSensEf},
  {lfoSensSeq,   36, "LFOtrigSEQmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::lfoSensSeq},
  {seqTempoEf,   37, "SeqtempoEFmod",     0.5F, Rule::amount,           0, 0,       &C::seqTempoEf},
  {seqTempoLfo,  38, "SeqtempoLFOmod",    0.5F, Rule::amount,           0, 0,       &C::seqTempoLfo},
  {seqGlideEf,   39, "SeqGlideEFmod",     0.5F, Rule::amount,           0, 0,       &C::seqGlideEf},
  {seqGlideLfo,  64, "SeqGlideLFOmod",    0.5F, Rule::amount,           0, 0,       &C::seqGlideLfo},
  {cutoffEf,     41, "CutoffEFAmt",       0.5F, Rule::amount,           0, 0,       &C::cutoffEf},
  {cutoffLfo,    42, "CutoffLFOAmt",      0.5F, Rule::amount,           0, 0,       &C::cutoffLfo},
  {cutoffSeq,    43, "CutoffSeqAmt",      0.5F, Rule::sequencedAmount,  0, 0,       &C::cutoffSeq},
  {modChoice,    44, "Modchoice",         0.0F, Rule::selector,         3, kRedraw, &C::modChoice},
  {overdrive,    45, "Overdrive",         0.0F, Rule::plain,            0, 0,       &C::overdrive},
  {cutoff,       46, "Cutoff",         0.2157F, Rule::plain,            0, 0,       &C::cutoff},
  {vowelCutoff,  65, "Vowelcutoff",       0.0F, Rule::plain,            0, 0,       &C::vowelCutoff},
  {vowelEf,      47, "VowelEFAmt",        0.5F, Rule::amount,           0, 0,       &C::vowelEf},
  {vowelLfo,     48, "VowelLFOAmt",       0.5F, Rule::amount,           0, 0,       &C::vowelLfo},
  {vowelSeq,     49, "VowelSeqAmt",       0.5F, Rule::sequencedAmount,  0, 0,       &C::vowelSeq},
  {resoEf,       50, "ResoEFAmt",         0.5F, Rule::amount,           0, 0,       &C::resoEf},
  {resoLfo,      51, "ResoLFOAmt",        0.5F, Rule::amount,           0, 0,       &C::resoLfo},
  {resoSeq,      52, "ResoSeqAmt",        0.5F, Rule::sequencedAmount,  0, 0,       &C::resoSeq},
  {driveEf,      53, "DriveEFAmt",        0.5F, Rule::amount,           0, 0,       &C::driveEf},
  {driveLfo,     54, "DriveLFOAmt",       0.5F, Rule::amount,           0, 0,       &C::driveLfo},
  {driveSeq,     55, "DriveSeqAmt",       0.5F, Rule::sequencedAmount,  0, 0,       &C::driveSeq},
  {mixEf,        56, "MixEFAmt",          0.5F, Rule::amount,           0, 0,       &C::mixEf},
  {mixLfo,       57, "MixLFOAmt",         0.5F, Rule::amount,           0, 0,       &C::mixLfo},
  {mixSeq,       58, "MixSeqAmt",         0.5F, Rule::sequencedAmount,  0, 0,       &C::mixSeq},
  {master,       59, "Master",         0.6099F, Rule::plain,            0, 0,       &C::master},
  {masterEf,     61, "MasterEFamt",       0.5F, Rule::amount,           0, 0,       &C::masterEf},
  {masterLfo,    62, "MasterLFOamt",      0.5F, Rule::amount,           0, 0,       &C::masterLfo},
  {masterSeq,    63, "MasterSEQamt",      0.5F, Rule::sequencedAmount,  0, 0,       &C::masterSeq},
  {bypass,       66, "Bypass",            0.0F, Rule::step,             2, kRedraw, &C::bypass},
}};

// The panels behind the main knobs. The panels of sequencer tempo and glide are crossed: each learns
// the knob of the other one.
struct PanelRow {
  Panel buttons;
  int learnTarget;
  std::int16_t resets[3];  // amounts, -1 ends the list
  const char* resetName;
  const char* closeName;
  const char* learnName;
  const char* clearName;
  float learnInitial;  // raw
};
constexpr PanelRow kPanels[] = {
// buttons            learns       resets                               names
  {efFreqRangePanel,  efFreqRange, {efRangeLfo, efRangeSeq, -1},         "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {efReleasePanel,    efRelease,   {efReleaseLfo, efReleaseSeq, -1},     "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {efAttackPanel,     efAttack,    {efAttackLfo, efAttackSeq, -1},       "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {efGainPanel,       efGain,      {efGainLfo, efGainSeq, -1},           "Button_c_c_c", "close_c", "lern_c_c", "clear_c_c", 0.0F},
  {lfoRatePanel,      lfoRate,     {lfoRateEf, lfoRateSeq, -1},          "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {lfoWavePanel,      lfoWave,     {lfoWaveEf, lfoWaveSeq, -1},          "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {lfoTrigSensPanel,  lfoTrigSens, {lfoSensEf, lfoSensSeq, -1},          "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {seqTempoPanel,     seqGlide,    {seqTempoEf, seqTempoLfo, -1},        "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {seqGlidePanel,     seqTempo,    {seqGlideEf, seqGlideLfo, -1},        "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {cutoffPanel,       cutoff,      {cutoffEf, cutoffLfo, cutoffSeq},     "Button_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {vowelCutoffPanel,  vowelCutoff, {vowelEf, vowelLfo, vowelSeq},        "Button_c", "close_c", "lern_c", "clear_c", 0.0F},
  {resonancePanel,    resonance,   {resoEf, resoLfo, resoSeq},           "Button_c_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {overdrivePanel,    overdrive,   {driveEf, driveLfo, driveSeq},        "Button_c_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {mixDryWetPanel,    mixDryWet,   {mixEf, mixLfo, mixSeq},              "Button_c_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {masterPanel,       master,      {masterEf, masterLfo, masterSeq},     "Button_c_c_c", "close", "lern", "clear", 0.5F},
};
constexpr int kPanelCount = static_cast<int>(std::size(kPanels));

// Every amount, in the order in which the global reset centres them.
constexpr std::int16_t kAllAmounts[] = {
  efRangeLfo, efRangeSeq, efReleaseLfo, efReleaseSeq, efAttackLfo, efAttackSeq,
  efGainLfo, efGainSeq, lfoRateEf, lfoRateSeq, lfoWaveEf, lfoWaveSeq, lfoSensEf, lfoSensSeq,
  seqTempoEf, seqTempoLfo, seqGlideEf, seqGlideLfo,
  cutoffEf, cutoffLfo, cutoffSeq, vowelEf, vowelLfo, vowelSeq, resoEf, resoLfo, resoSeq,
  driveEf, driveLfo, driveSeq, mixEf, mixLfo, mixSeq, masterEf, masterLfo, masterSeq,
};

constexpr ParameterRow kGlobalTable[] = {
  {mouseArea,          -1, "MouseArea",     0.0F, Rule::area,        0, 0,       &C::areaPosition},
  {resetAll,           -1, "Button",        0.0F, Rule::resetButton, 0, kRedraw, nullptr, kAllAmounts},
  {choosePresetFolder, -1, "select",        0.0F, Rule::button,      0, kRedraw},
  {resetPresetFolder,  -1, "reset",         0.0F, Rule::button,      0, kRedraw},
  {nextProgram,        -1, "nxtpr",         0.0F, Rule::button,      0, kRedraw},
  {previousProgram,    -1, "prevpr",        0.0F, Rule::button,      0, kRedraw},
  {about,              -1, "aboutbutton_c", 0.0F, Rule::button,      0, kRedraw},
};

// clang-format on

constexpr std::span<const std::int16_t> resetsOf(const PanelRow& panel) {
  return std::span(panel.resets).first(panel.resets[2] < 0 ? 2 : 3);
}

static_assert(kPresetRows + 4 * kPanelCount + std::size(kGlobalTable) == kParameterRows);

constexpr std::array<ParameterRow, kParameterRows> kRows = [] {
  std::array<ParameterRow, kParameterRows> rows{};
  auto* next = rows.data();
  for (const ParameterRow& row : kPresetTable) *next++ = row;
  for (const PanelRow& panel : kPanels) {
    const auto button = [&panel](int tag, const char* name, float initial) {
      ParameterRow row{tag, -1, name, initial, Rule::button};
      row.learnTarget = panel.learnTarget;
      return row;
    };
    *next = button(panel.buttons.reset, panel.resetName, 0.0F);
    next->rule = Rule::resetButton;
    next->flags = kRedraw;
    next->resets = resetsOf(panel);
    ++next;
    *next++ = button(panel.buttons.close, panel.closeName, 0.0F);
    *next++ = button(panel.buttons.learn, panel.learnName, panel.learnInitial);
    *next++ = button(panel.buttons.clear, panel.clearName, 0.0F);
  }
  for (const ParameterRow& row : kGlobalTable) *next++ = row;
  return rows;
}();

constexpr std::array<std::int16_t, kLastTag + 1> kRowOfTag = [] {
  std::array<std::int16_t, kLastTag + 1> positions{};
  positions.fill(-1);
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    positions[static_cast<std::size_t>(kRows[i].tag)] = static_cast<std::int16_t>(i);
  }
  return positions;
}();

constexpr std::array<std::int16_t, kLastId + 1> kRowOfId = [] {
  std::array<std::int16_t, kLastId + 1> positions{};
  positions.fill(-1);
  for (std::size_t i = 0; i < kPresetTable.size(); ++i) {
    positions[static_cast<std::size_t>(kPresetTable[i].id)] = static_cast<std::int16_t>(i);
  }
  return positions;
}();

constexpr bool tagsAndIdsAreUnique() {
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    if (kRowOfTag[static_cast<std::size_t>(kRows[i].tag)] != static_cast<std::int16_t>(i)) {
      return false;
    }
    for (std::size_t j = 0; j < i; ++j) {
      if (kRows[i].id >= 0 && kRows[i].id == kRows[j].id) return false;
    }
  }
  return true;
}
static_assert(tagsAndIdsAreUnique());

}  // namespace

std::span<const ParameterRow> parameterRows() ZUM_REALTIME { return kRows; }

int rowOfTag(int tag) ZUM_REALTIME {
  return tag >= 0 && tag <= kLastTag ? kRowOfTag[static_cast<std::size_t>(tag)] : -1;
}

int rowOfId(int id) ZUM_REALTIME {
  return id >= 0 && id <= kLastId ? kRowOfId[static_cast<std::size_t>(id)] : -1;
}

}  // namespace zum
