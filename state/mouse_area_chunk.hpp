// The six numbers of the window's mouse area, which stay with their owner.
#pragma once

#include <array>

#include "engine/shared_value.hpp"
#include "state/chunkable.hpp"

namespace zum {

class KvMouseAreaChunk : public KvChunkableClass {
 public:
  static constexpr std::int32_t kFormat = 10;
  static constexpr std::size_t kCount = 6;

  explicit KvMouseAreaChunk(const std::array<float*, kCount>& floats)
      : KvChunkableClass(kMouseArea), values(floats) {}

  // A foreign chunk may claim more numbers than there are places, and more than it holds.
  std::int32_t readChunk(KvChunk* chunk, bool discard) ZUM_REALTIME override {
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
  void writeChunk(KvChunk* chunk) const override {
    chunk->putInt(kFormat);
    chunk->putInt(kCount);
    for (const float* number : values) chunk->putFloat(loadShared(*number));
  }

 private:
  std::array<float*, kCount> values;
};

}  // namespace zum
