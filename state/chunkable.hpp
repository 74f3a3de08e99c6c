// Base of the objects that write themselves into a chunk and read themselves back.
#pragma once

#include <cstdint>

#include "state/chunk.hpp"

namespace zum {

class KvChunkableClass {
 public:
  /// What a preset's reader does behind a read.
  enum Type : std::int32_t { kTable = 4, kMouseArea = 6 };

  explicit KvChunkableClass(std::int32_t objectType) : type(objectType) {}
  KvChunkableClass(const KvChunkableClass&) = delete;
  KvChunkableClass& operator=(const KvChunkableClass&) = delete;
  virtual ~KvChunkableClass() = default;

  /// With `discard` the same words are read and nothing changes. Not 0 when the state was taken.
  virtual std::int32_t readChunk(KvChunk* chunk, bool discard) = 0;
  virtual void writeChunk(KvChunk* chunk) = 0;
  virtual void changed(std::int32_t /*what*/) {}
  virtual void valueChanged(std::int32_t /*index*/, float /*value*/) {}
  virtual void released(std::int32_t /*what*/) {}
  virtual std::int32_t firstQuery() { return 0; }
  virtual std::int32_t secondQuery() { return 0; }

  std::int32_t getType() const { return type; }

 private:
  std::int32_t type;
};

/// Words that an object's writeChunk writes.
std::uint32_t chunkWordsOf(KvChunkableClass& object);

}  // namespace zum
