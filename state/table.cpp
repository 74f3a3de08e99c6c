#include "state/table.hpp"

#include "engine/shared_value.hpp"

namespace zum {

KvTable::Range KvTable::readRange(KvChunk& chunk) ZUM_REALTIME {
  const float extra = chunk.getFloat();
  const float highest = chunk.getFloat();
  return {extra, highest, chunk.getFloat()};
}

void KvTable::takeRange(const Range& range) ZUM_REALTIME {
  storeShared(rangeExtra, range.extra);
  storeShared(maxValue, range.highest);
  storeShared(minValue, range.lowest);
}

std::int32_t KvTable::readPlainForm(KvChunk& chunk, bool discard) ZUM_REALTIME {
  const Range range = readRange(chunk);
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
    if (!resize(count)) {
      chunk.refuse();
      return 0;
    }
    takeRange(range);
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
