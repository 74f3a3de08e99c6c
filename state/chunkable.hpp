// Base of the objects that write themselves into a chunk and read themselves back.
#pragma once

#include <cstdint>

#include "state/chunk.hpp"

namespace zum {

class KvChunkableClass {
 public:
  /// Kind of object: tells a preset's reader what to do after a read.
  enum Type : std::int32_t { kFile = 1, kTable = 4, kMouseArea = 6 };

  explicit KvChunkableClass(std::int32_t objectType) : type(objectType) {}
  KvChunkableClass(const KvChunkableClass&) = delete;
  KvChunkableClass& operator=(const KvChunkableClass&) = delete;
  virtual ~KvChunkableClass() = default;

  /// With `discard` the same words are read and nothing changes. Not 0 when the state was taken.
  /// May run on the audio thread: objects that need room for a state make it before.
  virtual std::int32_t readChunk(KvChunk* chunk, bool discard) ZUM_REALTIME = 0;
  virtual void writeChunk(KvChunk* chunk) const = 0;
  // Places of the interface that nothing in this system fills.
  virtual void reservedHook(std::int32_t /*argument*/) {}
  virtual void reservedHook(std::int32_t /*first*/, std::int32_t /*second*/) {}
  virtual void lastReservedHook(std::int32_t /*argument*/) {}
  virtual std::int32_t reservedQuery() { return 0; }
  virtual std::int32_t lastReservedQuery() { return 0; }

  std::int32_t getType() const ZUM_REALTIME { return type; }

 private:
  std::int32_t type;
};

/// Words that an object's writeChunk writes.
inline std::uint32_t chunkWordsOf(const KvChunkableClass& object) {
  KvChunk counting;
  object.writeChunk(&counting);
  return counting.cursor;
}

}  // namespace zum
