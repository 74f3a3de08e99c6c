// The ports towards LV2 hosts. Index and symbol are for ever: sessions keep the symbol, some hosts
// the index. Controls follow in the order of faceTags().
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "core/parameter_table.hpp"
#include "core/tags.hpp"

namespace zum::lv2 {

inline constexpr const char* kPluginUri = "urn:zelvane:zum";
inline constexpr const char* kUiUri = "urn:zelvane:zum#ui";
inline constexpr const char* kStateUri = "urn:zelvane:zum#state";  // bytes of a preset file

enum Port : std::uint32_t {
  inLeft,
  inRight,
  outLeft,
  outRight,
  sideLeft,
  sideRight,
  events,
  firstControl
};
inline constexpr std::uint32_t kPorts = firstControl + kFaceParameters;

struct ControlSymbol {
  int tag;
  const char* symbol;
};

// clang-format off
inline constexpr std::array<ControlSymbol, kFaceParameters> kControlSymbols = {{
  {tag::vowelCutoff,  "vowelCutoff"},  {tag::master,       "master"},
  {tag::mixDryWet,    "mixDryWet"},    {tag::cutoff,       "cutoff"},
  {tag::resonance,    "resonance"},    {tag::overdrive,    "overdrive"},
  {tag::efFreqRange,  "efFreqRange"},  {tag::efAttack,     "efAttack"},
  {tag::efRelease,    "efRelease"},    {tag::efGain,       "efGain"},
  {tag::lfoRate,      "lfoRate"},      {tag::lfoWave,      "lfoWave"},
  {tag::lfoTrigOnOff, "lfoTrigOnOff"}, {tag::lfoTrigSens,  "lfoTrigSens"},
  {tag::seqGlide,     "seqGlide"},     {tag::seqMode,      "seqMode"},
  {tag::seqTempo,     "seqTempo"},
  {tag::cutoffEf,     "cutoffEf"},     {tag::cutoffLfo,    "cutoffLfo"},
  {tag::cutoffSeq,    "cutoffSeq"},    {tag::vowelEf,      "vowelEf"},
  {tag::vowelLfo,     "vowelLfo"},     {tag::vowelSeq,     "vowelSeq"},
  {tag::resoEf,       "resoEf"},       {tag::resoLfo,      "resoLfo"},
  {tag::resoSeq,      "resoSeq"},      {tag::driveEf,      "driveEf"},
  {tag::driveLfo,     "driveLfo"},     {tag::driveSeq,     "driveSeq"},
  {tag::mixEf,        "mixEf"},        {tag::mixLfo,       "mixLfo"},
  {tag::mixSeq,       "mixSeq"},       {tag::efRangeLfo,   "efRangeLfo"},
  {tag::efRangeSeq,   "efRangeSeq"},   {tag::efAttackLfo,  "efAttackLfo"},
  {tag::efAttackSeq,  "efAttackSeq"},  {tag::efReleaseLfo, "efReleaseLfo"},
  {tag::efReleaseSeq, "efReleaseSeq"}, {tag::efGainLfo,    "efGainLfo"},
  {tag::efGainSeq,    "efGainSeq"},    {tag::lfoRateEf,    "lfoRateEf"},
  {tag::lfoRateSeq,   "lfoRateSeq"},   {tag::lfoWaveEf,    "lfoWaveEf"},
  {tag::lfoWaveSeq,   "lfoWaveSeq"},   {tag::lfoSensEf,    "lfoSensEf"},
  {tag::lfoSensSeq,   "lfoSensSeq"},   {tag::seqTempoEf,   "seqTempoEf"},
  {tag::seqTempoLfo,  "seqTempoLfo"},  {tag::seqGlideEf,   "seqGlideEf"},
  {tag::seqGlideLfo,  "seqGlideLfo"},  {tag::masterEf,     "masterEf"},
  {tag::masterLfo,    "masterLfo"},    {tag::masterSeq,    "masterSeq"},
  {tag::vowelA,       "vowelA"},       {tag::vowelB,       "vowelB"},
  {tag::bank,         "bank"},         {tag::multiType,    "multiType"},
  {tag::vowelType,    "vowelType"},    {tag::lfoStyle,     "lfoStyle"},
  {tag::bypass,       "enabled"},
}};
// clang-format on

/// Hosts bypass by a port that says the opposite: 1 is on, so bypass is 1 - value. All other values
/// are plain ones. The way back is the same.
constexpr float portOfPlain(int tag, float plain) {
  return tag == tag::bypass ? 1.0F - plain : plain;
}
constexpr float plainOfPort(int tag, float value) { return portOfPlain(tag, value); }

/// What all control ports say, in their order.
using PortValues = std::array<float, kFaceParameters>;

}  // namespace zum::lv2
