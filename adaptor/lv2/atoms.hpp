// [audio] Reads a host's atoms. Sizes that say more than there is end the reading.
//
//   sequence  size, type | unit, pad  | events...      each event: frames (8 bytes), size, type,
//   body object    size, type | id, class  | properties...  each property: key, context, size,
//   type, body
//
// Bodies end on the next eighth byte.
#pragma once

#include <lv2/atom/atom.h>

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <optional>
#include <span>

#include "adaptor/lv2/urids.hpp"
#include "engine/realtime.hpp"

namespace zum::lv2 {

struct AtomView {
  LV2_URID type = 0;
  std::span<const std::byte> body;
};

template <class T>
T readAs(std::span<const std::byte> bytes) ZUM_REALTIME {
  T value{};
  if (bytes.size() >= sizeof value) std::memcpy(&value, bytes.data(), sizeof value);
  return value;
}

/// Walks records that are a head of eight bytes and an atom: told(head, atom).
template <class Told>
void forEachRecord(std::span<const std::byte> records, Told&& told) ZUM_REALTIME {
  constexpr std::size_t kHead = 8;
  while (records.size() >= kHead + sizeof(LV2_Atom)) {
    const auto atom = readAs<LV2_Atom>(records.subspan(kHead));
    const auto rest = records.subspan(kHead + sizeof atom);
    if (atom.size > rest.size()) return;
    told(records.first(kHead), AtomView{atom.type, rest.first(atom.size)});
    const std::size_t padded = (std::size_t{atom.size} + 7) & ~std::size_t{7};
    if (padded > rest.size()) return;
    records = rest.subspan(padded);
  }
}

/// What is behind the eight bytes that a sequence and an object begin with.
inline std::span<const std::byte> recordsOf(std::span<const std::byte> body) ZUM_REALTIME {
  constexpr std::size_t kHead = 8;
  return body.size() > kHead ? body.subspan(kHead) : std::span<const std::byte>();
}

/// told(frame, atom). Times in beats count as the start of the block.
template <class Told>
void forEachEvent(const LV2_Atom* port, const Urids& urids, Told&& told) ZUM_REALTIME {
  if (port == nullptr || port->type != urids.sequence) return;
  const std::span body(reinterpret_cast<const std::byte*>(port + 1), port->size);
  const bool countsFrames = readAs<LV2_URID>(body) != urids.beatTime;
  forEachRecord(recordsOf(body),
                [&](std::span<const std::byte> head, const AtomView& atom)
                    ZUM_REALTIME { told(countsFrames ? readAs<std::int64_t>(head) : 0, atom); });
}

inline bool isObject(const AtomView& atom, LV2_URID itsClass, const Urids& urids) ZUM_REALTIME {
  constexpr std::size_t kClass = 4;
  return (atom.type == urids.object || atom.type == urids.blank) && atom.body.size() >= 8 &&
         readAs<LV2_URID>(atom.body.subspan(kClass)) == itsClass;
}

/// told(key, atom).
template <class Told>
void forEachProperty(const AtomView& object, Told&& told) ZUM_REALTIME {
  forEachRecord(recordsOf(object.body), [&](std::span<const std::byte> head, const AtomView& atom)
                                            ZUM_REALTIME { told(readAs<LV2_URID>(head), atom); });
}

/// Of any kind; nothing for another atom, and for one that is too short.
inline std::optional<double> numberOf(const AtomView& atom, const Urids& urids) ZUM_REALTIME {
  const std::size_t size = atom.body.size();
  if (atom.type == urids.decimal && size >= 4) return readAs<float>(atom.body);
  if (atom.type == urids.wideDecimal && size >= 8) return readAs<double>(atom.body);
  if (atom.type == urids.whole && size >= 4) return readAs<std::int32_t>(atom.body);
  if (atom.type == urids.wideWhole && size >= 8) {
    return static_cast<double>(readAs<std::int64_t>(atom.body));
  }
  return std::nullopt;
}

}  // namespace zum::lv2
