// One loaded effect as a host holds it, and the host's answers to its calls. Used by headless_host.
#pragma once

#include <algorithm>
#include <atomic>
#include <bit>
#include <cmath>
#include <cstring>
#include <stdexcept>
#include <string>
#include <vector>

#include "core/aeffect.hpp"

extern "C" {  // given by realtime_check when it is preloaded, else null
[[gnu::weak]] void realtimeEnter();
[[gnu::weak]] void realtimeLeave();
}

namespace zum::hosts {

constexpr int kMaxBlock = 8192;
constexpr int kGuard = 16;          // frames and bytes behind a buffer
constexpr float kUntouched = 7.0f;  // what outputs hold before a block, and their guard

// A word that script and audio thread share. Relaxed, so that the host puts no order between the
// threads that would hide the effect's own races from a thread checker.
template <typename T>
struct Shared {
  std::atomic<T> word;
  void operator=(T value) { word.store(value, std::memory_order_relaxed); }
  operator T() const { return word.load(std::memory_order_relaxed); }
};

struct HostState {
  double rate = 48000.0;
  int block = 256;
  double frame = 0.0;  // song position
  Shared<double> tempo{120.0};
  Shared<bool> playing{false};
  Shared<int> level{kVstProcessLevelRealtime};
};
inline HostState host;

inline std::intptr_t answer(AEffect*, std::int32_t opcode, std::int32_t, std::intptr_t, void* ptr,
                            float) {
  static thread_local VstTimeInfo time{};
  if (opcode == audioMasterVersion) return 2400;
  if (opcode == audioMasterGetSampleRate) return static_cast<std::intptr_t>(host.rate);
  if (opcode == audioMasterGetBlockSize) return host.block;
  if (opcode == audioMasterGetCurrentProcessLevel) return host.level;
  if (opcode == audioMasterGetVendorString || opcode == audioMasterGetProductString)
    return std::strcpy(static_cast<char*>(ptr), "headless host") != nullptr;
  if (opcode != audioMasterGetTime) return 0;
  time.samplePos = host.frame;
  time.sampleRate = host.rate;
  time.tempo = host.tempo;
  time.ppqPos = host.frame / host.rate * time.tempo / 60.0;
  time.barStartPos = std::floor(time.ppqPos / 4.0) * 4.0;
  time.timeSigNumerator = time.timeSigDenominator = 4;
  time.flags = kVstPpqPosValid | kVstTempoValid | kVstBarsValid | kVstTimeSigValid;
  if (host.playing) time.flags |= kVstTransportPlaying;
  return reinterpret_cast<std::intptr_t>(&time);
}

class HostedEffect {
 public:
  using Entry = AEffect* (*)(audioMasterCallback);

  HostedEffect(Entry entry, audioMasterCallback callback) : effect(entry(callback)) {
    if (!effect || effect->magic != kEffectMagic) throw std::runtime_error("not an effect");
    call(effOpen);
    resume();
  }
  ~HostedEffect() {
    suspend();
    call(effClose);
  }
  HostedEffect(const HostedEffect&) = delete;

  std::intptr_t call(std::int32_t opcode, std::int32_t index = 0, std::intptr_t value = 0,
                     void* ptr = nullptr, float opt = 0.0f) {
    return effect->dispatcher(effect, opcode, index, value, ptr, opt);
  }
  /// The answer to a question for text, in a buffer of `room` bytes.
  std::string text(std::int32_t opcode, std::size_t room, std::int32_t index = 0) {
    std::string buffer(room, '\0');
    buffer.append(kGuard, '#');
    call(opcode, index, 0, buffer.data());
    if (buffer.find_first_not_of('#', room) != std::string::npos) overrun = true;
    return buffer.c_str();
  }
  void set(int tag, float value) { effect->setParameter(effect, tag, value); }
  float get(int tag) { return effect->getParameter(effect, tag); }
  void suspend() {
    call(effStopProcess);
    call(effMainsChanged, 0, 0);
  }
  void resume() {
    call(effSetSampleRate, 0, 0, nullptr, static_cast<float>(host.rate));
    call(effSetBlockSize, 0, host.block);
    call(effMainsChanged, 0, 1);
    call(effStartProcess);
  }

  /// One block: all inputs get `input`, every second one inverted. `wiggled` is the tag of a
  /// parameter to change before it, or -1.
  void process(const float* input, int frames, bool inPlace, VstEvents* events, int wiggled) {
    float* in[2];
    float* out[2];
    for (int c = 0; c < 2; ++c) {
      in[c] = buffers[c];
      out[c] = buffers[inPlace ? c : c + 2];
      std::fill_n(out[c], frames + kGuard, kUntouched);
      for (int i = 0; i < frames; ++i) in[c][i] = c == 0 ? input[i] : -0.8f * input[i];
    }
    if (realtimeEnter) realtimeEnter();
    if (events) call(effProcessEvents, 0, 0, events);
    if (wiggled >= 0) set(wiggled, std::fabs(input[0]));
    effect->processReplacing(effect, in, out, frames);
    if (realtimeLeave) realtimeLeave();
    for (int i = 0; i < frames + kGuard; ++i) {
      for (const float* channel : out) {
        if (i >= frames) {
          if (channel[i] != kUntouched) overrun = true;
        } else {
          if (!(std::fabs(channel[i]) <= peak)) peak = std::fabs(channel[i]);  // a NaN stays
          hash = (hash ^ std::bit_cast<std::uint32_t>(channel[i])) * 0x100000001b3U;
        }
      }
    }
  }

  AEffect* const effect;
  float peak = 0.0f;            // of both outputs since it was last cleared
  std::uint64_t hash = 0;       // of the same samples, however they were cut into blocks
  Shared<bool> overrun{false};  // wrote behind a buffer that it was given

 private:
  float buffers[4][kMaxBlock + kGuard] = {};
};

}  // namespace zum::hosts
