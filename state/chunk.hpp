// The one serialisation primitive: a flat array of 32-bit words with a cursor. Presets, the host's
// saved state, controller maps and step tables are written into and read from it.
//
//   word 0      total length in words, header included
//   word 1      library version of the writer
//   word 2, 3   tempo in beats per minute and sample rate in Hz of the writer, as floats
//   word 4      magic number
//   word 5...   whatever the writer puts, in the order of its calls
//
// Words are copied as they stand, little-endian. A reader and a writer are held against each other
// by the order of their calls alone.
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

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
  virtual void putFloat(float value);
  virtual float* getFloat(float& out);
  virtual float getFloat();
  virtual void stepBack();
  virtual void getQuad(Quad& out);
  virtual void getQuadCleared(Quad& out);
  virtual void putInt(std::int32_t value);
  virtual std::int32_t getInt(std::int32_t& out);
  virtual std::int32_t getInt();
  virtual void reserved(std::int32_t /*first*/, std::int32_t /*second*/) {}
  /// Length word, then the bytes, padded to a whole word. Null and "" are one word, 0.
  virtual void putString(const char* text);
  /// Moves the cursor by the whole words in `byteCount` only, and returns them.
  virtual std::int32_t putBytes(const void* from, std::int32_t byteCount);
  /// Null for a length of 0, and for one that does not fit.
  virtual ChunkString getString();
  /// Moves the cursor by the whole words in `byteCount` only, and returns them.
  virtual std::int32_t getBytes(void* to, std::int32_t byteCount);

  /// A zeroed buffer of `words`. Cursor and flags stay.
  void allocate(std::uint32_t words);
  /// Takes over a buffer of `words` for reading; the cursor stays. Null takes none. Memory of
  /// others is copied first.
  void adopt(std::unique_ptr<std::uint32_t[]> buffer, std::uint32_t words);
  /// Back to an empty chunk in counting mode. The buffer stays.
  void reset();
  static constexpr std::int32_t headerWords() { return kHeaderWords; }
  void writeHeader();
  /// False, and a message unless `quiet`, when the magic number is another.
  bool readHeader(bool quiet);
  /// True when the writer's library is newer than this one.
  bool isNewer() const;

  /// True once anything past the end of the buffer was asked for, since the last header.
  bool overrun() const { return beyondEnd; }
  /// A reader that met what cannot be: as good as a read past the end.
  void refuse() { beyondEnd = true; }
  /// True if a string that starts `ahead` words behind the cursor lies in the buffer whole.
  bool stringFits(std::uint32_t ahead) const;
  /// Words between the cursor and the end of the buffer.
  std::uint32_t wordsLeft() const { return cursor < capacity ? capacity - cursor : 0; }
  const std::uint32_t* data() const { return words.get(); }
  std::uint32_t dataWords() const { return capacity; }

  std::int32_t magic = 0;
  std::int32_t version = 0;
  float tempo = 120.0F;
  float sampleRate = 44100.0F;
  std::uint32_t cursor = 0;  // index of the next word
  std::int32_t totalWords = 0;
  bool holdsData = false;
  bool countOnly = true;

 private:
  /// Whole words at the cursor, or null if they reach past the end.
  std::uint32_t* claim(std::uint32_t count);
  std::uint32_t bytesLeft() const { return wordsLeft() < (1U << 30U) ? 4 * wordsLeft() : ~3U; }
  std::uint32_t readWord();
  void writeWord(std::uint32_t word);

  std::unique_ptr<std::uint32_t[]> words;
  std::uint32_t capacity = 0;
  bool beyondEnd = false;
};

}  // namespace zum
