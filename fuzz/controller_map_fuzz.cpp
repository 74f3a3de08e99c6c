// Any words as a controller map. Run by libFuzzer, or over the stored corpus by replay_main.cpp.
// Looks for words that lead outside of the buffer, for a refused map that changed something, and
// for a taken one that does not come back as it is.

#include "core/controller_map.hpp"
#include "core/tags.hpp"
#include "fuzz/bytes.hpp"
#include "tests/support/chunk_words.hpp"

namespace {

using namespace zum;

using test::Words;

Words wordsOf(const ControllerMap& map) {
  Words words = test::written([&](KvChunk& chunk) { map.writeCcMap(chunk); });
  demand(!words.empty());
  return words;
}

bool read(ControllerMap& map, const void* memory, std::size_t bytes) {
  KvChunk chunk;
  chunk.borrow(memory, static_cast<std::uint32_t>(bytes / 4));
  return map.readCcMap(chunk) == ControllerMap::Read::taken;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  ControllerMap map;
  map.controllers[3].append({tag::efAttack, 0});
  const Words before = wordsOf(map);
  const bool taken = read(map, data, size);
  const Words after = wordsOf(map);
  demand(taken || after == before);
  demand(!map.learning.load());
  ControllerMap copy;
  demand(read(copy, after.data(), 4 * after.size()));
  demand(wordsOf(copy) == after);
  return 0;
}
