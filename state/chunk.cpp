#include "state/chunk.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <string>

#include "platform/message_box.hpp"
#include "state/library_record.hpp"

namespace zum {
namespace {

constexpr std::uint32_t wordsOf(std::uint32_t bytes) ZUM_REALTIME {
  return bytes / 4 + (bytes % 4 != 0);
}

}  // namespace

bool KvChunk::claim(std::uint32_t count) ZUM_REALTIME {
  if (count <= wordsLeft()) return true;
  beyondEnd = true;
  return false;
}

std::uint32_t KvChunk::readWord() ZUM_REALTIME {
  std::uint32_t word = 0;
  if (claim(1)) std::memcpy(&word, at(cursor), sizeof word);
  ++cursor;
  return word;
}

void KvChunk::writeWord(std::uint32_t value) {
  if (!countOnly && claim(1) && words != nullptr) words[cursor] = value;
  ++cursor;
}

void KvChunk::putFloat(float value) { writeWord(std::bit_cast<std::uint32_t>(value)); }

float* KvChunk::getFloat(float& out) ZUM_REALTIME {
  out = getFloat();
  return &out;
}

float KvChunk::getFloat() ZUM_REALTIME { return std::bit_cast<float>(readWord()); }

void KvChunk::stepBack() ZUM_REALTIME { --cursor; }

void KvChunk::getQuad(Quad& out) ZUM_REALTIME {
  for (float& value : out) value = getFloat();
}

void KvChunk::getQuadCleared(Quad& out) ZUM_REALTIME {
  for (float& value : out) value = 0.0F;
  getQuad(out);
}

void KvChunk::putInt(std::int32_t value) { writeWord(static_cast<std::uint32_t>(value)); }

std::int32_t KvChunk::getInt(std::int32_t& out) ZUM_REALTIME { return out = getInt(); }

std::int32_t KvChunk::getInt() ZUM_REALTIME { return static_cast<std::int32_t>(readWord()); }

void KvChunk::putString(const char* text) {
  const auto length = static_cast<std::uint32_t>(text != nullptr ? std::strlen(text) : 0);
  writeWord(length);
  if (!countOnly && length > 0 && claim(wordsOf(length)) && words != nullptr) {
    std::memcpy(&words[cursor], text, length);
  }
  cursor += wordsOf(length);
}

ChunkString KvChunk::getString() {
  const std::string_view from = getText();
  if (from.empty()) return nullptr;
  auto text = std::make_unique<char[]>(from.size() + 1);
  std::memcpy(text.get(), from.data(), from.size());
  return text;
}

std::string_view KvChunk::getText() ZUM_REALTIME {
  const std::uint32_t length = readWord();
  if (length == 0) return {};
  if (!claim(wordsOf(length))) {
    cursor = capacity;  // nothing behind such a length means anything
    return {};
  }
  const unsigned char* from = at(cursor);
  cursor += wordsOf(length);
  return {reinterpret_cast<const char*>(from), length};
}

// A rest of less than a word is copied as far as the buffer goes, and never counted.
std::int32_t KvChunk::putBytes(const void* from, std::int32_t byteCount) {
  const auto bytes = static_cast<std::uint32_t>(std::max(byteCount, 0));
  if (!countOnly && bytes > 0 && claim(bytes / 4) && words != nullptr && wordsLeft() > 0) {
    std::memcpy(&words[cursor], from, std::min<std::size_t>(bytes, bytesLeft()));
  }
  cursor += bytes / 4;
  return static_cast<std::int32_t>(bytes / 4);
}

std::int32_t KvChunk::getBytes(void* to, std::int32_t byteCount) ZUM_REALTIME {
  const auto bytes = static_cast<std::uint32_t>(std::max(byteCount, 0));
  std::memset(to, 0, bytes);
  if (claim(bytes / 4) && wordsLeft() > 0) {
    std::memcpy(to, at(cursor), std::min<std::size_t>(bytes, bytesLeft()));
  }
  cursor += bytes / 4;
  return static_cast<std::int32_t>(bytes / 4);
}

bool KvChunk::limit(std::uint32_t count) ZUM_REALTIME {
  if (count > capacity) return false;
  capacity = count;
  return true;
}

void KvChunk::skip(std::uint32_t count) ZUM_REALTIME {
  claim(count);
  cursor = count <= wordsLeft() ? cursor + count : capacity;
}

void KvChunk::allocate(std::uint32_t count) {
  words = std::make_unique<std::uint32_t[]>(count);
  source = reinterpret_cast<const unsigned char*>(words.get());
  capacity = count;
  beyondEnd = false;
}

void KvChunk::adopt(std::unique_ptr<std::uint32_t[]> buffer, std::uint32_t count) {
  words = std::move(buffer);
  source = reinterpret_cast<const unsigned char*>(words.get());
  capacity = words != nullptr ? count : 0;
  beyondEnd = false;
  if (words != nullptr) holdsData = true;
}

void KvChunk::borrow(const void* memory, std::uint32_t count) ZUM_REALTIME {
  trusted([&] { words.reset(); });  // a reader on the audio thread owns nothing to free here
  source = static_cast<const unsigned char*>(memory);
  capacity = memory != nullptr ? count : 0;
  beyondEnd = false;
  if (memory != nullptr) holdsData = true;
}

bool KvChunk::stringFits(std::uint32_t ahead) const ZUM_REALTIME {
  if (ahead >= wordsLeft()) return false;
  std::uint32_t length = 0;
  std::memcpy(&length, at(cursor + ahead), sizeof length);
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

bool KvChunk::readHeader() ZUM_REALTIME {
  cursor = 0;
  beyondEnd = false;
  getInt(totalWords);
  getInt(version);
  getFloat(tempo);
  getFloat(sampleRate);
  getInt(magic);
  return magic == kMagic;
}

bool KvChunk::readHeader(bool quiet) {
  if (readHeader()) return true;
  if (!quiet) {
    const std::string product = libraryRecord().product;
    showMessage(product.c_str(), ("\t This is no valid " + product + " format!").c_str());
  }
  return false;
}

bool KvChunk::isNewer() const { return version > libraryRecord().version; }

}  // namespace zum
