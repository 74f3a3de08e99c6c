#include "core/controller_map.hpp"

namespace zum {
namespace {

constexpr std::int32_t kMapFormat = 101;
constexpr std::int32_t kFirstModeFormat = 101;

}  // namespace

void ControllerMap::writeCcMap(KvChunk& chunk) const {
  chunk.putInt(kMapFormat);
  chunk.putInt(0);
  for (const BindingList& list : controllers) {
    const std::vector<Binding> bindings = list.all();
    chunk.putInt(static_cast<std::int32_t>(bindings.size()));
    for (const Binding& binding : bindings) {
      chunk.putInt(binding.tag);
      chunk.putInt(binding.mode);
    }
  }
}

ControllerMap::Read ControllerMap::readCcMap(KvChunk& chunk) {
  const std::int32_t format = chunk.getInt();
  const std::int32_t zero = chunk.getInt();
  if (chunk.overrun()) return Read::damaged;
  if (format > kMapFormat || zero != 0) return Read::otherVersion;
  const bool hasModes = format >= kFirstModeFormat;
  const std::uint32_t start = chunk.cursor;
  if (!readLists(chunk, hasModes, false)) return Read::damaged;
  chunk.cursor = start;
  learning.store(true);
  readLists(chunk, hasModes, true);
  learning.store(false);
  return Read::taken;
}

bool ControllerMap::readLists(KvChunk& chunk, bool hasModes, bool take) {
  for (BindingList& list : controllers) {
    const std::int32_t count = chunk.getInt();
    const std::int64_t words = std::int64_t{count} * (hasModes ? 2 : 1);
    if (chunk.overrun() || count < 0 || words > std::int64_t{chunk.wordsLeft()}) return false;
    if (!take) {
      if (!list.reserve(static_cast<std::size_t>(count) + 1)) return false;
      chunk.skip(static_cast<std::uint32_t>(words));
      continue;
    }
    list.clear();
    for (std::int32_t i = 0; i < count; ++i) {
      const auto tag = static_cast<std::int16_t>(chunk.getInt());
      const auto mode = static_cast<std::int16_t>(hasModes ? chunk.getInt() : 0);
      // In a preset this tag would end the list.
      if (tag != preset::kEndOfController) list.tryAppend({tag, mode});
    }
  }
  return true;
}

}  // namespace zum
