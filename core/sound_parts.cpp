#include "core/sound_parts.hpp"

#include <algorithm>
#include <cstring>
#include <new>
#include <span>
#include <string_view>
#include <utility>

#include "engine/shared_value.hpp"

namespace zum {
namespace {

std::size_t bytesOf(const std::unique_ptr<KvChunk>& chunk) {
  return chunk ? std::size_t{4} * chunk->dataWords() : 0;
}

/// What a state holds, by what may be set word by word and what may not. A walk may not ask for
/// memory: there is room ahead of it.
class SoundContents final : public PresetVisitor {
 public:
  explicit SoundContents(const KvChunk& state) : words(state.dataWords()) {
    bindings.reserve(words);
    KvChunk reader;
    reader.borrow(state.data(), state.dataWords());
    isWhole = !walkPreset(reader, 0, *this);
  }

  const char* record(std::int32_t id, std::int32_t size, KvChunk& chunk) ZUM_REALTIME override {
    const int row = rowOfId(id);
    const bool isTable =
        row >= 0 && parameterRows()[static_cast<std::size_t>(row)].rule == Rule::table;
    if (row >= 0 && !isTable && size > 0) {
      values[static_cast<std::size_t>(row)] = chunk.getFloat();
      --size;
    } else if (isTable) {
      const auto* const first = static_cast<const unsigned char*>(chunk.data());
      table = {first + std::size_t{4} * chunk.cursor, std::size_t{4} * static_cast<unsigned>(size)};
    }
    chunk.skip(static_cast<std::uint32_t>(size));
    return nullptr;
  }
  void controller(int number, Binding binding) ZUM_REALTIME override {
    trusted([&] { bindings.emplace_back(number, binding); });
  }
  void aftertouch(Binding binding) ZUM_REALTIME override {
    trusted([&] { bindings.emplace_back(-1, binding); });
  }
  void name(std::string_view text) ZUM_REALTIME override { title = text; }
  void position(std::int32_t /*trailer*/, const PresetPosition& at) ZUM_REALTIME override {
    place = at;
  }

  /// Values and names aside.
  bool isLike(const SoundContents& other) const {
    return isWhole && other.isWhole && bindings == other.bindings &&
           std::ranges::equal(table, other.table);
  }

  std::size_t words;
  std::array<float, kPresetRows> values{};
  std::span<const unsigned char> table;
  std::vector<std::pair<int, Binding>> bindings;
  std::string_view title;
  PresetPosition place;
  bool isWhole = false;
};

}  // namespace

std::size_t SoundParts::bytes() const {
  const std::size_t ofWhole =
      whole ? std::size_t{4} * whole->state.dataWords() + whole->path.size() + whole->folder.size()
            : 0;
  return sizeof(SoundParts) + values.size() * sizeof(Value) + bytesOf(steps) + bytesOf(map) +
         ofWhole;
}

bool isSame(const KvChunk& a, const KvChunk& b) {
  return a.dataWords() == b.dataWords() &&
         (a.dataWords() == 0 ||
          std::memcmp(a.data(), b.data(), std::size_t{4} * a.dataWords()) == 0);
}

std::array<float, kPresetRows> SoundCopies::values() const {
  std::array<float, kPresetRows> all{};
  for (std::size_t row = 0; row < all.size(); ++row) {
    all[row] = loadShared(around.parameters.value(parameterRows()[row].tag).raw);
  }
  return all;
}

// A program that MIDI plays may give the table another size in between.
std::unique_ptr<KvChunk> SoundCopies::steps() const {
  constexpr int kTries = 8;
  const StateGate::Turn turn(around.gate);
  for (int i = 0; i < kTries; ++i) {
    auto chunk = std::make_unique<KvChunk>();
    around.steps.writeChunk(chunk.get());
    const std::uint32_t words = chunk->cursor;
    chunk->countOnly = false;
    chunk->allocate(words);
    chunk->cursor = 0;
    around.steps.writeChunk(chunk.get());
    if (chunk->cursor == words && !chunk->overrun()) return chunk;
  }
  throw std::bad_alloc();
}

std::unique_ptr<KvChunk> SoundCopies::map() const {
  constexpr int kTries = 8;
  const StateGate::Turn turn(around.gate);
  for (int i = 0; i < kTries; ++i) {
    auto chunk = std::make_unique<KvChunk>();
    if (writeMapFile(around.midi.map(), *chunk)) return chunk;
  }
  throw std::bad_alloc();
}

std::unique_ptr<WholeSound> SoundCopies::whole() const {
  const StateGate::Turn turn(around.gate);
  auto sound = std::make_unique<WholeSound>();
  if (!around.desk.write(sound->state, 0)) throw std::bad_alloc();
  sound->path = around.desk.slot().path.get();
  sound->folder = around.desk.slot().folder.get();
  return sound;
}

// The room that it once had is never given back, so it is there.
void SoundCopies::put(const KvChunk& steps) const {
  KvChunk reader;
  reader.borrow(steps.data(), steps.dataWords());
  const StateGate::Turn turn(around.gate);
  if (!around.steps.reserve(steps.dataWords())) return;
  around.steps.readChunk(&reader, false);
}

void SoundCopies::putMap(const KvChunk& map) const {
  KvChunk reader;
  reader.borrow(map.data(), map.dataWords());
  if (reader.readHeader()) around.midi.takeMap(reader);
}

bool SoundCopies::putSoftly(const WholeSound& sound, const WholeSound& now) const {
  const SoundContents wanted(sound.state);
  if (!wanted.isLike(SoundContents(now.state))) return false;
  const StateGate::Turn turn(around.gate);
  for (std::size_t row = 0; row < wanted.values.size(); ++row) {
    const ParameterRow& parameter = parameterRows()[row];
    if (parameter.rule == Rule::table || parameter.tag == tag::modChoice) continue;
    const float raw = loadShared(around.parameters.value(parameter.tag).raw);
    if (isSameNumber(raw, wanted.values[row])) continue;
    around.parameters.setParameter(parameter.tag, wanted.values[row]);
  }
  PresetSlot& names = around.desk.slot();
  names.name.set(wanted.title);
  names.path.set(sound.path);
  names.folder.set(sound.folder);
  storeShared(around.position.program, wanted.place.program);
  storeShared(around.position.folder, wanted.place.folder);
  return true;
}

}  // namespace zum
