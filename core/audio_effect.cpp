#include "core/audio_effect.hpp"

#include <algorithm>
#include <array>
#include <exception>

#include "core/host_text.hpp"

namespace zum {
namespace {

AudioEffect& effectOf(AEffect* record) { return *static_cast<AudioEffect*>(record->object); }

std::intptr_t dispatchEntry(AEffect* record, std::int32_t opcode, std::int32_t index,
                            std::intptr_t value, void* ptr, float opt) {
  AudioEffect& effect = effectOf(record);
  std::intptr_t answer = 0;
  try {
    answer = effect.dispatcher(opcode, index, value, ptr, opt);
  } catch (const std::exception&) {
    // Without memory an opcode is answered as one that nothing handles: the host goes on.
  }
  if (opcode != effClose) return answer;
  delete &effect;  // closing is the end of the instance, and of its record
  return 1;
}

void setParameterEntry(AEffect* record, std::int32_t index, float value) {
  effectOf(record).setParameter(index, value);
}

float getParameterEntry(AEffect* record, std::int32_t index) {
  return effectOf(record).getParameter(index);
}

void replacingEntry(AEffect* record, float** inputs, float** outputs, std::int32_t frames) {
  effectOf(record).processReplacing(inputs, outputs, frames);
}

void doubleReplacingEntry(AEffect* record, double** inputs, double** outputs, std::int32_t frames) {
  effectOf(record).processDoubleReplacing(inputs, outputs, frames);
}

// The old call adds to what the outputs hold.
void accumulatingEntry(AEffect* record, float** inputs, float** outputs, std::int32_t frames) {
  const auto complete = [](float** channels) {
    return channels != nullptr && channels[0] != nullptr && channels[1] != nullptr;
  };
  if (!complete(inputs) || !complete(outputs)) return;
  constexpr std::int32_t kPart = 256;
  std::array<std::array<float, kPart>, 2> sum;
  for (std::int32_t done = 0, part = 0; done < frames; done += part) {
    part = std::min(kPart, frames - done);
    for (auto& channel : sum) channel.fill(0.0F);
    std::array<float*, 2> in = {inputs[0] + done, inputs[1] + done};
    std::array<float*, 2> out = {sum[0].data(), sum[1].data()};
    effectOf(record).processReplacing(in.data(), out.data(), part);
    for (std::size_t c = 0; c < 2; ++c) {
      for (std::int32_t i = 0; i < part; ++i) {
        outputs[c][done + i] += sum[c][static_cast<std::size_t>(i)];
      }
    }
  }
}

}  // namespace

AudioEffect::AudioEffect(audioMasterCallback host, std::int32_t programs, std::int32_t parameters)
    : audioMaster(host), numPrograms(programs), numParams(parameters) {
  cEffect.magic = kEffectMagic;
  cEffect.dispatcher = dispatchEntry;
  cEffect.process = accumulatingEntry;
  cEffect.setParameter = setParameterEntry;
  cEffect.getParameter = getParameterEntry;
  cEffect.numPrograms = programs;
  cEffect.numParams = parameters;
  cEffect.numInputs = 1;
  cEffect.numOutputs = 1;
  cEffect.ioRatio = 1.0F;
  cEffect.object = this;
  cEffect.uniqueID = fourCharacters("NoEf");
  cEffect.version = 1;
  cEffect.processReplacing = replacingEntry;
  cEffect.processDoubleReplacing = doubleReplacingEntry;
}

AudioEffect::~AudioEffect() { delete editor; }

void AudioEffect::processReplacing(float** /*inputs*/, float** /*outputs*/, std::int32_t /*frames*/)
    ZUM_REALTIME {}
void AudioEffect::processDoubleReplacing(double** /*inputs*/, double** /*outputs*/,
                                         std::int32_t /*frames*/) ZUM_REALTIME {}
void AudioEffect::setParameter(std::int32_t /*index*/, float /*value*/) ZUM_REALTIME {}
float AudioEffect::getParameter(std::int32_t /*index*/) ZUM_REALTIME { return 0.0F; }

void AudioEffect::setParameterAutomated(std::int32_t index, float value) {
  setParameter(index, value);
  callHost(audioMasterAutomate, index, 0, nullptr, value);
}

void AudioEffect::setProgramName(const char* /*name*/) {}
void AudioEffect::getProgramName(char* name) { copyText(name, "", kVstMaxProgNameLen); }
void AudioEffect::getParameterLabel(std::int32_t /*index*/, char* text) {
  copyText(text, "", kHostTextRoom);
}
void AudioEffect::getParameterDisplay(std::int32_t /*index*/, char* text) {
  copyText(text, "", kHostTextRoom);
}
void AudioEffect::getParameterName(std::int32_t /*index*/, char* text) {
  copyText(text, "", kHostTextRoom);
}
std::int32_t AudioEffect::getChunk(void** /*data*/, bool /*isPreset*/) { return 0; }
std::int32_t AudioEffect::setChunk(const void* /*data*/, std::int32_t /*byteSize*/,
                                   bool /*isPreset*/) {
  return 0;
}

void AudioEffect::setEditor(AEffEditor* newEditor) {
  editor = newEditor;
  if (editor != nullptr) {
    cEffect.flags |= effFlagsHasEditor;
  } else {
    cEffect.flags &= ~effFlagsHasEditor;
  }
}

void AudioEffect::setNumPrograms(std::int32_t n) {
  numPrograms = n;
  cEffect.numPrograms = n;
}

std::intptr_t AudioEffect::callHost(std::int32_t opcode, std::int32_t index, std::intptr_t value,
                                    void* ptr, float opt) {
  return audioMaster != nullptr ? audioMaster(&cEffect, opcode, index, value, ptr, opt) : 0;
}

}  // namespace zum
