#include "state/mouse_area_chunk.hpp"

#include "engine/shared_value.hpp"

namespace zum {

// A foreign chunk may claim more numbers than there are places, and more than it holds.
std::int32_t KvMouseAreaChunk::readChunk(KvChunk* chunk, bool discard) ZUM_REALTIME {
  chunk->getInt();  // the format's version changes nothing
  const std::int32_t count = chunk->getInt();
  if (count > 0 && static_cast<std::uint32_t>(count) > chunk->wordsLeft()) {
    chunk->refuse();
    return 1;
  }
  for (std::int32_t i = 0; i < count; ++i) {
    const float number = chunk->getFloat();
    const auto at = static_cast<std::size_t>(i);
    if (!discard && at < kCount) storeShared(*values[at], number);
  }
  return 1;
}

void KvMouseAreaChunk::writeChunk(KvChunk* chunk) const {
  chunk->putInt(kFormat);
  chunk->putInt(kCount);
  for (const float* number : values) chunk->putFloat(loadShared(*number));
}

}  // namespace zum
