// Pages for a controller with eight knobs.

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>

#include "adaptor/clap/plugin.hpp"
#include "core/host_text.hpp"
#include "core/tags.hpp"

namespace zum::clap {
namespace {

struct Page {
  const char* section;
  const char* name;
  std::array<std::int16_t, CLAP_REMOTE_CONTROLS_COUNT> tags;  // -1 for a knob without one
};

// Ids are the positions: a page keeps its place for ever.
// clang-format off
constexpr Page kPages[] = {
  {"Main", "Filter",
   {tag::bank, tag::multiType, tag::cutoff, tag::resonance,
    tag::vowelType, tag::vowelCutoff, tag::vowelA, tag::vowelB}},
  {"Main", "Drive and output",
   {tag::overdrive, tag::mixDryWet, tag::master, tag::bypass, -1, -1, -1, -1}},
  {"Modulators", "Follower",
   {tag::efFreqRange, tag::efAttack, tag::efRelease, tag::efGain, -1, -1, -1, -1}},
  {"Modulators", "LFO",
   {tag::lfoStyle, tag::lfoRate, tag::lfoWave, tag::lfoTrigOnOff, tag::lfoTrigSens, -1, -1, -1}},
  {"Modulators", "Sequencer",
   {tag::seqMode, tag::seqTempo, tag::seqGlide, -1, -1, -1, -1, -1}},
  {"Amounts", "Cutoff and morph",
   {tag::cutoffEf, tag::cutoffLfo, tag::cutoffSeq, -1,
    tag::vowelEf, tag::vowelLfo, tag::vowelSeq, -1}},
  {"Amounts", "Resonance and drive",
   {tag::resoEf, tag::resoLfo, tag::resoSeq, -1,
    tag::driveEf, tag::driveLfo, tag::driveSeq, -1}},
  {"Amounts", "Mix and master",
   {tag::mixEf, tag::mixLfo, tag::mixSeq, -1,
    tag::masterEf, tag::masterLfo, tag::masterSeq, -1}},
  {"Amounts", "Of the follower",
   {tag::efRangeLfo, tag::efRangeSeq, tag::efAttackLfo, tag::efAttackSeq,
    tag::efReleaseLfo, tag::efReleaseSeq, tag::efGainLfo, tag::efGainSeq}},
  {"Amounts", "Of the LFO",
   {tag::lfoRateEf, tag::lfoRateSeq, tag::lfoWaveEf, tag::lfoWaveSeq,
    tag::lfoSensEf, tag::lfoSensSeq, -1, -1}},
  {"Amounts", "Of the sequencer",
   {tag::seqTempoEf, tag::seqTempoLfo, tag::seqGlideEf, tag::seqGlideLfo, -1, -1, -1, -1}},
};
// clang-format on

std::uint32_t countPages(const clap_plugin_t* /*plugin*/) {
  return static_cast<std::uint32_t>(std::size(kPages));
}

bool getPage(const clap_plugin_t* plugin, std::uint32_t index, clap_remote_controls_page_t* page) {
  if (index >= countPages(plugin) || page == nullptr) return false;
  const Page& row = kPages[index];
  *page = {};
  copyText(page->section_name, row.section, sizeof page->section_name);
  copyText(page->page_name, row.name, sizeof page->page_name);
  page->page_id = index;
  std::transform(row.tags.begin(), row.tags.end(), page->param_ids, [](std::int16_t tag) {
    return tag >= 0 ? static_cast<clap_id>(tag) : CLAP_INVALID_ID;
  });
  return true;
}

}  // namespace

const clap_plugin_remote_controls_t kRemoteControls{countPages, getPage};

}  // namespace zum::clap
