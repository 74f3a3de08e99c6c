// Any bytes as what an LV2 host does with an instance, without windows. Run by libFuzzer, or over
// the stored corpus by replay_main.cpp. Looks for reads and writes outside of what a host hands in,
// for states that do not come back, and for sound that is no number.

#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "adaptor/lv2/ports.hpp"
#include "fuzz/bytes.hpp"
#include "fuzz/lv2_parts.hpp"
#include "tests/support/own_home.hpp"

namespace {

using namespace zum;
using namespace zum::fuzz;

const test::NoHome noHome;
/// A sequence that is exactly as long as it says.
std::vector<std::uint64_t> sequence(Bytes& in) {
  std::vector<std::uint64_t> words(1 + in.below(48));
  for (std::uint64_t& word : words) {  // mostly small halves: sizes and the numbers of words
    const auto low = in.take<std::uint8_t>();
    word = low == 0xFF ? in.take<std::uint64_t>()
                       : low | std::uint64_t{in.take<std::uint8_t>()} << 32U;
  }
  const LV2_Atom head{static_cast<std::uint32_t>(8 * (words.size() - 1)),
                      numberOf(nullptr, in.below(16) == 0 ? LV2_ATOM__Int : LV2_ATOM__Sequence)};
  std::memcpy(words.data(), &head, sizeof head);
  return words;
}

void run(const Instance& one, Bytes& in) {
  const std::size_t frames = in.below(130);
  std::vector<std::vector<float>> sound(lv2::Port::events);
  for (std::uint32_t port = 0; port < sound.size(); ++port) {
    sound[port].resize(frames, static_cast<float>(in.take<std::int8_t>()) / 128.0F);
    one.connect(port, in.below(64) == 0 ? nullptr : sound[port].data());
  }
  std::vector<std::uint64_t> events = sequence(in);
  std::vector<float> controls(in.below(8));
  for (float& value : controls) {
    value = in.take<float>();
    one.connect(lv2::Port::firstControl + in.below(64), &value);
  }
  one.connect(lv2::Port::events, in.below(16) == 0 ? nullptr : events.data());
  face().run(one.handle, static_cast<std::uint32_t>(frames));
  for (const std::vector<float>& channel : sound) {
    for (const float x : channel) demand(std::isfinite(x));
  }
  for (std::uint32_t port = 0; port < lv2::kPorts; ++port) one.connect(port, nullptr);
}

void restoreAny(const Instance& one, const std::string& start, Bytes& in) {
  Kept kept{.bytes = start};
  const unsigned way = in.below(8);
  if (way == 0) kept.bytes = in.text(2048);
  if (way == 1) kept.type = in.take<std::uint8_t>();
  for (unsigned i = 2; i < way; ++i) {
    const std::size_t at = 4 * (in.below(4096) % (start.size() / 4));
    const auto word = in.take<std::int32_t>();
    std::memcpy(&kept.bytes[at], &word, sizeof word);
  }
  const std::string before = one.save();
  if (!one.restore(kept)) demand(one.save() == before);
  demand(one.restore({.bytes = one.save()}));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto kept = std::make_unique<Instance>();
  static const std::string start = kept->save();
  Bytes in{data, size};
  const auto way = in.take<std::uint8_t>();
  if (way == 0xFF) kept = std::make_unique<Instance>();
  if (way == 0xFE) const Instance other{in.take<double>(), in.below(2) == 0};
  demand(kept->restore({.bytes = start}));
  for (int calls = 0; in.left > 0 && calls < 100; ++calls) {
    const unsigned what = in.below(8);
    if (what < 5) run(*kept, in);
    if (what == 5) face().deactivate(kept->handle), face().activate(kept->handle);
    if (what > 5) restoreAny(*kept, start, in);
  }
  return 0;
}
