// Chunks as plain lists of words, for tests and fuzz targets.
#pragma once

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <vector>

#include "state/chunk.hpp"

namespace zum::test {

using Words = std::vector<std::uint32_t>;

/// A word of a list that is written down: an integer or a float.
struct Word {
  std::uint32_t bits;
  operator std::uint32_t() const { return bits; }               // NOLINT: reads as the list it is
  Word(int value) : bits(static_cast<std::uint32_t>(value)) {}  // NOLINT
  Word(float value) : bits(std::bit_cast<std::uint32_t>(value)) {}  // NOLINT
};

/// Words to be read from the start.
template <class List = std::vector<Word>>
void fill(KvChunk& chunk, const List& list) {
  auto buffer = std::make_unique<std::uint32_t[]>(list.size());
  std::copy(list.begin(), list.end(), buffer.get());
  chunk.cursor = 0;
  chunk.adopt(std::move(buffer), static_cast<std::uint32_t>(list.size()));
}

inline Words wordsOf(const KvChunk& chunk) {
  Words words(chunk.dataWords());
  if (!words.empty()) std::memcpy(words.data(), chunk.data(), 4 * words.size());
  return words;
}

/// What both passes of `write` leave: the one that counts, and the one that writes as much. Empty
/// when they differ.
template <class Write>
Words written(const Write& write, KvChunk& chunk, bool hasHeader = false) {
  chunk.reset();
  write(chunk);
  const std::uint32_t counted = chunk.cursor;
  chunk.countOnly = false;
  chunk.allocate(counted);
  if (!hasHeader) chunk.cursor = 0;  // a header takes the count from it
  write(chunk);
  return chunk.cursor == counted && !chunk.overrun() ? wordsOf(chunk) : Words();
}
template <class Write>
Words written(const Write& write) {
  KvChunk chunk;
  return written(write, chunk);
}

}  // namespace zum::test
