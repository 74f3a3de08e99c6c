#include <cstring>

#include "core/audio_effect.hpp"
#include "core/host_text.hpp"

namespace zum {
namespace {

// The host is outside of what can be checked: these calls are the block's only ones to it, and
// hosts promise to answer them on the audio thread.
std::intptr_t callOnAudioThread(audioMasterCallback host, AEffect* record, std::int32_t opcode,
                                std::intptr_t value, float opt = 0.0F) ZUM_REALTIME {
  if (host == nullptr) return 0;
  return trusted([&] { return host(record, opcode, 0, value, nullptr, opt); });
}

}  // namespace

std::int32_t AudioEffectX::processEvents(VstEvents* /*events*/) { return 0; }
bool AudioEffectX::canParameterBeAutomated(std::int32_t /*index*/) { return true; }
bool AudioEffectX::string2parameter(std::int32_t /*index*/, const char* /*text*/) { return false; }
bool AudioEffectX::getProgramNameIndexed(std::int32_t /*category*/, std::int32_t /*index*/,
                                         char* /*text*/) {
  return false;
}
bool AudioEffectX::getInputProperties(std::int32_t /*index*/, VstPinProperties* /*properties*/) {
  return false;
}
bool AudioEffectX::getOutputProperties(std::int32_t /*index*/, VstPinProperties* /*properties*/) {
  return false;
}
bool AudioEffectX::getEffectName(char* /*name*/) { return false; }
bool AudioEffectX::getVendorString(char* /*text*/) { return false; }
bool AudioEffectX::getProductString(char* /*text*/) { return false; }
std::int32_t AudioEffectX::canDo(const char* /*text*/) { return 0; }
bool AudioEffectX::getParameterProperties(std::int32_t /*index*/,
                                          VstParameterProperties* /*properties*/) {
  return false;
}

bool AudioEffectX::beginEdit(std::int32_t index) {
  return callHost(audioMasterBeginEdit, index) != 0;
}
bool AudioEffectX::endEdit(std::int32_t index) { return callHost(audioMasterEndEdit, index) != 0; }

void AudioEffectX::wantEvents() { callHost(audioMasterWantMidi, 0, 1); }

void AudioEffectX::noTail(bool state) {
  if (state) {
    cEffect.flags |= effFlagsNoSoundInStop;
  } else {
    cEffect.flags &= ~effFlagsNoSoundInStop;
  }
}

bool AudioEffectX::getHostVendorString(char (&text)[256]) {
  std::memset(text, 0, sizeof text);
  const bool known = callHost(audioMasterGetVendorString, 0, 0, text) != 0;
  text[sizeof text - 1] = '\0';
  return known;
}

bool AudioEffectX::getHostProductString(char (&text)[256]) {
  std::memset(text, 0, sizeof text);
  const bool known = callHost(audioMasterGetProductString, 0, 0, text) != 0;
  text[sizeof text - 1] = '\0';
  return known;
}

VstTimeInfo* AudioEffectX::getTimeInfo(std::int32_t filter) ZUM_REALTIME {
  const std::intptr_t record = callOnAudioThread(audioMaster, &cEffect, audioMasterGetTime, filter);
  return reinterpret_cast<VstTimeInfo*>(record);  // NOLINT: hosts hand the address as a number
}

std::int32_t AudioEffectX::getCurrentProcessLevel() ZUM_REALTIME {
  return static_cast<std::int32_t>(
      callOnAudioThread(audioMaster, &cEffect, audioMasterGetCurrentProcessLevel, 0));
}

void AudioEffectX::callHostInBlock(std::int32_t opcode, float opt) ZUM_REALTIME {
  callOnAudioThread(audioMaster, &cEffect, opcode, 0, opt);
}

}  // namespace zum
