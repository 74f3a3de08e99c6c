// Any words as a state that a host gives back. Run by libFuzzer, or over the stored corpus by
// replay_main.cpp. Looks for words that lead outside of the buffer, for a refused state that
// changed something, and for a taken one that does not come back as it is.

#include <cstdlib>
#include <vector>

#include "core/create_effect.hpp"
#include "core/uni_client.hpp"
#include "fuzz/bytes.hpp"
#include "fuzz/no_home.hpp"

namespace {

using namespace zum;

using Memory = std::vector<std::uint8_t>;

const NoHome noHome;

KvUniClient& effect() {
  static AEffect* const record = createEffect(nullptr);
  return *dynamic_cast<KvUniClient*>(static_cast<AudioEffect*>(record->object));
}

void demand(bool holds) {
  if (!holds) std::abort();
}

Memory state() {
  void* data = nullptr;
  const auto bytes = static_cast<std::size_t>(effect().getChunk(&data, false));
  demand(bytes > 0);
  const auto* from = static_cast<const std::uint8_t*>(data);
  return {from, from + bytes};
}

bool load(const Memory& memory, LoadFlags flags) {
  KvChunk chunk;
  chunk.borrow(memory.data(), static_cast<std::uint32_t>(memory.size() / 4));
  return effect().loadPreset(chunk, 0, flags);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  constexpr LoadFlags kRecall = {.restoreAll = true, .quiet = true};
  static const Memory start = state();
  const Memory input(data, data + size);
  for (const bool recall : {false, true}) {
    demand(load(start, kRecall));
    const Memory before = state();
    const bool taken = load(input, {.restoreAll = recall, .quiet = true});
    const Memory after = state();
    demand(taken || after == before);
    demand(load(after, kRecall));
    demand(state() == after);
  }
  return 0;
}
