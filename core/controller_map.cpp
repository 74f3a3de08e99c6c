#include "core/controller_map.hpp"

namespace zum {
namespace {

constexpr std::int32_t kMapFormat = 101;
constexpr std::int32_t kFirstModeFormat = 101;

// Behind it the cursor stands at the first list.
ControllerMap::Read readVersion(KvChunk& chunk, bool& hasModes) {
  const std::int32_t format = chunk.getInt();
  const std::int32_t zero = chunk.getInt();
  hasModes = format >= kFirstModeFormat;
  if (chunk.overrun()) return ControllerMap::Read::damaged;
  return format > kMapFormat || zero != 0 ? ControllerMap::Read::otherVersion
                                          : ControllerMap::Read::taken;
}

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

ControllerMap::Read ControllerMap::checkCcMap(KvChunk& chunk, Counts& counts) {
  bool hasModes = false;
  if (const Read version = readVersion(chunk, hasModes); version != Read::taken) return version;
  for (std::size_t i = 0; i < preset::kControllers; ++i) {
    const std::int32_t count = chunk.getInt();
    const std::int64_t words = std::int64_t{count} * (hasModes ? 2 : 1);
    if (chunk.overrun() || count < 0 || words > std::int64_t{chunk.wordsLeft()}) {
      return Read::damaged;
    }
    counts[i] = static_cast<std::uint32_t>(count);
    chunk.skip(static_cast<std::uint32_t>(words));
  }
  return Read::taken;
}

ControllerMap::Read ControllerMap::readCcMap(KvChunk& chunk) {
  const std::uint32_t start = chunk.cursor;
  Counts counts{};
  if (const Read read = checkCcMap(chunk, counts); read != Read::taken) return read;
  if (!hasRoomFor(counts) && !reserve(counts)) return Read::damaged;
  chunk.cursor = start;
  bool hasModes = false;
  readVersion(chunk, hasModes);
  learning.store(true);
  for (BindingList& list : controllers) {
    list.clear();
    for (std::int32_t count = chunk.getInt(); count > 0; --count) {
      const auto tag = static_cast<std::int16_t>(chunk.getInt());
      const auto mode = static_cast<std::int16_t>(hasModes ? chunk.getInt() : 0);
      // In a preset this tag would end the list.
      if (tag != preset::kEndOfController) list.tryAdd({tag, mode});
    }
  }
  learning.store(false);
  return Read::taken;
}

bool writeMapFile(const ControllerMap& map, KvChunk& chunk) {
  const auto put = [&] {
    chunk.writeHeader();
    map.writeCcMap(chunk);
  };
  chunk.reset();
  put();
  const std::uint32_t words = chunk.cursor;
  chunk.countOnly = false;
  chunk.allocate(words);
  put();
  return chunk.cursor == words && !chunk.overrun();
}

}  // namespace zum
