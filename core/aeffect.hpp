// The binary face between a host and the effect: records, opcodes and flags as real hosts use them
// on 64-bit systems. Declarations only; all records have natural C alignment.
#pragma once

#include <cstddef>
#include <cstdint>

namespace zum {

struct AEffect;

/// Host entry of the effect. `index`, `value`, `ptr` and `opt` mean what the opcode says.
using AEffectDispatcherProc = std::intptr_t (*)(AEffect*, std::int32_t opcode, std::int32_t index,
                                                std::intptr_t value, void* ptr, float opt);
/// The effect's only way to the host. May be null.
using audioMasterCallback = std::intptr_t (*)(AEffect*, std::int32_t opcode, std::int32_t index,
                                              std::intptr_t value, void* ptr, float opt);
using AEffectProcessProc = void (*)(AEffect*, float** inputs, float** outputs, std::int32_t frames);
using AEffectProcessDoubleProc = void (*)(AEffect*, double** inputs, double** outputs,
                                          std::int32_t frames);
using AEffectSetParameterProc = void (*)(AEffect*, std::int32_t index, float value);
using AEffectGetParameterProc = float (*)(AEffect*, std::int32_t index);

/// The four characters of `text`, most significant first.
constexpr std::int32_t fourCharacters(const char (&text)[5]) {
  std::uint32_t word = 0;
  for (int i = 0; i < 4; ++i) word = word << 8U | static_cast<unsigned char>(text[i]);
  return static_cast<std::int32_t>(word);
}

inline constexpr std::int32_t kEffectMagic = fourCharacters("VstP");

/// The published record of one effect instance.
struct AEffect {
  std::int32_t magic;
  AEffectDispatcherProc dispatcher;
  AEffectProcessProc process;  // accumulating, kept for old hosts
  AEffectSetParameterProc setParameter;
  AEffectGetParameterProc getParameter;
  std::int32_t numPrograms;
  std::int32_t numParams;
  std::int32_t numInputs;
  std::int32_t numOutputs;
  std::int32_t flags;
  std::intptr_t reservedForHost[2];
  std::int32_t initialDelay;  // frames
  std::int32_t realQualities;
  std::int32_t offQualities;
  float ioRatio;
  void* object;
  void* user;
  std::int32_t uniqueID;
  std::int32_t version;
  AEffectProcessProc processReplacing;
  AEffectProcessDoubleProc processDoubleReplacing;
  std::byte future[56];
};

enum AEffectFlags : std::int32_t {
  effFlagsHasEditor = 1,
  effFlagsCanReplacing = 16,
  effFlagsProgramChunks = 32,
  effFlagsIsSynth = 256,
  effFlagsNoSoundInStop = 512,
  effFlagsCanDoubleReplacing = 4096,
};

/// Host to effect.
enum DispatcherOpcode : std::int32_t {
  effOpen = 0,
  effClose = 1,
  effSetProgram = 2,
  effGetProgram = 3,
  effSetProgramName = 4,
  effGetProgramName = 5,
  effGetParamLabel = 6,
  effGetParamDisplay = 7,
  effGetParamName = 8,
  effSetSampleRate = 10,
  effSetBlockSize = 11,
  effMainsChanged = 12,
  effEditGetRect = 13,
  effEditOpen = 14,
  effEditClose = 15,
  effEditDraw = 16,
  effEditMouse = 17,
  effEditKey = 18,
  effEditIdle = 19,
  effGetChunk = 23,
  effSetChunk = 24,
  effProcessEvents = 25,
  effCanBeAutomated = 26,
  effString2Parameter = 27,
  effGetProgramNameIndexed = 29,
  effGetInputProperties = 33,
  effGetOutputProperties = 34,
  effGetPlugCategory = 35,
  effGetEffectName = 45,
  effGetVendorString = 47,
  effGetProductString = 48,
  effGetVendorVersion = 49,
  effVendorSpecific = 50,
  effCanDo = 51,
  effGetTailSize = 52,
  effGetParameterProperties = 56,
  effGetVstVersion = 58,
  effEditKeyDown = 59,
  effEditKeyUp = 60,
  effStartProcess = 71,
  effStopProcess = 72,
  effSetProcessPrecision = 77,
  effGetNumMidiInputChannels = 78,
  effGetNumMidiOutputChannels = 79,
};

/// Effect to host.
enum CallbackOpcode : std::int32_t {
  audioMasterAutomate = 0,
  audioMasterVersion = 1,
  audioMasterCurrentId = 2,
  audioMasterIdle = 3,
  audioMasterWantMidi = 6,
  audioMasterGetTime = 7,
  audioMasterProcessEvents = 8,
  audioMasterIOChanged = 13,
  audioMasterSizeWindow = 15,
  audioMasterGetSampleRate = 16,
  audioMasterGetBlockSize = 17,
  audioMasterGetCurrentProcessLevel = 23,
  audioMasterGetVendorString = 32,
  audioMasterGetProductString = 33,
  audioMasterGetVendorVersion = 34,
  audioMasterCanDo = 37,
  audioMasterGetLanguage = 38,
  audioMasterGetDirectory = 41,
  audioMasterUpdateDisplay = 42,
  audioMasterBeginEdit = 43,
  audioMasterEndEdit = 44,
};

enum ProcessLevel : std::int32_t {
  kVstProcessLevelUnknown = 0,
  kVstProcessLevelUser = 1,
  kVstProcessLevelRealtime = 2,
  kVstProcessLevelPrefetch = 3,
  kVstProcessLevelOffline = 4,
};

enum PlugCategory : std::int32_t { kPlugCategUnknown = 0, kPlugCategEffect = 1 };

/// What a host knows of tempo and position, filled on request.
struct VstTimeInfo {
  double samplePos;
  double sampleRate;
  double nanoSeconds;
  double ppqPos;  // quarter notes
  double tempo;   // beats per minute
  double barStartPos;
  double cycleStartPos;
  double cycleEndPos;
  std::int32_t timeSigNumerator;
  std::int32_t timeSigDenominator;
  std::int32_t smpteOffset;
  std::int32_t smpteFrameRate;
  std::int32_t samplesToNextClock;
  std::int32_t flags;
};

enum TimeInfoFlags : std::int32_t {
  kVstTransportChanged = 1,
  kVstTransportPlaying = 2,
  kVstTransportCycleActive = 4,
  kVstTransportRecording = 8,
  kVstNanosValid = 0x100,
  kVstPpqPosValid = 0x200,
  kVstTempoValid = 0x400,
  kVstBarsValid = 0x800,
  kVstCyclePosValid = 0x1000,
  kVstTimeSigValid = 0x2000,
};

struct VstEvent {
  std::int32_t type;
  std::int32_t byteSize;
  std::int32_t deltaFrames;
  std::int32_t flags;
  char data[16];
};

struct VstEvents {
  std::int32_t numEvents;
  std::intptr_t reserved;
  VstEvent* events[2];  // numEvents of them
};

inline constexpr std::int32_t kVstMidiType = 1;

struct VstMidiEvent {
  std::int32_t type;
  std::int32_t byteSize;
  std::int32_t deltaFrames;
  std::int32_t flags;
  std::int32_t noteLength;
  std::int32_t noteOffset;
  unsigned char midiData[4];
  signed char detune;
  unsigned char noteOffVelocity;
  unsigned char reserved[2];
};

struct ERect {
  std::int16_t top;
  std::int16_t left;
  std::int16_t bottom;
  std::int16_t right;
};

enum ParameterPropertyFlags : std::int32_t { kVstParameterIsSwitch = 1 };

struct VstParameterProperties {
  float stepFloat;
  float smallStepFloat;
  float largeStepFloat;
  char label[64];
  std::int32_t flags;
  std::int32_t minInteger;
  std::int32_t maxInteger;
  std::int32_t stepInteger;
  std::int32_t largeStepInteger;
  char shortLabel[8];
  std::int16_t displayIndex;
  std::int16_t category;
  std::int16_t numParametersInCategory;
  std::int16_t reserved;
  char categoryLabel[24];
  char future[16];
};

enum PinFlags : std::int32_t { kVstPinIsActive = 1, kVstPinIsStereo = 2 };

struct VstPinProperties {
  char label[64];
  std::int32_t flags;
  std::int32_t arrangementType;
  char shortLabel[8];
  char future[48];
};

struct VstKeyCode {
  std::int32_t character;
  unsigned char virt;
  unsigned char modifier;
};

// Room that hosts give for the texts that they ask for, terminator included.
inline constexpr std::size_t kVstMaxProgNameLen = 24;
inline constexpr std::size_t kVstMaxEffectNameLen = 32;
inline constexpr std::size_t kVstMaxVendorStrLen = 64;
inline constexpr std::size_t kVstMaxProductStrLen = 64;

static_assert(sizeof(void*) != 8 || sizeof(AEffect) == 192);
static_assert(offsetof(AEffect, future) + 56 == sizeof(AEffect));
static_assert(sizeof(VstTimeInfo) == 88);
static_assert(sizeof(VstMidiEvent) == 32 && sizeof(VstEvent) == 32);
static_assert(sizeof(ERect) == 8);
static_assert(sizeof(VstParameterProperties) == 152);
static_assert(sizeof(VstPinProperties) == 128);

}  // namespace zum
