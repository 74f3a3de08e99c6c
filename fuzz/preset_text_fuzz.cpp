// Any bytes as the text of a preset. Run by libFuzzer, or over the stored corpus by
// replay_main.cpp. Looks for a preset that is another one behind its own text or its own words.

#include <string_view>

#include "fuzz/bytes.hpp"
#include "preset_text/failure.hpp"
#include "preset_text/preset_text.hpp"
#include "tests/support/chunk_words.hpp"

namespace {

using namespace zum;

bool reads(std::string_view text, PresetDocument& document) try {
  const auto source = [&text](char* to, std::size_t room) {
    const std::size_t count = text.copy(to, room);
    text.remove_prefix(count);
    return count;
  };
  TextLines lines("fuzz", source, kMostPresetText);
  readPresetText(lines, document, [](const std::string& odd) { demand(!odd.empty()); });
  return true;
} catch (const Failure& failure) {
  demand(*failure.what() != '\0');
  return false;
}

void demandSameWords(const PresetDocument& document) {
  KvChunk chunk;
  writePresetDocument(document, chunk);
  const test::Words words = test::wordsOf(chunk);
  PresetDocument read;
  chunk.cursor = 0;
  if (readPresetDocument(chunk, read)) return;  // not all that is written loads
  KvChunk again;
  writePresetDocument(read, again);
  demand(test::wordsOf(again) == words);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  PresetDocument document;
  if (!reads({reinterpret_cast<const char*>(data), size}, document)) return 0;
  const std::string text = presetText(document);
  PresetDocument again;
  demand(reads(text, again));
  demand(presetText(again) == text);
  demandSameWords(document);
  return 0;
}
