// Random MIDI in random blocks, with learning and maps that change meanwhile. Run by libFuzzer, or
// over the stored corpus by replay_main.cpp. Looks for reads and writes outside of lists and
// queues, and for sound that is no number.

#include <array>
#include <cmath>
#include <vector>

#include "fuzz/bytes.hpp"
#include "fuzz/kept_effect.hpp"
#include "tests/support/own_home.hpp"

namespace {

using namespace zum;

const test::NoHome noHome;
constexpr std::int32_t kMostFrames = 256;

using Effect = test::LinkedEffect;

void send(Effect& effect, Bytes& bytes) {
  std::vector<VstMidiEvent> midi(bytes.below(64));
  for (VstMidiEvent& event : midi) {
    event.type = bytes.below(8) == 0 ? bytes.take<std::int32_t>() : kVstMidiType;
    event.deltaFrames = bytes.below(8) == 0 ? bytes.take<std::int32_t>()
                                            : static_cast<std::int32_t>(bytes.below(kMostFrames));
    for (unsigned char& byte : event.midiData) byte = bytes.take<unsigned char>();
    if (bytes.below(32) == 0) event.type = 0;
  }
  effect.send(midi);
}

void play(Effect& effect, Bytes& bytes) {
  std::array<std::array<float, kMostFrames>, 2> sound{};
  for (auto& channel : sound) channel.fill(0.25F);
  std::array<float*, 2> channels = {sound[0].data(), sound[1].data()};
  const auto frames = static_cast<std::int32_t>(bytes.below(kMostFrames + 1));
  effect.process(channels.data(), channels.data(), frames);
  for (const auto& channel : sound) {
    for (const float x : channel) demand(std::isfinite(x));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static KeptEffect kept;
  Bytes bytes{data, size};
  kept.begin(bytes.take<std::uint8_t>() == 0xFF);
  Effect& effect = kept.use();
  const auto anyTag = [&bytes] { return static_cast<std::int32_t>(bytes.below(300)) - 20; };
  while (bytes.left > 0) {
    switch (bytes.below(8)) {
      case 0: effect.client().beginLearn(anyTag()); break;
      case 1: effect.client().clearBindings(anyTag()); break;
      case 2: {
        EngineEvent event{};  // as an adaptor may put one into the queue
        event.code = static_cast<EngineEvent::Code>(bytes.below(16) + 195);
        event.data1 = bytes.take<std::uint8_t>();
        event.data2 = static_cast<std::uint8_t>(bytes.below(128));
        effect.client().handleEvent(event);
        break;
      }
      case 3:
        effect.client().setOption(0, static_cast<int>(bytes.below(2)), false);
        effect.client().controllers().learning.store(bytes.below(8) == 0);
        break;
      case 4:
      case 5: send(effect, bytes); break;
      default: play(effect, bytes); break;
    }
  }
  return 0;
}
