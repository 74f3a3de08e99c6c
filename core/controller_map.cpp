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

bool ControllerMap::readCcMap(KvChunk& chunk) {
  const std::int32_t format = chunk.getInt();
  if (format > kMapFormat || chunk.getInt() != 0 || chunk.overrun()) return false;
  const bool hasModes = format >= kFirstModeFormat;
  const std::uint32_t start = chunk.cursor;
  if (!readLists(chunk, hasModes, false)) return false;
  chunk.cursor = start;
  learning.store(true);
  const bool taken = readLists(chunk, hasModes, true);
  learning.store(false);
  return taken;
}

bool ControllerMap::readLists(KvChunk& chunk, bool hasModes, bool take) {
  for (BindingList& list : controllers) {
    const std::int32_t count = chunk.getInt();
    const std::int64_t words = std::int64_t{count} * (hasModes ? 2 : 1);
    if (chunk.overrun() || count < 0 || words > std::int64_t{chunk.wordsLeft()}) return false;
    if (!take) {
      chunk.skip(static_cast<std::uint32_t>(words));
      continue;
    }
    list.clear();
    for (std::int32_t i = 0; i < count; ++i) {
      const auto tag = static_cast<std::int16_t>(chunk.getInt());
      const auto mode = static_cast<std::int16_t>(hasModes ? chunk.getInt() : 0);
      // In a preset this tag would end the list.
      if (tag != preset::kEndOfController && !list.append({tag, mode})) return false;
    }
  }
  return true;
}

}  // namespace zum
