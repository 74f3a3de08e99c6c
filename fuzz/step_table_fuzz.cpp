// Any words as a chunk that a step table is read from, taken and discarded. Run by libFuzzer, or
// over the stored corpus by replay_main.cpp. Looks for words that lead outside of the buffer, for a
// discarded read that is no twin of the taken one, and for a table that does not come back.

#include "fuzz/bytes.hpp"
#include "state/table_xy.hpp"
#include "tests/support/chunk_words.hpp"

namespace {

using namespace zum;

using test::fill;
using test::Words;

Words contentOf(KvTableXY& table) {
  Words words = test::written([&](KvChunk& chunk) { table.writeChunk(&chunk); });
  demand(!words.empty());
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
