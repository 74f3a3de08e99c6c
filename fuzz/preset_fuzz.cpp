// Any words as a state that a host gives back. Run by libFuzzer, or over the stored corpus by
// replay_main.cpp. Looks for words that lead outside of the buffer, for a refused state that
// changed something, and for a taken one that does not come back as it is.

#include "fuzz/bytes.hpp"
#include "tests/support/linked_effect.hpp"
#include "tests/support/own_home.hpp"

namespace {

using namespace zum;

const test::NoHome noHome;

const test::LinkedEffect& effect() {
  static const test::LinkedEffect made;
  return made;
}

bool load(const std::string& state, LoadFlags flags) {
  KvChunk chunk;
  chunk.borrow(state.data(), static_cast<std::uint32_t>(state.size() / 4));
  return effect().client().loadPreset(chunk, 0, flags);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr LoadFlags kRecall = {.restoreAll = true, .quiet = true};
  static const std::string start = effect().state();
  const std::string input(data, data + size);
  for (const bool recall : {false, true}) {
    demand(load(start, kRecall));
    const std::string before = effect().state();
    const bool taken = load(input, {.restoreAll = recall, .quiet = true});
    const std::string after = effect().state();
    demand(!after.empty() && (taken || after == before));
    demand(load(after, kRecall));
    demand(effect().state() == after);
  }
  return 0;
}
