// Which controller moves which controls. Written by learning, by presets and by controller maps,
// followed by the audio thread.
#pragma once

#include <array>
#include <atomic>
#include <cstddef>
#include <vector>

#include "core/tags.hpp"
#include "state/binding.hpp"
#include "state/growing_array.hpp"
#include "state/preset_format.hpp"
#include "state/preset_needs.hpp"

namespace zum {

/// Of the buttons that step through the programs, which would lose their controllers with the first
/// program that they bring: presets add to these, and take none of them away.
inline bool outlastsPresets(Binding binding) ZUM_REALTIME {
  return binding.tag == tag::nextProgram || binding.tag == tag::previousProgram;
}

/// The bindings of one controller, in the order in which they were learned. Readers see old or new
/// bindings, never a torn one. A binding that is learned while others are removed may be lost or
/// stay twice; room is made while nobody writes.
class BindingList {
 public:
  /// [any] As it stands now: a reader that walks on while it is emptied reads what was there.
  std::size_t size() const ZUM_REALTIME {
    return std::min(count.load(std::memory_order_acquire), words.capacity());
  }
  Binding at(std::size_t i) const ZUM_REALTIME { return bindingOf(words.load(i)); }
  /// [main]
  std::vector<Binding> all() const {
    std::vector<Binding> bindings(size());
    for (std::size_t i = 0; i < bindings.size(); ++i) bindings[i] = at(i);
    return bindings;
  }

  /// [main] False when the memory does not suffice.
  bool reserve(std::size_t bindings) noexcept { return words.reserve(bindings); }
  std::size_t capacity() const ZUM_REALTIME { return words.capacity(); }
  /// [any] False when there is no room.
  bool tryAppend(Binding binding) ZUM_REALTIME {
    const std::size_t end = size();
    if (!words.tryStore(end, wordOf(binding))) return false;
    count.store(end + 1, std::memory_order_release);
    return true;
  }
  /// [main]
  bool append(Binding binding) noexcept { return reserve(size() + 1) && tryAppend(binding); }
  void clear() ZUM_REALTIME { count.store(0, std::memory_order_release); }
  /// [any] The same, but of a button that outlasts presets one is enough: programs find room beside
  /// no more.
  bool tryAdd(Binding binding) ZUM_REALTIME {
    return (outlastsPresets(binding) && moves(binding.tag)) || tryAppend(binding);
  }
  bool moves(std::int16_t tag) const ZUM_REALTIME {
    for (std::size_t i = 0, end = size(); i < end; ++i) {
      if (at(i).tag == tag) return true;
    }
    return false;
  }
  /// [any] Every binding that is the same in both fields.
  void remove(Binding binding) ZUM_REALTIME {
    keepIf([binding](Binding old) ZUM_REALTIME { return old != binding; });
  }
  /// [any]
  template <class Keep>
  void keepIf(const Keep& keep) ZUM_REALTIME {
    std::size_t kept = 0;
    const std::size_t end = size();
    for (std::size_t i = 0; i < end; ++i) {
      const Binding old = at(i);
      if (keep(old)) words.tryStore(kept++, wordOf(old));
    }
    count.store(kept, std::memory_order_release);
  }

 private:
  GrowingArray<std::uint32_t> words;
  std::atomic<std::size_t> count{0};
};

class ControllerMap {
 public:
  /// Bindings of one list that programs find room for without an allocation.
  static constexpr std::uint32_t kRoom = 15;
  /// Those of a list beside a program's own: one of each button that outlasts it, and one to learn.
  static constexpr std::uint32_t kBeside = 3;

  using Counts = decltype(PresetNeeds::bindings);

  /// [main] Room for so many in each list, and for those beside them. False when the memory does
  /// not suffice.
  bool reserve(const Counts& counts) noexcept {
    bool room = true;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      room = list(i).reserve(std::size_t{counts[i]} + kBeside) && room;
    }
    return room;
  }
  bool hasRoomFor(const Counts& counts) const ZUM_REALTIME {
    bool room = true;
    for (std::size_t i = 0; i < counts.size(); ++i) {
      room = counts[i] + kBeside <= list(i).capacity() && room;
    }
    return room;
  }
  /// [main] Bindings that a map starts with room for.
  bool reserve() noexcept {
    Counts counts;
    counts.fill(kRoom);
    return reserve(counts);
  }
  /// [any]
  Counts countsNow() const ZUM_REALTIME {
    Counts counts{};
    for (std::size_t i = 0; i < counts.size(); ++i) {
      counts[i] = static_cast<std::uint32_t>(list(i).size());
    }
    return counts;
  }
  void clearControllers() ZUM_REALTIME {
    for (BindingList& list : controllers) list.clear();
  }

  // [main] The map as a file of its own holds it, behind the header: format version, 0, and for
  // each controller a count and its bindings.
  void writeCcMap(KvChunk& chunk) const;
  enum class Read : std::uint8_t {
    taken,
    otherVersion,  // nothing changes
    damaged,       // does not fit together, or the memory does not suffice; nothing changes
  };
  Read readCcMap(KvChunk& chunk);
  /// The same without a change; tells how many bindings each list gets.
  static Read checkCcMap(KvChunk& chunk, Counts& counts);

  std::array<BindingList, preset::kControllers> controllers;
  BindingList aftertouch;
  /// Set while the map is read or changed as a whole: controllers that arrive meanwhile are lost.
  std::atomic<bool> learning{false};

 private:
  BindingList& list(std::size_t i) ZUM_REALTIME {
    return i < controllers.size() ? controllers[i] : aftertouch;
  }
  const BindingList& list(std::size_t i) const ZUM_REALTIME {
    return i < controllers.size() ? controllers[i] : aftertouch;
  }
};

/// [main] Fills `chunk` with a map as a file, header and all. False when the map changed meanwhile.
bool writeMapFile(const ControllerMap& map, KvChunk& chunk);

}  // namespace zum
