#include "state/table.hpp"

namespace zum {

std::int32_t KvTable::readPlainForm(KvChunk& chunk, bool discard) {
  const float extra = chunk.getFloat();
  const float highest = chunk.getFloat();
  const float lowest = chunk.getFloat();
  std::int32_t form = 0;
  std::int32_t count = chunk.getInt();
  if (count == kFormMark) {
    form = chunk.getInt();
    count = chunk.getInt();
  }
  if (chunk.overrun() || count < 0 || static_cast<std::uint32_t>(count) > chunk.wordsLeft()) {
    chunk.refuse();
    return 0;
  }
  if (!discard) {
    rangeExtra = extra;
    maxValue = highest;
    minValue = lowest;
    resize(count);
  }
  for (std::int32_t i = 0; i < count; ++i) {
    const float value = chunk.getFloat();
    if (discard) continue;
    if (form >= 1) {
      setValue(i, value);
    } else {
      setPoint(static_cast<float>(i), value);
    }
  }
  return discard ? 0 : 1;
}

}  // namespace zum
