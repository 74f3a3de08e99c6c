#include "adaptor/dae/wrapper_process.hpp"

#include <algorithm>
#include <cstring>

#include "adaptor/dae/hostlib/effect_group.hpp"
#include "adaptor/dae/process_table.hpp"
#include "adaptor/dae/wrapper_control.hpp"
#include "core/host_text.hpp"
#include "editor/create_editor.hpp"

namespace zum {
namespace {

constexpr const char* kHostName = "KvRTAS";
constexpr double kTicksPerQuarter = 1.0416666666666667e-6;  // 1 / 960000
constexpr std::int32_t kAnswerVersion = 2;

bool isKnownAbility(const void* text) {
  const char* const word = static_cast<const char*>(text);
  const char* const known[] = {"sendVstMidiEvent", "receiveVstMidiEvent", "sizeWindow"};
  return word != nullptr && std::any_of(std::begin(known), std::end(known),
                                        [word](auto each) { return std::strcmp(word, each) == 0; });
}

}  // namespace

KvRTASWrapperProcess::KvRTASWrapperProcess(const HostRoutines& hostRoutines, float rate,
                                           bool stereo)
    : CEffectProcess(hostRoutines),
      CEffectProcessMIDI(hostRoutines),
      CEffectProcessRTAS(hostRoutines),
      isStereo(stereo),
      sampleRate(rate),
      chunkId(identifier("kvzm")) {
  addChunkType(chunkId, "Zelvane Audio Plugin Data", -152);
  effect.reset(new (std::nothrow) KvUniClient(audioMaster, createEditor));
  if (effect == nullptr) return;
  aeffect = effect->getAeffect();
  if (!tryAddProcess(aeffect, this)) throw std::bad_alloc();
  timeInfo.tempo = 120.0;
  call(effSetSampleRate, 0, nullptr, sampleRate);
}

// The process leaves the table first: what the effect still says reaches nobody.
KvRTASWrapperProcess::~KvRTASWrapperProcess() {
  if (aeffect != nullptr) removeProcess(aeffect);
  if (AEffEditor* const editor = getEditor()) editor->close();  // ahead of its window
  if (effect != nullptr) effect->close();
}

std::intptr_t KvRTASWrapperProcess::call(std::int32_t opcode, std::intptr_t value, void* ptr,
                                         float opt) {
  return aeffect->dispatcher(aeffect, opcode, 0, value, ptr, opt);
}

std::int32_t KvRTASWrapperProcess::EffectInit() {
  addControl(std::make_unique<CPluginControl_OnOff>(kBypassControl, identifier("bypa"),
                                                    "Master Bypass\nMastrByp\nMByp\nByp"));
  setMasterBypass(kBypassControl);
  for (std::int32_t i = 0; aeffect != nullptr && i < aeffect->numParams; ++i) {
    addControl(std::make_unique<KvRTASWrapperPluginControl>(*this, i));
  }
  if (const std::int32_t error = CEffectProcess::EffectInit(); error != kNoError) return error;
  midiInNode =
      addNode(std::make_unique<CEffectMIDIDirectDeliveryNode>(getMidiNodeName(), midiIn, this));
  midiInNode->activate();
  // This host never switches the effect on, and its blocks do not wait for programs.
  if (effect != nullptr) effect->programs();
  transport = std::make_unique<TransportAccess>(getHost());
  return kNoError;
}

void KvRTASWrapperProcess::SetControl(std::int32_t index, std::int32_t value) {
  if (index == kBypassControl) {
    bypassed.store(value > 0, std::memory_order_relaxed);
  } else if (aeffect != nullptr && index >= kFirstParameter) {
    aeffect->setParameter(aeffect, index - kFirstParameter, normalisedOf(value));
  }
  CEffectProcess::SetControl(index, value);
}

// States and learned controllers move parameters without telling the host, so the effect itself is
// asked.
std::int32_t KvRTASWrapperProcess::GetControl(std::int32_t index) const {
  const bool isParameter = aeffect != nullptr && index >= kFirstParameter &&
                           index - kFirstParameter < aeffect->numParams;
  if (!isParameter) return CEffectProcess::GetControl(index);
  return controlValueOf(aeffect->getParameter(aeffect, index - kFirstParameter));
}

void KvRTASWrapperProcess::RenderAudio(float** inputs, float** outputs, std::int32_t sampleCount)
    ZUM_REALTIME {
  if (aeffect == nullptr) return;
  if (VstEvents* const came = events.tryTake()) {
    // the effect's own routines keep the promise; their types in the record cannot say so
    trusted([&] { aeffect->dispatcher(aeffect, effProcessEvents, 0, 0, came, 0.0F); });
  }
  float* in[] = {inputs[0], isStereo ? inputs[1] : inputs[0]};
  float* out[] = {outputs[0], isStereo ? outputs[1] : outputs[0]};
  if (bypassed.load(std::memory_order_relaxed)) {
    for (int channel = 0; channel < 2 && sampleCount > 0; ++channel) {
      std::memmove(out[channel], in[channel],
                   static_cast<std::size_t>(sampleCount) * sizeof(float));
    }
    return;
  }
  trusted([&] { aeffect->processReplacing(aeffect, in, out, sampleCount); });  // as above
}

// ---- what the effect asks its host

std::intptr_t KvRTASWrapperProcess::audioMaster(AEffect* record, std::int32_t opcode,
                                                std::int32_t index, std::intptr_t /*value*/,
                                                void* ptr, float opt) {
  KvRTASWrapperProcess* const process = findProcess(record);
  return process != nullptr ? process->answer(opcode, index, ptr, opt) : 0;
}

std::intptr_t KvRTASWrapperProcess::answer(std::int32_t opcode, std::int32_t index, void* ptr,
                                           float opt) {
  switch (opcode) {
    case audioMasterAutomate:
      controlChanged(index + kFirstParameter, controlValueOf(opt));
      return 0;
    case audioMasterVersion: return kAnswerVersion;
    case audioMasterGetTime: return reinterpret_cast<std::intptr_t>(fillTime());
    case audioMasterGetSampleRate: {
      const CEffectGroup* const group = processGroup();
      return static_cast<std::intptr_t>(group != nullptr ? group->getSampleRate() : sampleRate);
    }
    case audioMasterGetVendorString:
    case audioMasterGetProductString:
      copyText(static_cast<char*>(ptr), kHostName, kVstMaxVendorStrLen);
      return 1;
    case audioMasterCanDo: return isKnownAbility(ptr) ? 1 : 0;
    case audioMasterBeginEdit: touchControl(index + kFirstParameter); return 0;
    case audioMasterEndEdit: releaseControl(index + kFirstParameter); return 0;
    default: return 0;  // also events: the effect's own have nowhere to go
  }
}

VstTimeInfo* KvRTASWrapperProcess::fillTime() {
  timeInfo.tempo = 120.0;
  timeInfo.timeSigNumerator = timeInfo.timeSigDenominator = 4;
  bool isRunning = false;
  std::int64_t ticks = 0;
  if (transport != nullptr) {
    timeInfo.tempo = transport->getCurrentTempo();
    isRunning = transport->isTransportRunning();
    transport->getCurrentMeter(timeInfo.timeSigNumerator, timeInfo.timeSigDenominator);
    ticks = transport->samplesToTicks(isRunning ? transport->getRealTimeSampleLocation()
                                                : transport->getTimelinePosition());
  }
  timeInfo.ppqPos = ticks > 0 ? static_cast<double>(ticks) * kTicksPerQuarter : 0.0;
  if (isRunning) {
    timeInfo.flags |= kVstTransportPlaying;
  } else {
    timeInfo.flags &= ~kVstTransportPlaying;
  }
  return &timeInfo;
}

void KvRTASWrapperProcess::midiIn(std::int32_t timestampFlag, const ShortMessage& message,
                                  void* process) {
  if (timestampFlag == 0) static_cast<KvRTASWrapperProcess*>(process)->events.tryPush(message);
}

}  // namespace zum
