// The numbers of the window's controls. One number stands for a control, for the parameter behind
// it, and below 60 for that parameter towards hosts, so none may ever move. Included by whoever
// names one; what a tag is and does stands in core/parameter_table.cpp.
#pragma once

namespace zum::tag {

/// The buttons in the panel of a knob.
struct PanelButtons {
  int reset;  // centres the panel's amounts
  int close;
  int learn;  // the next controller moves the knob...
  int clear;  // ...and none does any more
};

// clang-format off

// ---- Parameters that hosts automate: 0 to 52, 58 and 59

// main knobs and the controls beside them
inline constexpr int vowelCutoff  =  0;
inline constexpr int master       =  1;
inline constexpr int mixDryWet    =  2;
inline constexpr int cutoff       =  3;
inline constexpr int resonance    =  4;
inline constexpr int overdrive    =  5;
inline constexpr int efFreqRange  =  6;
inline constexpr int efAttack     =  7;
inline constexpr int efRelease    =  8;
inline constexpr int efGain       =  9;
inline constexpr int lfoRate      = 10;
inline constexpr int lfoWave      = 11;
inline constexpr int lfoTrigOnOff = 12;
inline constexpr int lfoTrigSens  = 13;
inline constexpr int seqGlide     = 14;
inline constexpr int seqMode      = 15;
inline constexpr int seqTempo     = 16;
inline constexpr int vowelA       = 58;
inline constexpr int vowelB       = 59;

// amounts: what is moved, by what
inline constexpr int cutoffEf     = 17;
inline constexpr int cutoffLfo    = 18;
inline constexpr int cutoffSeq    = 19;
inline constexpr int vowelEf      = 20;
inline constexpr int vowelLfo     = 21;
inline constexpr int vowelSeq     = 22;
inline constexpr int resoEf       = 23;
inline constexpr int resoLfo      = 24;
inline constexpr int resoSeq      = 25;
inline constexpr int driveEf      = 26;
inline constexpr int driveLfo     = 27;
inline constexpr int driveSeq     = 28;
inline constexpr int mixEf        = 29;
inline constexpr int mixLfo       = 30;
inline constexpr int mixSeq       = 31;
inline constexpr int masterEf     = 50;
inline constexpr int masterLfo    = 51;
inline constexpr int masterSeq    = 52;

inline constexpr int efRangeLfo   = 32;
inline constexpr int efRangeSeq   = 33;
inline constexpr int efAttackLfo  = 34;
inline constexpr int efAttackSeq  = 35;
inline constexpr int efReleaseLfo = 36;
inline constexpr int efReleaseSeq = 37;
inline constexpr int efGainLfo    = 38;
inline constexpr int efGainSeq    = 39;

inline constexpr int lfoRateEf    = 40;
inline constexpr int lfoRateSeq   = 41;
inline constexpr int lfoWaveEf    = 42;
inline constexpr int lfoWaveSeq   = 43;
inline constexpr int lfoSensEf    = 44;
inline constexpr int lfoSensSeq   = 45;

inline constexpr int seqTempoEf   = 46;
inline constexpr int seqTempoLfo  = 47;
inline constexpr int seqGlideEf   = 48;
inline constexpr int seqGlideLfo  = 49;

// ---- Parameters of the window and of presets alone

inline constexpr int vowelType =  60;
inline constexpr int multiType =  61;
inline constexpr int bank      =  62;
inline constexpr int lfoStyle  =  65;
inline constexpr int stepTable =  68;
inline constexpr int modChoice = 165;  // the lower page
inline constexpr int bypass    = 222;

// ---- Buttons

//                                             reset close learn clear
inline constexpr PanelButtons efFreqRangePanel{  72,   73,   75,   77};
inline constexpr PanelButtons efReleasePanel  {  79,   80,   82,   84};
inline constexpr PanelButtons efAttackPanel   {  86,   87,   89,   91};
inline constexpr PanelButtons efGainPanel     {  93,   94,   96,   98};
inline constexpr PanelButtons lfoRatePanel    { 100,  101,  103,  105};
inline constexpr PanelButtons lfoWavePanel    { 107,  108,  110,  112};
inline constexpr PanelButtons lfoTrigSensPanel{ 114,  115,  117,  119};
inline constexpr PanelButtons seqTempoPanel   { 121,  122,  124,  126};
inline constexpr PanelButtons seqGlidePanel   { 128,  129,  131,  133};
inline constexpr PanelButtons cutoffPanel     { 155,  156,  158,  160};
inline constexpr PanelButtons vowelCutoffPanel{ 166,  167,  169,  171};
inline constexpr PanelButtons resonancePanel  { 173,  174,  176,  178};
inline constexpr PanelButtons overdrivePanel  { 180,  181,  183,  185};
inline constexpr PanelButtons mixDryWetPanel  { 187,  188,  190,  192};
inline constexpr PanelButtons masterPanel     { 213,  214,  216,  218};

inline constexpr int mouseArea          = 163;  // lies over the tabs of the lower pages
inline constexpr int resetAll           = 199;  // centres every amount
inline constexpr int choosePresetFolder = 203;  // this and the next in the about panel
inline constexpr int resetPresetFolder  = 205;
inline constexpr int nextProgram        = 209;
inline constexpr int previousProgram    = 210;
inline constexpr int about              = 221;

// ---- Controls of the window that no parameter stands behind

inline constexpr int presetMenu = 162;
inline constexpr int manual     = 204;      // a button of the about panel
inline constexpr int learnMenu  = 1000000;  // this and the next come up at the pointer, out of the
inline constexpr int windowMenu = 1000001;  // window's numbers

// pictures
inline constexpr int followerPage  =  69;
inline constexpr int lfoPage       =  70;
inline constexpr int sequencerPage =  71;
inline constexpr int filterPage    = 153;
inline constexpr int vowelPage     = 154;
inline constexpr int triggerLamp   =  63;
inline constexpr int triggerCover  =  66;  // over the trigger, which the synced LFO does not have
inline constexpr int pageTabs      = 164;
inline constexpr int statusStrip   = 207;

// traces
inline constexpr int lfoTrace      =  64;
inline constexpr int followerTrace =  67;
inline constexpr int meter         = 200;
inline constexpr int meterInverse  = 201;

// rings round the knobs: where the modulators have them
inline constexpr int seqTempoRing    = 135;
inline constexpr int seqGlideRing    = 136;
inline constexpr int lfoRateRing     = 137;
inline constexpr int lfoWaveRing     = 138;
inline constexpr int lfoTrigSensRing = 139;
inline constexpr int efFreqRangeRing = 140;
inline constexpr int efReleaseRing   = 141;
inline constexpr int efAttackRing    = 142;
inline constexpr int efGainRing      = 143;
inline constexpr int cutoffRing      = 194;
inline constexpr int vowelCutoffRing = 195;
inline constexpr int resonanceRing   = 196;
inline constexpr int mixDryWetRing   = 197;
inline constexpr int overdriveRing   = 198;
inline constexpr int masterRing      = 220;

// settings that come up below a knob while it is held
inline constexpr int efGainReadout      = 144;
inline constexpr int efAttackReadout    = 145;
inline constexpr int efReleaseReadout   = 146;
inline constexpr int efFreqRangeReadout = 147;
inline constexpr int lfoRateReadout     = 148;
inline constexpr int lfoWaveReadout     = 149;
inline constexpr int lfoTrigSensReadout = 150;
inline constexpr int seqTempoReadout    = 151;
inline constexpr int seqGlideReadout    = 152;

// clang-format on

}  // namespace zum::tag
