// The rows of the parameter table as they are written. core/parameter_table.cpp alone reads them,
// and makes of them what all others read.
#pragma once

#include <array>

#include "core/parameter_table.hpp"
#include "core/value_names.hpp"

namespace zum::rows {

using namespace tag;
using C = EngineControls;
using Value = ControlValue EngineControls::*;

/// What a value becomes, and what a control sends.
struct Kind {
  Rule rule;
  std::uint8_t positions = 0;
  float perCount = 1.0F;
  std::uint8_t flags = 0;
  Unit unit = Unit::percent;
  std::span<const char* const> names = {};
};

/// Where a host shows a parameter. Three modules are modulators, too, and move the others.
struct Module {
  const char* path;
  const char* by = nullptr;
  Rule amount = Rule::amount;
};

struct Row {
  int tag;
  int id;
  float initial;  // raw
  Kind kind;
  Value value;
  const char* name;  // towards the host
  Module module;     // of an amount: the one that it brings in
  const char* title = nullptr;
  int knob = -1;  // that an amount moves
};

/// The panel of a main knob.
struct PanelRow {
  PanelButtons buttons;
  int knob;
  const char* resetName;
  const char* closeName;
  const char* learnName;
  const char* clearName;
  int learns = -1;            // another knob
  float learnInitial = 0.0F;  // raw
};

// clang-format off

inline constexpr Module filter{"Filter"};
inline constexpr Module drive {"Drive"};
inline constexpr Module output{"Output"};
inline constexpr Module ef    {"Follower",  " by follower"};
inline constexpr Module lfo   {"LFO",       " by LFO"};
inline constexpr Module seq   {"Sequencer", " by sequencer", Rule::amount};
inline constexpr Module window{"Window"};

//                                         positions  per count        flags    unit
inline constexpr Kind plain    {Rule::plain};
inline constexpr Kind tuning   {Rule::plain,       0, 1.0F,            0,       Unit::cutoff};
inline constexpr Kind band     {Rule::plain,       0, 1.0F,            0,       Unit::range};
inline constexpr Kind rise     {Rule::plain,       0, 1.0F,            0,       Unit::attack};
inline constexpr Kind note     {Rule::plain,       0, 1.0F,            0,       Unit::note};
inline constexpr Kind fall     {Rule::plain,       0, 1.0F,            0,       Unit::release};
inline constexpr Kind wave     {Rule::plain,       0, 1.0F,            0,       Unit::names, names::kWaves};
inline constexpr Kind level    {Rule::plain,       0, 1.0F,            0,       Unit::gain};
inline constexpr Kind gain     {Rule::gain,        0, 1.0F,            0,       Unit::gain};
inline constexpr Kind threshold{Rule::threshold,   0, 1.0F,            0,       Unit::threshold};
inline constexpr Kind percent  {Rule::percent};
inline constexpr Kind vowel    {Rule::vowel,       0, 1.0F,            0,       Unit::names, names::kVowels};
inline constexpr Kind area     {Rule::area};
inline constexpr Kind table    {Rule::table};
inline constexpr Kind onOff    {Rule::step,        2, 0.5F,            0,       Unit::steps, names::kSwitch};
inline constexpr Kind bypassed {Rule::step,        2, 0.5F,            kRedraw, Unit::steps, names::kSwitch};
inline constexpr Kind types    {Rule::step,       10, 0.1F,            kRedraw, Unit::steps, names::kTypes};
inline constexpr Kind orders   {Rule::stepExact,   5, 0.2000100016593933F,  // cut, so a hair above
                                                                       0,       Unit::steps, names::kOrders};
inline constexpr Kind banks    {Rule::selector,    2, 0.5F,            kRedraw, Unit::steps, names::kBanks};
inline constexpr Kind modes    {Rule::selector,    2, 0.5F,            kRedraw, Unit::steps, names::kModes};
inline constexpr Kind pages    {Rule::selector,    3, 0.33333334F,     kRedraw, Unit::steps, names::kPages};
inline constexpr Kind resets   {Rule::resetButton, 0, 0.5F,            kRedraw};
inline constexpr Kind button   {Rule::button,      0, 1.0F,            kRedraw};
inline constexpr Kind inPanel  {Rule::button};

/// How far a modulator moves a knob.
constexpr Row amount(int tag, int id, int knob, const Module& by, Value value, const char* name) {
  const Kind kind{.rule = by.amount, .unit = Unit::amount};
  return {tag, id, 0.5F, kind, value, name, by, nullptr, knob};
}

/// What presets do not hold.
constexpr Row global(int tag, const Kind& kind, const char* name, const char* title,
                     Value value = nullptr) {
  return {tag, -1, 0.0F, kind, value, name, window, title};
}

// What presets hold, in the order in which they hold it.
inline constexpr std::array<Row, kPresetRows> kPresetTable = {{
// tag            id  initial  kind       value              name             module  title
  {vowelType,    40,   0.09F, types,     &C::vowelType,     "textedit",      filter, "Vowel type"},
  {vowelA,       67, 0.3897F, vowel,     &C::vowelA,        "Vowel_A",       filter, "Vowel A"},
  {vowelB,       68, 0.9098F, vowel,     &C::vowelB,        "Vowel_B",       filter, "Vowel B"},
  {resonance,     1,    1.0F, plain,     &C::resonance,     "Resonance",     filter, "Resonance"},
  {mixDryWet,     2, 0.5198F, plain,     &C::mixDryWet,     "Mix_Dry_Wet",   output, "Mix"},
  {multiType,     3,   0.05F, types,     &C::multiType,     "textedit",      filter, "Filter type"},
  {bank,         60,   0.25F, banks,     &C::bank,          "Switch",        filter, "Bank"},
  {lfoTrigOnOff,  4,    0.0F, onOff,     &C::lfoTrigOnOff,  "LFO_TrigOnOff", lfo,    "Trigger"},
  {lfoStyle,     69,    0.0F, modes,     &C::lfoStyle,      "LFO_Style",     lfo,    "Mode"},
  {stepTable,     5,    0.0F, table,     nullptr,           "EventTableXY",  seq,    "Steps"},
  {lfoRate,      13, 0.1496F, note,      &C::lfoRate,       "LFO_Rate",      lfo,    "Rate"},
  {lfoWave,      14,   0.01F, wave,      &C::lfoWave,       "LFO_Wave",      lfo,    "Wave"},
  {efGain,       15, 0.5493F, gain,      &C::efGain,        "EF_Gain",       ef,     "Gain"},
  {efAttack,     16, 0.2298F, rise,      &C::efAttack,      "EFAttack",      ef,     "Attack"},
  {efRelease,    17, 0.7797F, fall,      &C::efRelease,     "EFRelease",     ef,     "Release"},
  {seqGlide,     18,    0.0F, percent,   &C::seqGlide,      "Stepseq_Glide", seq,    "Glide"},
  {seqTempo,     19, 0.2518F, note,      &C::seqTempo,      "Stepseq_Tempo", seq,    "Tempo"},
  {seqMode,      20,    0.8F, orders,    &C::seqMode,       "xxx",           seq,    "Order"},
  {lfoTrigSens,  21,   0.25F, threshold, &C::lfoTrigSens,   "LFO_TrigSens",  lfo,    "Sens"},
  amount(efRangeLfo,   22, efFreqRange, lfo, &C::efRangeLfo,    "EFRangeLFOmod"),
  amount(efRangeSeq,   23, efFreqRange, seq, &C::efRangeSeq,    "EFRangeSEQmod"),
  {efFreqRange,  24, 0.3798F, band,      &C::efFreqRange,   "EF_Freq_Range", ef,     "Range"},
  amount(efReleaseLfo, 25, efRelease,   lfo, &C::efReleaseLfo,  "EFRelLFOMod"),
  amount(efReleaseSeq, 26, efRelease,   seq, &C::efReleaseSeq,  "EFRelSeqMod"),
  amount(efAttackLfo,  27, efAttack,    lfo, &C::efAttackLfo,   "EFAttLFOmod"),
  amount(efAttackSeq,  28, efAttack,    seq, &C::efAttackSeq,   "EFAttSeqMod"),
  amount(efGainLfo,    29, efGain,      lfo, &C::efGainLfo,     "EFGainLFOMod"),
  amount(efGainSeq,    30, efGain,      seq, &C::efGainSeq,     "EFGainSeqMod"),
  amount(lfoRateEf,    31, lfoRate,     ef,  &C::lfoRateEf,     "LFOrateEFmod"),
  amount(lfoRateSeq,   32, lfoRate,     seq, &C::lfoRateSeq,    "LFOrateSeqmod"),
  amount(lfoWaveEf,    33, lfoWave,     ef,  &C::lfoWaveEf,     "LFOwaveEFmod"),
  amount(lfoWaveSeq,   34, lfoWave,     seq, &C::lfoWaveSeq,    "LFOwaveSeqmod"),
  amount(lfoSensEf,    35, lfoTrigSens, ef,  &C::lfoSensEf,     "LFOtrigEFmod"),
  amount(lfoSensSeq,   36, lfoTrigSens, seq, &C::lfoSensSeq,    "LFOtrigSEQmod"),
  amount(seqTempoEf,   37, seqTempo,    ef,  &C::seqTempoEf,    "SeqtempoEFmod"),
  amount(seqTempoLfo,  38, seqTempo,    lfo, &C::seqTempoLfo,   "SeqtempoLFOmod"),
  amount(seqGlideEf,   39, seqGlide,    ef,  &C::seqGlideEf,    "SeqGlideEFmod"),
  amount(seqGlideLfo,  64, seqGlide,    lfo, &C::seqGlideLfo,   "SeqGlideLFOmod"),
  amount(cutoffEf,     41, cutoff,      ef,  &C::cutoffEf,      "CutoffEFAmt"),
  amount(cutoffLfo,    42, cutoff,      lfo, &C::cutoffLfo,     "CutoffLFOAmt"),
  amount(cutoffSeq,    43, cutoff,      seq, &C::cutoffSeq,     "CutoffSeqAmt"),
  {modChoice,    44,    0.0F, pages,     &C::modChoice,     "Modchoice",     window, "Page"},
  {overdrive,    45,    0.0F, plain,     &C::overdrive,     "Overdrive",     drive,  "Overdrive"},
  {cutoff,       46, 0.2157F, tuning,    &C::cutoff,        "Cutoff",        filter, "Cutoff"},
  {vowelCutoff,  65,    0.0F, plain,     &C::vowelCutoff,   "Vowelcutoff",   filter, "Morph"},
  amount(vowelEf,      47, vowelCutoff, ef,  &C::vowelEf,       "VowelEFAmt"),
  amount(vowelLfo,     48, vowelCutoff, lfo, &C::vowelLfo,      "VowelLFOAmt"),
  amount(vowelSeq,     49, vowelCutoff, seq, &C::vowelSeq,      "VowelSeqAmt"),
  amount(resoEf,       50, resonance,   ef,  &C::resoEf,        "ResoEFAmt"),
  amount(resoLfo,      51, resonance,   lfo, &C::resoLfo,       "ResoLFOAmt"),
  amount(resoSeq,      52, resonance,   seq, &C::resoSeq,       "ResoSeqAmt"),
  amount(driveEf,      53, overdrive,   ef,  &C::driveEf,       "DriveEFAmt"),
  amount(driveLfo,     54, overdrive,   lfo, &C::driveLfo,      "DriveLFOAmt"),
  amount(driveSeq,     55, overdrive,   seq, &C::driveSeq,      "DriveSeqAmt"),
  amount(mixEf,        56, mixDryWet,   ef,  &C::mixEf,         "MixEFAmt"),
  amount(mixLfo,       57, mixDryWet,   lfo, &C::mixLfo,        "MixLFOAmt"),
  amount(mixSeq,       58, mixDryWet,   seq, &C::mixSeq,        "MixSeqAmt"),
  {master,       59, 0.6099F, level,     &C::master,        "Master",        output, "Master"},
  amount(masterEf,     61, master,      ef,  &C::masterEf,      "MasterEFamt"),
  amount(masterLfo,    62, master,      lfo, &C::masterLfo,     "MasterLFOamt"),
  amount(masterSeq,    63, master,      seq, &C::masterSeq,     "MasterSEQamt"),
  {bypass,       66,    0.0F, bypassed,  &C::bypass,        "Bypass",        output, "Bypass"},
}};

struct Home {
  int tag;
  float value;
};
/// Where knobs go by a double click; amounts to the middle, all others to 0.
inline constexpr Home kHomes[] = {
  {master,    0.5F}, {mixDryWet, 0.5F}, {efAttack,    0.5F}, {efRelease, 0.5F},
  {efGain,    0.5F}, {lfoRate,   0.5F}, {lfoTrigSens, 0.25F},
};

// LEARN in the panel of the sequencer's tempo binds its glide, and the other way round.
inline constexpr PanelRow kPanelTable[] = {
// buttons           knob         names
  {efFreqRangePanel, efFreqRange, "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c"},
  {efReleasePanel,   efRelease,   "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c"},
  {efAttackPanel,    efAttack,    "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c"},
  {efGainPanel,      efGain,      "Button_c_c_c", "close_c", "lern_c_c",   "clear_c_c"},
  {lfoRatePanel,     lfoRate,     "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c"},
  {lfoWavePanel,     lfoWave,     "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c"},
  {lfoTrigSensPanel, lfoTrigSens, "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c"},
  {seqTempoPanel,    seqTempo,    "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", seqGlide},
  {seqGlidePanel,    seqGlide,    "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", seqTempo},
  {cutoffPanel,      cutoff,      "Button_c_c",   "close_c", "lern_c",     "clear_c"},
  {vowelCutoffPanel, vowelCutoff, "Button_c",     "close_c", "lern_c",     "clear_c"},
  {resonancePanel,   resonance,   "Button_c_c_c", "close_c", "lern_c",     "clear_c"},
  {overdrivePanel,   overdrive,   "Button_c_c_c", "close_c", "lern_c",     "clear_c"},
  {mixDryWetPanel,   mixDryWet,   "Button_c_c_c", "close_c", "lern_c",     "clear_c"},
  {masterPanel,      master,      "Button_c_c_c", "close",   "lern",       "clear", master, 0.5F},
};

inline constexpr Row kGlobalTable[] = {
//       tag                 kind    name             title
  global(mouseArea,          area,   "MouseArea",     "Tabs", &C::areaPosition),
  global(resetAll,           resets, "Button",        "Zero all mod"),
  global(choosePresetFolder, button, "select",        "Choose preset folder"),
  global(resetPresetFolder,  button, "reset",         "Reset preset folder"),
  global(nextProgram,        button, "nxtpr",         "Next program"),
  global(previousProgram,    button, "prevpr",        "Previous program"),
  global(about,              button, "aboutbutton_c", "About"),
};

// clang-format on

}  // namespace zum::rows
