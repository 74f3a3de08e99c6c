// The smallest host of the effect: owns one instance and speaks to it only through its record.
#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "apps/zum/midi_file.hpp"
#include "core/aeffect.hpp"
#include "core/create_effect.hpp"

namespace zum {

class EffectHost {
 public:
  /// An open effect that is switched on; throws Failure when there is none to be had. `tempo` in
  /// beats per minute; the transport plays from position 0 or stands still. Without a factory it
  /// has no window.
  EffectHost(double sampleRate, int blockSize, double tempo, bool plays,
             EditorFactory makeEditor = nullptr);
  ~EffectHost();
  EffectHost(const EffectHost&) = delete;
  EffectHost& operator=(const EffectHost&) = delete;

  void setParameter(int tag, float value) { effect->setParameter(effect, tag, value); }
  /// Two channels in, two out, at most `blockSize` frames. A transport that plays moves on.
  void process(float** inputs, float** outputs, int frames);
  /// MIDI of the next block, which starts with frame `start`.
  void send(std::span<const MidiMessage> messages, std::int64_t start);
  // [main] The effect's window, not inside of another one; a thread may process meanwhile.
  /// False when there is none to be had.
  bool openEditor();
  /// Some thirty times a second.
  void idleEditor() { dispatch(effEditIdle); }
  void closeEditor() { dispatch(effEditClose); }
  /// What an EffectView is made of, which sees what no host can.
  const AEffect& record() const { return *effect; }

 private:
  static std::intptr_t answer(AEffect* caller, std::int32_t opcode, std::int32_t index,
                              std::intptr_t value, void* ptr, float opt);
  std::intptr_t dispatch(std::int32_t opcode, std::intptr_t value = 0, float opt = 0.0F,
                         void* ptr = nullptr) {
    return effect->dispatcher(effect, opcode, 0, value, ptr, opt);
  }

  VstTimeInfo time{};
  int framesPerBlock;
  AEffect* effect;
  std::vector<VstMidiEvent> midi;
  std::vector<std::byte> sent;  // a list of their addresses
};

}  // namespace zum
