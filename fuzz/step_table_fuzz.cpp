// Any words as a chunk that a step table is read from, taken and discarded. Run by libFuzzer, or
// over the stored corpus by replay_main.cpp. Looks for words that lead outside of the buffer, for a
// discarded read that is no twin of the taken one, and for a table that does not come back.

#include <cstring>
#include <vector>

#include "fuzz/bytes.hpp"
#include "state/table_xy.hpp"

namespace {

using namespace zum;

using Words = std::vector<std::uint32_t>;

void fill(KvChunk& chunk, const Words& words) {
  auto buffer = std::make_unique<std::uint32_t[]>(words.size());
  std::copy(words.begin(), words.end(), buffer.get());
  chunk.adopt(std::move(buffer), static_cast<std::uint32_t>(words.size()));
}

Words contentOf(KvTableXY& table) {
  KvChunk chunk;
  chunk.allocate(chunkWordsOf(table));
  chunk.countOnly = false;
  table.writeChunk(&chunk);
  demand(!chunk.overrun() && chunk.cursor == chunk.dataWords());
  Words words(chunk.dataWords());
  std::memcpy(words.data(), chunk.data(), 4 * words.size());
  return words;
}

void playAndEdit(KvTableXY& table) {
  for (const std::int32_t at : {-1, 0, 7, 1 << 30}) {
    table.getValue(at, 0);
    table.getValue(at);
    table.setValueBetween(at, 0.5F, 1.0F);
  }
  table.setMorphPosition(0.75F);
  table.setPageCount(2);
  table.getValue(3);
  table.setColumns(KvTableXY::kSteps);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  Words words(size / 4);
  for (Bytes in{data, size}; std::uint32_t & word : words) word = in.take<std::uint32_t>();

  KvTableXY untouched;
  const Words before = contentOf(untouched);
  KvChunk skipped;
  fill(skipped, words);
  demand(untouched.readChunk(&skipped, true) == 0);
  demand(contentOf(untouched) == before);

  KvTableXY table;
  table.reserve(words.size());
  KvChunk chunk;
  fill(chunk, words);
  const bool taken = table.readChunk(&chunk, false) != 0;
  demand(chunk.cursor == skipped.cursor && chunk.overrun() == skipped.overrun());
  const Words content = contentOf(table);
  demand(taken || content == before);

  KvTableXY again;
  again.reserve(content.size());
  KvChunk copy;
  fill(copy, content);
  demand(again.readChunk(&copy, false) != 0 && copy.cursor == content.size());
  demand(contentOf(again) == content);
  playAndEdit(table);
  return 0;
}
