// [main] Copies of a sound, or of parts of it, and the way back of each: what a step of the history
// keeps.
#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "core/midi_in.hpp"
#include "core/parameter_store.hpp"
#include "core/preset_desk.hpp"
#include "core/state_gate.hpp"
#include "state/table_xy.hpp"

namespace zum {

/// All that a host would save, and the file that it came from.
struct WholeSound {
  KvChunk state;
  std::string path;
  std::string folder;
};

/// What is not there was not moved.
struct SoundParts {
  struct Value {
    std::int16_t tag;
    float raw;
  };

  bool isEmpty() const { return values.empty() && !steps && !map && !whole; }
  std::size_t bytes() const;

  std::vector<Value> values;
  std::unique_ptr<KvChunk> steps;
  std::unique_ptr<KvChunk> map;
  std::unique_ptr<WholeSound> whole;  // comes first: the others lie over it
  float page = 0.0F;                  // raw, of the window: the one that shows what moved
};

class SoundCopies {
 public:
  /// All of it outlives the copies.
  struct Around {
    StateGate& gate;
    ParameterStore& parameters;
    MidiIn& midi;
    KvTableXY& steps;
    ProgramPosition& position;
    PresetDesk& desk;
  };
  explicit SoundCopies(const Around& rooms) : around(rooms) {}

  /// Raw values in the order of a preset; of the step table 0.
  std::array<float, kPresetRows> values() const;

  // Each throws std::bad_alloc.
  std::unique_ptr<KvChunk> steps() const;
  std::unique_ptr<KvChunk> map() const;
  std::unique_ptr<WholeSound> whole() const;

  // Steps and map need no silence where they have room.
  void put(const KvChunk& steps) const;
  void putMap(const KvChunk& map) const;
  /// The way of a preset, in silence. False when the memory does not suffice.
  bool put(const WholeSound& sound) const {
    return around.desk.restore(sound.state, sound.path, sound.folder);
  }
  /// The same without silence where values and names alone differ from what is there; `now` is a
  /// copy of that. The window's page stays. False where more differs.
  bool putSoftly(const WholeSound& sound, const WholeSound& now) const;

 private:
  const Around around;
};

// True for the same words.
inline bool isSameNumber(float a, float b) {
  return std::bit_cast<std::uint32_t>(a) == std::bit_cast<std::uint32_t>(b);
}
bool isSame(const KvChunk& a, const KvChunk& b);

}  // namespace zum
