// Any bytes as a sequence of a host's calls to one of two instances. Run by libFuzzer, or over the
// stored corpus by replay_main.cpp. Looks for undefined behaviour and for texts that overrun.

#include <string_view>
#include <vector>

#include "core/host_text.hpp"
#include "fuzz/bytes.hpp"
#include "fuzz/kept_effect.hpp"
#include "tests/support/own_home.hpp"

namespace {

using namespace zum;
using test::LinkedEffect;

const test::NoHome noHome;

struct Answers {
  VstTimeInfo time{};
  std::intptr_t level = kVstProcessLevelRealtime;
  const char* product = "";
} answers;

std::intptr_t host(AEffect* /*effect*/, std::int32_t opcode, std::int32_t /*index*/,
                   std::intptr_t /*value*/, void* ptr, float /*opt*/) {
  if (opcode == audioMasterGetTime) return reinterpret_cast<std::intptr_t>(&answers.time);
  if (opcode == audioMasterGetCurrentProcessLevel) return answers.level;
  if (opcode == audioMasterGetProductString) copyText(static_cast<char*>(ptr), answers.product, 64);
  return 0;
}

/// Bytes that hosts give for what an opcode writes; 0 when it writes nothing.
std::size_t roomOf(std::int32_t opcode) {
  const auto is = [opcode](auto... any) { return ((opcode == any) || ...); };
  if (is(effGetProgramName, effGetProgramNameIndexed)) return kVstMaxProgNameLen;
  if (is(effGetParamLabel, effGetParamDisplay, effGetParamName)) return 64;
  if (is(effGetEffectName)) return kVstMaxEffectNameLen;
  if (is(effGetVendorString, effGetProductString)) return kVstMaxVendorStrLen;
  if (is(effEditGetRect, effGetChunk)) return sizeof(void*);
  if (is(effGetInputProperties, effGetOutputProperties)) return sizeof(VstPinProperties);
  return is(effGetParameterProperties) ? sizeof(VstParameterProperties) : 0;
}

void dispatch(const LinkedEffect& effect, Bytes& in) {
  constexpr std::size_t kGuard = 32;
  const auto opcode = static_cast<std::int32_t>(in.below(409)) - 8;
  if (opcode == effClose) return;
  const auto index = in.take<std::int32_t>();
  auto value = in.take<std::int64_t>();
  const auto opt = in.take<float>();
  const bool null = opcode == effEditOpen || in.below(8) == 7;
  const std::size_t room = roomOf(opcode);
  std::vector<char> memory(room > 0 ? room + kGuard : 1 + in.below(256), '#');
  std::array<VstEvent, 2> midi{};
  VstEvents list{static_cast<int>(in.below(5) % 3), 0, {&midi[0], &midi[1]}};
  void* ptr = memory.data();
  if (opcode == effProcessEvents) {
    for (VstEvent& event : midi) event = in.take<VstEvent>();
    ptr = &list;
  } else if (room == 0) {
    for (char& byte : memory) byte = in.take<char>();
    if (opcode != effSetChunk) memory.back() = '\0';
    if (opcode == effSetChunk) value = static_cast<std::int64_t>(memory.size());
  }
  if (null) ptr = nullptr;
  const std::intptr_t answer = effect.dispatch(opcode, index, value, ptr, opt);
  const auto guard = std::string_view(memory.data(), memory.size()).substr(room);
  demand(room == 0 || guard.find_first_not_of('#') == guard.npos);
  if (opcode == effGetChunk && !null) {
    demand(answer > 0);  // or the host would store a session without a state
    char* chunk = nullptr;
    std::memcpy(&chunk, memory.data(), sizeof chunk);
    std::vector<char> copy(chunk, chunk + answer);
    effect.dispatch(effSetChunk, index, answer, copy.data());
  }
}

void process(const LinkedEffect& effect, Bytes& in) {
  const std::size_t frames = in.below(301);
  const unsigned way = in.below(16);
  const std::size_t period = 1 + in.below(8);
  std::array<std::vector<float>, 4> sides;
  for (std::vector<float>& side : sides) side.resize(frames);
  for (std::size_t i = 0; i < 2 * frames; ++i) {
    std::vector<float>& side = sides[i % 2];
    side[i / 2] = i / 2 < period ? in.take<float>() : side[i / 2 - period];
  }
  const std::size_t to = way % 4 == 1 ? 0 : 2;  // in place, or into buffers of their own
  std::array<float*, 2> inputs = {sides[0].data(), sides[1].data()};
  std::array<float*, 2> outputs = {sides[to].data(), sides[to + 1].data()};
  if (way == 15) inputs[1] = nullptr;
  if (way == 14) outputs[0] = nullptr;
  AEffect* const record = effect.effect;
  const auto call = way == 13 ? record->process : record->processReplacing;
  call(record, inputs.data(), outputs.data(), static_cast<std::int32_t>(frames));
  if (answers.level != kVstProcessLevelOffline) return;
  // Without this every state that is loaded from here on takes half a second.
  answers.level = kVstProcessLevelRealtime;
  effect.process(inputs.data(), outputs.data(), 0);
}

void callOnce(const LinkedEffect& effect, unsigned what, Bytes& in) {
  if (what == 0) answers.time = in.take<VstTimeInfo>();
  if (what == 1) answers.level = in.take<std::int32_t>();
  if (what == 2) effect.dispatch(effSetSampleRate, 0, 0, nullptr, in.take<float>());
  if (what == 3) effect.get(in.take<std::int32_t>());
  if (what >= 4 && what < 7) {
    const std::int32_t tag = in.take<std::int16_t>() % 300;
    effect.set(tag, in.take<float>());
  }
  if (what >= 7 && what < 11) process(effect, in);
  if (what >= 11) dispatch(effect, in);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Bytes in{data, size};
  const auto kind = in.take<std::uint16_t>();
  answers = {.product = kind % 2 == 1 ? "Sony ACID Pro" : ""};
  // the product is asked for by a fresh one alone
  static KeptEffect first(host), second(host), alone(nullptr);
  KeptEffect* const effects[] = {&first, kind % 8 < 2 ? &alone : &second};
  for (KeptEffect* effect : effects) effect->begin(kind >> 8U == 0xFF);
  for (int calls = 0; in.left > 0 && calls < 300; ++calls) {
    const unsigned what = in.below(32);
    callOnce(effects[what / 16]->use(), what % 16, in);
  }
  return 0;
}
