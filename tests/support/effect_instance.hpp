// One effect as its host holds it, known by its binary face alone: the one way of tests, hosts,
// benchmarks and fuzz targets to speak to an effect, linked in (linked_effect.hpp) or of a plug-in
// file. Derive from it for audio, time and what else a host gives.
#pragma once

#include <dlfcn.h>

#include <cstddef>
#include <cstdint>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/aeffect.hpp"
#include "tests/support/realtime_watch.hpp"

namespace zum::test {

/// A short message of MIDI, `delta` frames behind the start of the next block.
struct ShortMessage {
  std::int32_t delta;
  int status, data1, data2 = 0;
};

class EffectInstance {
 public:
  explicit EffectInstance(AEffect* made) : effect(made) {
    if (made == nullptr || made->magic != kEffectMagic) throw std::runtime_error("not an effect");
  }
  ~EffectInstance() { dispatch(effClose); }
  EffectInstance(const EffectInstance&) = delete;
  EffectInstance& operator=(const EffectInstance&) = delete;

  std::intptr_t dispatch(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                         void* ptr = nullptr, float opt = 0.0F) const {
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
  }
  void set(std::int32_t tag, float value) const { effect->setParameter(effect, tag, value); }
  float get(std::int32_t tag) const { return effect->getParameter(effect, tag); }

  /// As a host does it before the first block, and after suspend().
  void resume(float sampleRate, std::int32_t blockSize) const {
    dispatch(effSetSampleRate, 0, 0, nullptr, sampleRate);
    dispatch(effSetBlockSize, 0, blockSize);
    dispatch(effMainsChanged, 0, 1);
    dispatch(effStartProcess);
  }
  void suspend() const {
    dispatch(effStopProcess);
    dispatch(effMainsChanged, 0, 0);
  }
  void process(float** inputs, float** outputs, std::int32_t frames) const {
    const RealtimeWatch watch;
    effect->processReplacing(effect, inputs, outputs, frames);
  }

  /// The text that an opcode writes into `room` bytes.
  std::string text(std::int32_t opcode, std::int32_t index = 0, std::size_t room = 512) {
    std::string buffer(room + 16, '#');  // with a guard behind the room
    dispatch(opcode, index, 0, buffer.data());
    const std::size_t end = buffer.find('\0');
    overran = overran || end >= room || buffer.find_first_not_of('#', room) != std::string::npos;
    return buffer.substr(0, end);
  }
  bool overran = false;  // an answer that was longer than its room, or had no end

  /// What a host's session keeps, and the way back.
  std::string state() const {
    void* bytes = nullptr;
    const std::intptr_t size = dispatch(effGetChunk, 0, 0, &bytes);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
  }
  std::intptr_t load(std::string state) const {
    return dispatch(effSetChunk, 0, static_cast<std::intptr_t>(state.size()), state.data());
  }

  std::intptr_t send(const std::vector<ShortMessage>& messages) const {
    std::vector<VstMidiEvent> midi(messages.size());
    for (std::size_t i = 0; i < messages.size(); ++i) {
      midi[i].type = kVstMidiType;
      midi[i].byteSize = sizeof(VstMidiEvent);
      midi[i].deltaFrames = messages[i].delta;
      midi[i].midiData[0] = static_cast<unsigned char>(messages[i].status);
      midi[i].midiData[1] = static_cast<unsigned char>(messages[i].data1);
      midi[i].midiData[2] = static_cast<unsigned char>(messages[i].data2);
    }
    return send(midi);
  }
  std::intptr_t send(std::vector<VstMidiEvent>& midi) const {
    std::vector<std::byte> memory(sizeof(VstEvents) + midi.size() * sizeof(void*));
    auto* events = new (memory.data()) VstEvents{static_cast<std::int32_t>(midi.size()), 0, {}};
    VstEvent** list = events->events;
    for (VstMidiEvent& each : midi) *list++ = reinterpret_cast<VstEvent*>(&each);
    const RealtimeWatch watch;
    return dispatch(effProcessEvents, 0, 0, events);
  }

  AEffect* const effect;
};

/// A plug-in file, loaded for as long as this lives; the effects that it made go before it.
class PluginFile {
 public:
  explicit PluginFile(const char* path) : library(dlopen(path, RTLD_NOW | RTLD_LOCAL), dlclose) {
    if (library) entry = reinterpret_cast<Entry>(dlsym(library.get(), "VSTPluginMain"));
    if (entry == nullptr) throw std::runtime_error(dlerror());
  }

  AEffect* make(audioMasterCallback host) const { return entry(host); }

 private:
  using Entry = AEffect* (*)(audioMasterCallback);
  std::unique_ptr<void, int (*)(void*)> library;
  Entry entry = nullptr;
};

}  // namespace zum::test
