#include "core/parameter_table.hpp"

#include <array>

namespace zum {
namespace {

using C = EngineControls;

// clang-format off

// What presets hold, in the order in which they hold it.
constexpr std::array<ParameterRow, kPresetRows> kPresetTable = {{
// tag  id  name              initial  rule                  positions  flags    value
  { 60, 40, "textedit",         0.09F, Rule::step,            10, kRedraw, &C::vowelType},
  { 58, 67, "Vowel_A",        0.3897F, Rule::vowel,            0, 0,       &C::vowelA},
  { 59, 68, "Vowel_B",        0.9098F, Rule::vowel,            0, 0,       &C::vowelB},
  {  4,  1, "Resonance",         1.0F, Rule::plain,            0, 0,       &C::resonance},
  {  2,  2, "Mix_Dry_Wet",    0.5198F, Rule::plain,            0, 0,       &C::mixDryWet},
  { 61,  3, "textedit",         0.05F, Rule::step,            10, kRedraw, &C::multiType},
  { 62, 60, "Switch",           0.25F, Rule::selector,         2, kRedraw, &C::bank},
  { 12,  4, "LFO_TrigOnOff",     0.0F, Rule::step,             2, 0,       &C::lfoTrigOnOff},
  { 65, 69, "LFO_Style",         0.0F, Rule::selector,         2, kRedraw, &C::lfoStyle},
  { 68,  5, "EventTableXY",      0.0F, Rule::table,            0, 0,       nullptr},
  { 10, 13, "LFO_Rate",       0.1496F, Rule::plain,            0, 0,       &C::lfoRate},
  { 11, 14, "LFO_Wave",         0.01F, Rule::plain,            0, 0,       &C::lfoWave},
  {  9, 15, "EF_Gain",        0.5493F, Rule::gain,             0, 0,       &C::efGain},
  {  7, 16, "EFAttack",       0.2298F, Rule::plain,            0, 0,       &C::efAttack},
  {  8, 17, "EFRelease",      0.7797F, Rule::plain,            0, 0,       &C::efRelease},
  { 14, 18, "Stepseq_Glide",     0.0F, Rule::percent,          0, 0,       &C::seqGlide},
  { 16, 19, "Stepseq_Tempo",  0.2518F, Rule::plain,            0, 0,       &C::seqTempo},
  { 15, 20, "xxx",               0.8F, Rule::stepExact,        5, 0,       &C::seqMode},
  { 13, 21, "LFO_TrigSens",     0.25F, Rule::threshold,        0, 0,       &C::lfoTrigSens},
  { 32, 22, "EFRangeLFOmod",     0.5F, Rule::amount,           0, 0,       &C::efRangeLfo},
  { 33, 23, "EFRangeSEQmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::efRangeSeq},
  {  6, 24, "EF_Freq_Range",  0.3798F, Rule::plain,            0, 0,       &C::efFreqRange},
  { 36, 25, "EFRelLFOMod",       0.5F, Rule::amount,           0, 0,       &C::efReleaseLfo},
  { 37, 26, "EFRelSeqMod",       0.5F, Rule::sequencedAmount,  0, 0,       &C::efReleaseSeq},
  { 34, 27, "EFAttLFOmod",       0.5F, Rule::amount,           0, 0,       &C::efAttackLfo},
  { 35, 28, "EFAttSeqMod",       0.5F, Rule::sequencedAmount,  0, 0,       &C::efAttackSeq},
  { 38, 29, "EFGainLFOMod",      0.5F, Rule::amount,           0, 0,       &C::efGainLfo},
  { 39, 30, "EFGainSeqMod",      0.5F, Rule::sequencedAmount,  0, 0,       &C::efGainSeq},
  { 40, 31, "LFOrateEFmod",      0.5F, Rule::amount,           0, 0,       &C::lfoRateEf},
  { 41, 32, "LFOrateSeqmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::lfoRateSeq},
  { 42, 33, "LFOwaveEFmod",      0.5F, Rule::amount,           0, 0,       &C::lfoWaveEf},
  { 43, 34, "LFOwaveSeqmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::lfoWaveSeq},
  { 44, 35, "LFOtrigEFmod",      0.5F, Rule::amount,           0, 0,       &C::lfoSensEf},
  { 45, 36, "LFOtrigSEQmod",     0.5F, Rule::sequencedAmount,  0, 0,       &C::lfoSensSeq},
  { 46, 37, "SeqtempoEFmod",     0.5F, Rule::amount,           0, 0,       &C::seqTempoEf},
  { 47, 38, "SeqtempoLFOmod",    0.5F, Rule::amount,           0, 0,       &C::seqTempoLfo},
  { 48, 39, "SeqGlideEFmod",     0.5F, Rule::amount,           0, 0,       &C::seqGlideEf},
  { 49, 64, "SeqGlideLFOmod",    0.5F, Rule::amount,           0, 0,       &C::seqGlideLfo},
  { 17, 41, "CutoffEFAmt",       0.5F, Rule::amount,           0, 0,       &C::cutoffEf},
  { 18, 42, "CutoffLFOAmt",      0.5F, Rule::amount,           0, 0,       &C::cutoffLfo},
  { 19, 43, "CutoffSeqAmt",      0.5F, Rule::sequencedAmount,  0, 0,       &C::cutoffSeq},
  {165, 44, "Modchoice",         0.0F, Rule::selector,         3, kRedraw, &C::modChoice},
  {  5, 45, "Overdrive",         0.0F, Rule::plain,            0, 0,       &C::overdrive},
  {  3, 46, "Cutoff",         0.2157F, Rule::plain,            0, 0,       &C::cutoff},
  {  0, 65, "Vowelcutoff",       0.0F, Rule::plain,            0, 0,       &C::vowelCutoff},
  { 20, 47, "VowelEFAmt",        0.5F, Rule::amount,           0, 0,       &C::vowelEf},
  { 21, 48, "VowelLFOAmt",       0.5F, Rule::amount,           0, 0,       &C::vowelLfo},
  { 22, 49, "VowelSeqAmt",       0.5F, Rule::sequencedAmount,  0, 0,       &C::vowelSeq},
  { 23, 50, "ResoEFAmt",         0.5F, Rule::amount,           0, 0,       &C::resoEf},
  { 24, 51, "ResoLFOAmt",        0.5F, Rule::amount,           0, 0,       &C::resoLfo},
  { 25, 52, "ResoSeqAmt",        0.5F, Rule::sequencedAmount,  0, 0,       &C::resoSeq},
  { 26, 53, "DriveEFAmt",        0.5F, Rule::amount,           0, 0,       &C::driveEf},
  { 27, 54, "DriveLFOAmt",       0.5F, Rule::amount,           0, 0,       &C::driveLfo},
  { 28, 55, "DriveSeqAmt",       0.5F, Rule::sequencedAmount,  0, 0,       &C::driveSeq},
  { 29, 56, "MixEFAmt",          0.5F, Rule::amount,           0, 0,       &C::mixEf},
  { 30, 57, "MixLFOAmt",         0.5F, Rule::amount,           0, 0,       &C::mixLfo},
  { 31, 58, "MixSeqAmt",         0.5F, Rule::sequencedAmount,  0, 0,       &C::mixSeq},
  {  1, 59, "Master",         0.6099F, Rule::plain,            0, 0,       &C::master},
  { 50, 61, "MasterEFamt",       0.5F, Rule::amount,           0, 0,       &C::masterEf},
  { 51, 62, "MasterLFOamt",      0.5F, Rule::amount,           0, 0,       &C::masterLfo},
  { 52, 63, "MasterSEQamt",      0.5F, Rule::sequencedAmount,  0, 0,       &C::masterSeq},
  {222, 66, "Bypass",            0.0F, Rule::step,             2, kRedraw, &C::bypass},
}};

// The popups of the window: a trigger button that opens one, three buttons inside. The popups of
// sequencer tempo and glide are crossed: each learns what the other one resets.
struct PopupRow {
  int trigger, close, learn, clear;
  int learnTarget;
  std::int16_t resets[3];  // amounts that the trigger centres, -1 ends the list
  const char* triggerName;
  const char* closeName;
  const char* learnName;
  const char* clearName;
  float learnInitial;  // raw
};
constexpr PopupRow kPopups[] = {
// trigger close learn clear  learns  resets        names
  { 72,  73,  75,  77,   6,  {32, 33, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  { 79,  80,  82,  84,   8,  {36, 37, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  { 86,  87,  89,  91,   7,  {34, 35, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  { 93,  94,  96,  98,   9,  {38, 39, -1},  "Button_c_c_c", "close_c", "lern_c_c", "clear_c_c", 0.0F},
  {100, 101, 103, 105,  10,  {40, 41, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {107, 108, 110, 112,  11,  {42, 43, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {114, 115, 117, 119,  13,  {44, 45, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {121, 122, 124, 126,  14,  {46, 47, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {128, 129, 131, 133,  16,  {48, 49, -1},  "Button_c_c_c", "close_c", "lern_c_c_c", "clear_c_c_c", 0.0F},
  {155, 156, 158, 160,   3,  {17, 18, 19},  "Button_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {166, 167, 169, 171,   0,  {20, 21, 22},  "Button_c", "close_c", "lern_c", "clear_c", 0.0F},
  {173, 174, 176, 178,   4,  {23, 24, 25},  "Button_c_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {180, 181, 183, 185,   5,  {26, 27, 28},  "Button_c_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {187, 188, 190, 192,   2,  {29, 30, 31},  "Button_c_c_c", "close_c", "lern_c", "clear_c", 0.0F},
  {213, 214, 216, 218,   1,  {50, 51, 52},  "Button_c_c_c", "close", "lern", "clear", 0.5F},
};
constexpr int kPopupCount = static_cast<int>(std::size(kPopups));

// Every amount, in the order in which the global reset centres them.
constexpr std::int16_t kAllAmounts[] = {
  32, 33, 36, 37, 34, 35, 38, 39,
  40, 41, 42, 43, 44, 45, 46, 47, 48, 49,
  17, 18, 19, 20, 21, 22, 23, 24, 25, 26, 27, 28, 29, 30, 31,
  50, 51, 52,
};

constexpr ParameterRow kGlobalTable[] = {
  {163, -1, "MouseArea",     0.0F, Rule::area,        0, 0,       &C::areaPosition},
  {199, -1, "Button",        0.0F, Rule::resetButton, 0, kRedraw, nullptr, kAllAmounts},
  {203, -1, "select",        0.0F, Rule::button,      0, kRedraw},
  {205, -1, "reset",         0.0F, Rule::button,      0, kRedraw},
  {209, -1, "nxtpr",         0.0F, Rule::button,      0, kRedraw},
  {210, -1, "prevpr",        0.0F, Rule::button,      0, kRedraw},
  {221, -1, "aboutbutton_c", 0.0F, Rule::button,      0, kRedraw},
};

// clang-format on

constexpr std::span<const std::int16_t> resetsOf(const PopupRow& popup) {
  return std::span(popup.resets).first(popup.resets[2] < 0 ? 2 : 3);
}

static_assert(kPresetRows + 4 * kPopupCount + std::size(kGlobalTable) == kParameterRows);

constexpr std::array<ParameterRow, kParameterRows> kRows = [] {
  std::array<ParameterRow, kParameterRows> rows{};
  auto* next = rows.data();
  for (const ParameterRow& row : kPresetTable) *next++ = row;
  for (const PopupRow& popup : kPopups) {
    const auto button = [&popup](int tag, const char* name, float initial) {
      ParameterRow row{tag, -1, name, initial, Rule::button};
      row.learnTarget = popup.learnTarget;
      return row;
    };
    *next = button(popup.trigger, popup.triggerName, 0.0F);
    next->rule = Rule::resetButton;
    next->flags = kRedraw;
    next->resets = resetsOf(popup);
    ++next;
    *next++ = button(popup.close, popup.closeName, 0.0F);
    *next++ = button(popup.learn, popup.learnName, popup.learnInitial);
    *next++ = button(popup.clear, popup.clearName, 0.0F);
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
