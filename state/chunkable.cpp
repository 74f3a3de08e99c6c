#include "state/chunkable.hpp"

namespace zum {

std::uint32_t chunkWordsOf(const KvChunkableClass& object) {
  KvChunk counting;
  object.writeChunk(&counting);
  return counting.cursor;
}

}  // namespace zum
