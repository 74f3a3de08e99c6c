#include "editor/layout.hpp"

#include "core/tags.hpp"

namespace zum::layout {
namespace {

using D = DisplayValues;
namespace t = tag;

// clang-format off

constexpr Still kPageTable[] = {
// tag                  rectangle            picture group
  {tag::followerPage,  { 29, 261, 246, 357}, 1015, followerPage},
  {tag::lfoPage,       { 29, 261, 246, 357}, 1021, lfoPage},
  {tag::sequencerPage, { 29, 261, 246, 357}, 1049, sequencerPage},
  {tag::filterPage,    {155,  77, 350, 257}, 1007, filterPage},
  {tag::vowelPage,     {155,  77, 350, 255}, 1054, vowelPage},
};

constexpr Knob kUpperTable[] = {
// tag                rectangle            picture, frames, height, sensitivity, border
  {tag::master,      {395, 399, 440, 437}, 1025, 128, 38, 0.3F,  7, always},
  {tag::mixDryWet,   { 67, 398, 112, 436}, 1028, 128, 38, 0.3F,  7, always},
  {tag::resonance,   {393, 153, 452, 212}, 1042, 128, 59, 0.3F,  5, always},
  {tag::overdrive,   { 67, 156, 112, 194}, 1039, 128, 38, 0.3F,  8, always},
  {tag::cutoff,      {211, 144, 292, 217}, 1008, 128, 73, 0.4F, 15, filterPage},
  {tag::vowelCutoff, {212, 144, 293, 217}, 1008, 128, 73, 0.4F, 15, vowelPage},
  {tag::vowelA,      {178, 103, 195, 120}, 1056,   9, 17, 1.0F, 12, vowelPage},
  {tag::vowelB,      {310, 103, 327, 120}, 1056,   9, 17, 1.0F, 12, vowelPage},
};

constexpr Knob kLowerTable[] = {
  {tag::efFreqRange, { 49, 323,  82, 356}, 1013, 128, 33, 1.0F, 3, followerPage},
  {tag::efAttack,    { 99, 323, 132, 356}, 1011, 128, 33, 1.0F, 3, followerPage},
  {tag::efRelease,   {148, 323, 181, 356}, 1012, 128, 33, 1.0F, 3, followerPage},
  {tag::efGain,      {197, 323, 230, 356}, 1014, 128, 33, 1.0F, 3, followerPage},
  {tag::lfoRate,     { 49, 323,  82, 356}, 1022, 128, 33, 1.0F, 3, lfoPage},
  {tag::lfoWave,     { 99, 322, 132, 355}, 1024, 128, 33, 1.0F, 3, lfoPage},
  {tag::lfoTrigSens, {197, 323, 230, 356}, 1023, 128, 33, 1.0F, 3, freeLfo},
  {tag::seqGlide,    {148, 324, 181, 357}, 1050, 128, 33, 0.3F, 3, sequencerPage},
  {tag::seqTempo,    { 49, 324,  82, 357}, 1051, 128, 33, 0.3F, 3, sequencerPage},
};

constexpr Ring kRingTable[] = {
// tag                 knob            rectangle            picture, h. group         shows
  {t::cutoffRing,      t::cutoff,      {205, 136, 301, 218}, 1009, 82, filterPage,    &D::cutoff},
  {t::vowelCutoffRing, t::vowelCutoff, {205, 137, 301, 218}, 1057, 81, vowelPage,     &D::vowelPosition},
  {t::resonanceRing,   t::resonance,   {393, 153, 452, 212}, 1044, 59, always,        &D::resonance},
  {t::mixDryWetRing,   t::mixDryWet,   { 67, 398, 112, 436}, 1029, 38, always,        &D::mix},
  {t::overdriveRing,   t::overdrive,   { 67, 156, 112, 194}, 1043, 38, always,        &D::drive},
  {t::masterRing,      t::master,      {395, 399, 440, 437}, 1029, 38, always,        &D::master},
  {t::efFreqRangeRing, t::efFreqRange, { 49, 323,  82, 356}, 1048, 33, followerPage,  &D::efRange},
  {t::efReleaseRing,   t::efRelease,   {148, 323, 181, 356}, 1048, 33, followerPage,  &D::efRelease},
  {t::efAttackRing,    t::efAttack,    { 99, 323, 132, 356}, 1048, 33, followerPage,  &D::efAttack},
  {t::efGainRing,      t::efGain,      {197, 323, 230, 356}, 1048, 33, followerPage,  &D::efGain},
  {t::lfoRateRing,     t::lfoRate,     { 49, 323,  82, 356}, 1048, 33, lfoPage,       &D::lfoRate},
  {t::lfoWaveRing,     t::lfoWave,     { 99, 323, 132, 356}, 1048, 33, lfoPage,       &D::lfoWave},
  {t::lfoTrigSensRing, t::lfoTrigSens, {197, 323, 230, 356}, 1048, 33, freeLfo,       &D::lfoSens},
  {t::seqTempoRing,    t::seqTempo,    { 49, 323,  82, 356}, 1048, 33, sequencerPage, &D::seqTempo},
  {t::seqGlideRing,    t::seqGlide,    {148, 323, 181, 356}, 1048, 33, sequencerPage, &D::seqGlide},
};

constexpr Switch kSwitchTable[] = {
  {tag::bank,         {361,  72, 472,  89}, 1055, always},
  {tag::lfoStyle,     { 61, 286, 128, 299}, 1020, lfoPage},
  {tag::lfoTrigOnOff, {142, 327, 182, 344}, 1037, freeLfo},
  {tag::bypass,       {409,  35, 471,  52}, 1006, always},
};

constexpr Menu kMenuTable[] = {
  {tag::multiType, { 35,  72, 146,  89}, 10, 1018, 1017, filterPage},
  {tag::vowelType, { 35,  72, 146,  89}, 10, 1018, 1017, vowelPage},
  {tag::seqMode,   { 92, 327, 132, 344},  5, 1047, 1046, sequencerPage},
};

constexpr NumberReadout kNumberTable[] = {
// tag                      knob              rectangle             unit  width, decimals
  {tag::efGainReadout,      tag::efGain,      {179, 356, 243, 375}, "db", 3, 1, followerPage},
  {tag::efAttackReadout,    tag::efAttack,    { 80, 356, 144, 375}, "ms", 3, 1, followerPage},
  {tag::efReleaseReadout,   tag::efRelease,   {131, 356, 195, 375}, "ms", 3, 1, followerPage},
  {tag::efFreqRangeReadout, tag::efFreqRange, { 30, 356,  94, 375}, "Hz", 4, 0, followerPage},
  {tag::lfoTrigSensReadout, tag::lfoTrigSens, {179, 356, 243, 375}, "db", 3, 1, freeLfo},
  {tag::seqGlideReadout,    tag::seqGlide,    {130, 356, 194, 375}, "%",  3, 1, sequencerPage},
};

constexpr PictureReadout kPictureTable[] = {
  {tag::lfoRateReadout,  tag::lfoRate,  {30, 356,  94, 375}, 1052, 27, &D::lfoNote, lfoPage},
  {tag::lfoWaveReadout,  tag::lfoWave,  {82, 356, 146, 375}, 1058,  5, &D::lfoWaveSlot, lfoPage},
  {tag::seqTempoReadout, tag::seqTempo, {30, 356,  94, 375}, 1052, 27, &D::seqNote, sequencerPage},
};

constexpr Panel kPanelTable[] = {
// knob               marks       rectangle            picture left
  {tag::efFreqRange, { 57, 308}, { 75, 320, 245, 442}, 1033, 12},
  {tag::efRelease,   {156, 308}, {179, 320, 349, 442}, 1033, 11},
  {tag::efAttack,    {107, 308}, {179, 320, 349, 442}, 1033, 12},
  {tag::efGain,      {205, 308}, {228, 320, 398, 442}, 1033, 12},
  {tag::lfoRate,     { 57, 308}, { 75, 320, 245, 442}, 1034, 12},
  {tag::lfoWave,     {107, 308}, {179, 320, 349, 442}, 1034, 12},
  {tag::lfoTrigSens, {205, 308}, {228, 320, 398, 442}, 1034, 11},
  {tag::seqTempo,    { 57, 308}, { 75, 320, 245, 442}, 1035, 12},
  {tag::seqGlide,    {156, 308}, {179, 320, 349, 442}, 1035, 12},
  {tag::cutoff,      {283, 110}, {295,  95, 465, 255}, 1032, 12},
  {tag::vowelCutoff, {283, 110}, {295,  95, 465, 255}, 1032, 12},
  {tag::resonance,   {458, 140}, {275, 237, 445, 397}, 1032, 12},
  {tag::overdrive,   {123, 143}, {120, 132, 290, 292}, 1032, 12},
  {tag::mixDryWet,   {104, 385}, {120, 310, 290, 470}, 1032, 12},
  {tag::master,      {442, 386}, {200, 310, 370, 470}, 1032, 12},
};

// clang-format on

}  // namespace

const std::span<const Still> kPages = kPageTable;
const std::span<const Knob> kUpperKnobs = kUpperTable;
const std::span<const Knob> kLowerKnobs = kLowerTable;
const std::span<const Ring> kRings = kRingTable;
const std::span<const Switch> kSwitches = kSwitchTable;
const std::span<const Menu> kMenus = kMenuTable;
const std::span<const NumberReadout> kNumberReadouts = kNumberTable;
const std::span<const PictureReadout> kPictureReadouts = kPictureTable;
const std::span<const Panel> kPanels = kPanelTable;

}  // namespace zum::layout
