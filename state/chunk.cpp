#include "state/chunk.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "platform/message_box.hpp"
#include "state/library_record.hpp"

namespace zum {
namespace {

constexpr std::uint32_t wordsOf(std::uint32_t bytes) { return bytes / 4 + (bytes % 4 != 0); }

}  // namespace

std::uint32_t* KvChunk::claim(std::uint32_t count) {
  if (count <= wordsLeft()) return words.get() + cursor;
  beyondEnd = true;
  return nullptr;
}

std::uint32_t KvChunk::readWord() {
  const std::uint32_t* word = claim(1);
  ++cursor;
  return word != nullptr ? *word : 0;
}

void KvChunk::writeWord(std::uint32_t value) {
  if (!countOnly) {
    if (std::uint32_t* word = claim(1)) *word = value;
  }
  ++cursor;
}

void KvChunk::putFloat(float value) { writeWord(std::bit_cast<std::uint32_t>(value)); }

float* KvChunk::getFloat(float& out) {
  out = getFloat();
  return &out;
}

float KvChunk::getFloat() { return std::bit_cast<float>(readWord()); }

void KvChunk::stepBack() { --cursor; }

void KvChunk::getQuad(Quad& out) {
  for (float& value : out) value = getFloat();
}

void KvChunk::getQuadCleared(Quad& out) {
  out.fill(0.0F);
  getQuad(out);
}

void KvChunk::putInt(std::int32_t value) { writeWord(static_cast<std::uint32_t>(value)); }

std::int32_t KvChunk::getInt(std::int32_t& out) { return out = getInt(); }

std::int32_t KvChunk::getInt() { return static_cast<std::int32_t>(readWord()); }

void KvChunk::putString(const char* text) {
  const auto length = static_cast<std::uint32_t>(text != nullptr ? std::strlen(text) : 0);
  writeWord(length);
  if (!countOnly && length > 0) {
    if (std::uint32_t* to = claim(wordsOf(length))) std::memcpy(to, text, length);
  }
  cursor += wordsOf(length);
}

ChunkString KvChunk::getString() {
  const std::uint32_t length = readWord();
  if (length == 0) return nullptr;
  const std::uint32_t* from = claim(wordsOf(length));
  if (from == nullptr) {
    cursor = capacity;  // nothing behind such a length means anything
    return nullptr;
  }
  auto text = std::make_unique<char[]>(length + 1);
  std::memcpy(text.get(), from, length);
  cursor += wordsOf(length);
  return text;
}

// A rest of less than a word is copied as far as the buffer goes, and never counted.
std::int32_t KvChunk::putBytes(const void* from, std::int32_t byteCount) {
  const auto bytes = static_cast<std::uint32_t>(std::max(byteCount, 0));
  if (!countOnly && bytes > 0) {
    if (std::uint32_t* to = claim(bytes / 4)) std::memcpy(to, from, std::min(bytes, bytesLeft()));
  }
  cursor += bytes / 4;
  return static_cast<std::int32_t>(bytes / 4);
}

std::int32_t KvChunk::getBytes(void* to, std::int32_t byteCount) {
  const auto bytes = static_cast<std::uint32_t>(std::max(byteCount, 0));
  std::memset(to, 0, bytes);
  if (const std::uint32_t* from = claim(bytes / 4)) {
    std::memcpy(to, from, std::min(bytes, bytesLeft()));
  }
  cursor += bytes / 4;
  return static_cast<std::int32_t>(bytes / 4);
}

void KvChunk::allocate(std::uint32_t count) {
  words = std::make_unique<std::uint32_t[]>(count);
  capacity = count;
  beyondEnd = false;
}

void KvChunk::adopt(std::unique_ptr<std::uint32_t[]> buffer, std::uint32_t count) {
  words = std::move(buffer);
  capacity = words != nullptr ? count : 0;
  beyondEnd = false;
  if (words != nullptr) holdsData = true;
}

bool KvChunk::stringFits(std::uint32_t ahead) const {
  if (ahead >= wordsLeft()) return false;
  const std::uint32_t length = words[cursor + ahead];
  return wordsOf(length) <= wordsLeft() - ahead - 1;
}

void KvChunk::reset() {
  beyondEnd = false;
  holdsData = false;
  countOnly = true;
  cursor = 0;
}

void KvChunk::writeHeader() {
  if (countOnly) {
    cursor += kHeaderWords;
    version = libraryRecord().version;
    return;
  }
  const std::uint32_t total = cursor;  // of the counting pass
  cursor = 0;
  putInt(static_cast<std::int32_t>(total));
  putInt(libraryRecord().version);
  putFloat(tempo);
  putFloat(sampleRate);
  putInt(kMagic);
}

bool KvChunk::readHeader(bool quiet) {
  cursor = 0;
  beyondEnd = false;
  getInt(totalWords);
  getInt(version);
  getFloat(tempo);
  getFloat(sampleRate);
  getInt(magic);
  if (magic == kMagic) return true;
  if (!quiet) {
    const std::string product = libraryRecord().product;
    showMessage(product.c_str(), ("\t This is no valid " + product + " format!").c_str());
  }
  return false;
}

bool KvChunk::isNewer() const { return version > libraryRecord().version; }

}  // namespace zum
