// The one serialisation primitive: a flat array of 32-bit words with a cursor. Presets, the host's
// saved state, controller maps and step tables are written into and read from it.
//
//   word 0      total length in words, header included
//   word 1      library version of the writer
//   word 2, 3   tempo in beats per minute and sample rate in Hz of the writer, as floats
//   word 4      magic number
//   word 5...   whatever the writer puts, in the order of its calls
//
// Words are copied as they stand, little-endian. Nothing in a chunk tells what a word means: its
// reader makes the same calls in the same order as its writer did.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>

#include "engine/realtime.hpp"

namespace zum {

using ChunkString = std::unique_ptr<char[]>;

/// A record of four words.
using Quad = std::array<float, 4>;

/// Used by one thread at a time. Written in two passes over the same calls: the first, with
/// `countOnly` set, moves the cursor alone; then allocate(cursor), and the second one fills.
class KvChunk {
 public:
  static constexpr std::int32_t kMagic = 26101977;
  static constexpr std::int32_t kHeaderWords = 5;

  KvChunk() = default;
  KvChunk(const KvChunk&) = delete;
  KvChunk& operator=(const KvChunk&) = delete;
  virtual ~KvChunk() = default;

  // Every read and write moves the cursor behind its words. A read past the end of the buffer
  // gives zeros and marks the chunk as overrun; a write past it is dropped and marks it too.
  // Reading never allocates but in getString.
  virtual void putFloat(float value);
  virtual float* getFloat(float& out) ZUM_REALTIME;
  virtual float getFloat() ZUM_REALTIME;
  virtual void stepBack() ZUM_REALTIME;
  virtual void getQuad(Quad& out) ZUM_REALTIME;
  virtual void getQuadCleared(Quad& out) ZUM_REALTIME;
  virtual void putInt(std::int32_t value);
  virtual std::int32_t getInt(std::int32_t& out) ZUM_REALTIME;
  virtual std::int32_t getInt() ZUM_REALTIME;
  virtual void reserved(std::int32_t /*first*/, std::int32_t /*second*/) {}
  /// Length word, then the bytes, padded to a whole word. Null and "" are one word, 0.
  virtual void putString(const char* text);
  /// Moves the cursor by the whole words in `byteCount` only, and returns them.
  virtual std::int32_t putBytes(const void* from, std::int32_t byteCount);
  /// Null for a length of 0, and for one that does not fit.
  virtual ChunkString getString();
  /// Moves the cursor by the whole words in `byteCount` only, and returns them.
  virtual std::int32_t getBytes(void* to, std::int32_t byteCount) ZUM_REALTIME;
  /// The bytes of a string where they lie, without a terminator; empty like getString's null.
  std::string_view getText() ZUM_REALTIME;

  /// A zeroed buffer of `words`. Cursor and flags stay.
  void allocate(std::uint32_t words);
  /// Takes over a buffer of `words` for reading; the cursor stays. Null takes none.
  void adopt(std::unique_ptr<std::uint32_t[]> buffer, std::uint32_t words);
  /// Reads `words` where they lie, at any alignment; they stay with their owner, who keeps them as
  /// long as this reads. The cursor stays.
  void borrow(const void* memory, std::uint32_t words) ZUM_REALTIME;
  /// Back to an empty chunk in counting mode. The buffer stays.
  void reset();
  static constexpr std::int32_t headerWords() { return kHeaderWords; }
  void writeHeader();
  /// False, and a message unless `quiet`, when the magic number is another.
  bool readHeader(bool quiet);
  /// The same without a message.
  bool readHeader() ZUM_REALTIME;
  /// True when the writer's library is newer than this one.
  bool isNewer() const;

  /// True once anything past the end of the buffer was asked for, since the last header.
  bool overrun() const ZUM_REALTIME { return beyondEnd; }
  /// Marks the chunk as overrun, too: for a reader that met a value that cannot be.
  void refuse() ZUM_REALTIME { beyondEnd = true; }
  /// True if a string that starts `ahead` words behind the cursor lies in the buffer whole.
  bool stringFits(std::uint32_t ahead) const ZUM_REALTIME;
  /// Words between the cursor and the end of the buffer.
  std::uint32_t wordsLeft() const ZUM_REALTIME { return cursor < capacity ? capacity - cursor : 0; }
  /// Nothing behind the first `words` is read any more. False when there are fewer.
  bool limit(std::uint32_t words) ZUM_REALTIME;
  /// Moves the cursor only; past the end marks the chunk as overrun.
  void skip(std::uint32_t count) ZUM_REALTIME;
  /// The first word's memory, null without any.
  const void* data() const ZUM_REALTIME { return source; }
  std::uint32_t dataWords() const ZUM_REALTIME { return capacity; }

  std::int32_t magic = 0;
  std::int32_t version = 0;
  float tempo = 120.0F;
  float sampleRate = 44100.0F;
  std::uint32_t cursor = 0;  // index of the next word
  std::int32_t totalWords = 0;
  bool holdsData = false;
  bool countOnly = true;

 private:
  /// True if whole words at the cursor are there; marks the overrun if not.
  bool claim(std::uint32_t count) ZUM_REALTIME;
  const unsigned char* at(std::uint32_t word) const ZUM_REALTIME {
    return source + std::size_t{4} * word;
  }
  std::size_t bytesLeft() const ZUM_REALTIME { return std::size_t{4} * wordsLeft(); }
  std::uint32_t readWord() ZUM_REALTIME;
  void writeWord(std::uint32_t word);

  std::unique_ptr<std::uint32_t[]> words;  // null while it reads the memory of others
  const unsigned char* source = nullptr;
  std::uint32_t capacity = 0;
  bool beyondEnd = false;
};

}  // namespace zum
