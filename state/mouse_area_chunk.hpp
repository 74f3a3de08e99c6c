// The six numbers of the window's mouse area, which stay with their owner.
#pragma once

#include <array>

#include "state/chunkable.hpp"

namespace zum {

class KvMouseAreaChunk : public KvChunkableClass {
 public:
  static constexpr std::int32_t kFormat = 10;
  static constexpr std::size_t kCount = 6;

  explicit KvMouseAreaChunk(const std::array<float*, kCount>& floats)
      : KvChunkableClass(kMouseArea), values(floats) {}

  std::int32_t readChunk(KvChunk* chunk, bool discard) ZUM_REALTIME override;
  void writeChunk(KvChunk* chunk) const override;

 private:
  std::array<float*, kCount> values;
};

}  // namespace zum
