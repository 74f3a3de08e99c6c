#include "editor/layout.hpp"

namespace zum::layout {
namespace {

using D = DisplayValues;

// clang-format off

constexpr Still kPageTable[] = {
// tag   rectangle               picture group
  { 69, { 29, 261, 246, 357}, 1015, followerPage},
  { 70, { 29, 261, 246, 357}, 1021, lfoPage},
  { 71, { 29, 261, 246, 357}, 1049, sequencerPage},
  {153, {155,  77, 350, 257}, 1007, filterPage},
  {154, {155,  77, 350, 255}, 1054, vowelPage},
};

constexpr Knob kUpperTable[] = {
// tag  rectangle             picture frames  sens.  border initial group
  {1, {395, 399, 440, 437}, 1025, 128, 38, 0.3F,  7, 0.5F, always},
  {2, { 67, 398, 112, 436}, 1028, 128, 38, 0.3F,  7, 0.5F, always},
  {4, {393, 153, 452, 212}, 1042, 128, 59, 0.3F,  5, 0.0F, always},
  {5, { 67, 156, 112, 194}, 1039, 128, 38, 0.3F,  8, 0.0F, always},
  {3, {211, 144, 292, 217}, 1008, 128, 73, 0.4F, 15, 0.0F, filterPage},
  {0, {212, 144, 293, 217}, 1008, 128, 73, 0.4F, 15, 0.0F, vowelPage},
  {58, {178, 103, 195, 120}, 1056, 9, 17, 1.0F, 12, 0.0F, vowelPage},
  {59, {310, 103, 327, 120}, 1056, 9, 17, 1.0F, 12, 0.0F, vowelPage},
};

constexpr Knob kLowerTable[] = {
  { 6, { 49, 323,  82, 356}, 1013, 128, 33, 1.0F, 3, 0.0F,  followerPage},
  { 7, { 99, 323, 132, 356}, 1011, 128, 33, 1.0F, 3, 0.5F,  followerPage},
  { 8, {148, 323, 181, 356}, 1012, 128, 33, 1.0F, 3, 0.5F,  followerPage},
  { 9, {197, 323, 230, 356}, 1014, 128, 33, 1.0F, 3, 0.5F,  followerPage},
  {10, { 49, 323,  82, 356}, 1022, 128, 33, 1.0F, 3, 0.5F,  lfoPage},
  {11, { 99, 322, 132, 355}, 1024, 128, 33, 1.0F, 3, 0.0F,  lfoPage},
  {13, {197, 323, 230, 356}, 1023, 128, 33, 1.0F, 3, 0.25F, freeLfo},
  {14, {148, 324, 181, 357}, 1050, 128, 33, 0.3F, 3, 0.0F,  sequencerPage},
  {16, { 49, 324,  82, 357}, 1051, 128, 33, 0.3F, 3, 0.0F,  sequencerPage},
};

constexpr Ring kRingTable[] = {
// tag   rectangle             picture height shows             group
  {194, {205, 136, 301, 218}, 1009, 82, &D::cutoff,        filterPage},
  {195, {205, 137, 301, 218}, 1057, 81, &D::vowelPosition, vowelPage},
  {196, {393, 153, 452, 212}, 1044, 59, &D::resonance,     always},
  {197, { 67, 398, 112, 436}, 1029, 38, &D::mix,           always},
  {198, { 67, 156, 112, 194}, 1043, 38, &D::drive,         always},
  {220, {395, 399, 440, 437}, 1029, 38, &D::master,        always},
  {140, { 49, 323,  82, 356}, 1048, 33, &D::efRange,       followerPage},
  {141, {148, 323, 181, 356}, 1048, 33, &D::efRelease,     followerPage},
  {142, { 99, 323, 132, 356}, 1048, 33, &D::efAttack,      followerPage},
  {143, {197, 323, 230, 356}, 1048, 33, &D::efGain,        followerPage},
  {137, { 49, 323,  82, 356}, 1048, 33, &D::lfoRate,       lfoPage},
  {138, { 99, 323, 132, 356}, 1048, 33, &D::lfoWave,       lfoPage},
  {139, {197, 323, 230, 356}, 1048, 33, &D::lfoSens,       freeLfo},
  {135, { 49, 323,  82, 356}, 1048, 33, &D::seqTempo,      sequencerPage},
  {136, {148, 323, 181, 356}, 1048, 33, &D::seqGlide,      sequencerPage},
};

constexpr Switch kSwitchTable[] = {
  { 62, {361,  72, 472,  89}, 1055, always},
  { 65, { 61, 286, 128, 299}, 1020, lfoPage},
  { 12, {142, 327, 182, 344}, 1037, freeLfo},
  {222, {409,  35, 471,  52}, 1006, always},
};

constexpr Menu kMenuTable[] = {
  {61, { 35,  72, 146,  89}, 10, 1018, 1017, filterPage},
  {60, { 35,  72, 146,  89}, 10, 1018, 1017, vowelPage},
  {15, { 92, 327, 132, 344},  5, 1047, 1046, sequencerPage},
};

constexpr NumberReadout kNumberTable[] = {
// tag  knob  rectangle              unit  width decimals group
  {144,  9, {179, 356, 243, 375}, "db", 3, 1, followerPage},
  {145,  7, { 80, 356, 144, 375}, "ms", 3, 1, followerPage},
  {146,  8, {131, 356, 195, 375}, "ms", 3, 1, followerPage},
  {147,  6, { 30, 356,  94, 375}, "Hz", 4, 0, followerPage},
  {150, 13, {179, 356, 243, 375}, "db", 3, 1, freeLfo},
  {152, 14, {130, 356, 194, 375}, "%",  3, 1, sequencerPage},
};

constexpr PictureReadout kPictureTable[] = {
  {148, 10, {30, 356,  94, 375}, 1052, 27, &D::lfoNote,     lfoPage},
  {149, 11, {82, 356, 146, 375}, 1058,  5, &D::lfoWaveSlot, lfoPage},
  {151, 16, {30, 356,  94, 375}, 1052, 27, &D::seqNote,     sequencerPage},
};

constexpr Panel kPanelTable[] = {
// knob title       marks       rectangle            picture sliders    left reset close learn clear
  { 6, "RANGE",     { 57, 308}, { 75, 320, 245, 442}, 1033, {32, 33, -1}, 12,  72,  73,  75,  77},
  { 8, "RELEASE",   {156, 308}, {179, 320, 349, 442}, 1033, {36, 37, -1}, 11,  79,  80,  82,  84},
  { 7, "ATTACK",    {107, 308}, {179, 320, 349, 442}, 1033, {34, 35, -1}, 12,  86,  87,  89,  91},
  { 9, "GAIN",      {205, 308}, {228, 320, 398, 442}, 1033, {38, 39, -1}, 12,  93,  94,  96,  98},
  {10, "RATE",      { 57, 308}, { 75, 320, 245, 442}, 1034, {40, 41, -1}, 12, 100, 101, 103, 105},
  {11, "WAVE",      {107, 308}, {179, 320, 349, 442}, 1034, {42, 43, -1}, 12, 107, 108, 110, 112},
  {13, "SENS",      {205, 308}, {228, 320, 398, 442}, 1034, {44, 45, -1}, 11, 114, 115, 117, 119},
  {16, "TEMPO",     { 57, 308}, { 75, 320, 245, 442}, 1035, {46, 47, -1}, 12, 121, 122, 124, 126},
  {14, "GLIDE",     {156, 308}, {179, 320, 349, 442}, 1035, {48, 49, -1}, 12, 128, 129, 131, 133},
  { 3, "CUTOFF",    {283, 110}, {295,  95, 465, 255}, 1032, {17, 18, 19}, 12, 155, 156, 158, 160},
  { 0, "MORPH",     {283, 110}, {295,  95, 465, 255}, 1032, {20, 21, 22}, 12, 166, 167, 169, 171},
  { 4, "RESONANCE", {458, 140}, {275, 237, 445, 397}, 1032, {23, 24, 25}, 12, 173, 174, 176, 178},
  { 5, "OVERDRIVE", {123, 143}, {120, 132, 290, 292}, 1032, {26, 27, 28}, 12, 180, 181, 183, 185},
  { 2, "MIX",       {104, 385}, {120, 310, 290, 470}, 1032, {29, 30, 31}, 12, 187, 188, 190, 192},
  { 1, "MASTER",    {442, 386}, {200, 310, 370, 470}, 1032, {50, 51, 52}, 12, 213, 214, 216, 218},
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
