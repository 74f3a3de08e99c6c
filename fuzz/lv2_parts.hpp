// What an LV2 host of random bytes has beside its bytes: words, states, and an instance.
#pragma once

#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/state/state.h>
#include <lv2/urid/urid.h>

#include <cstdint>
#include <map>
#include <string>

#include "fuzz/bytes.hpp"

namespace zum::fuzz {

inline const LV2_Descriptor& face() { return *lv2_descriptor(0); }

/// Small numbers, in the order of the questions: inputs can hit them.
inline LV2_URID numberOf(LV2_URID_Map_Handle /*handle*/, const char* word) {
  static std::map<std::string, LV2_URID> words;
  return words.try_emplace(word, words.size() + 1).first->second;
}
inline LV2_URID_Map wordMap{nullptr, numberOf};

struct Kept {
  std::string bytes;
  LV2_URID type = numberOf(nullptr, LV2_ATOM__Chunk);
};

struct Instance {
  explicit Instance(double rate = 44100.0, bool hasMap = true) {
    const LV2_Feature map{LV2_URID__map, &wordMap};
    const LV2_Feature nameless{nullptr, nullptr};
    const LV2_Feature* const features[] = {&nameless, hasMap ? &map : nullptr, nullptr};
    handle = face().instantiate(&face(), rate, "", features);
    if (handle != nullptr) face().activate(handle);
  }
  ~Instance() {
    if (handle != nullptr) face().deactivate(handle), face().cleanup(handle);
  }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  static const LV2_State_Interface& states() {
    const void* const found = face().extension_data(LV2_STATE__interface);
    return *static_cast<const LV2_State_Interface*>(found);
  }
  std::string save() const {
    Kept kept;
    const auto store = [](LV2_State_Handle to, std::uint32_t, const void* from, std::size_t size,
                          std::uint32_t, std::uint32_t) {
      static_cast<Kept*>(to)->bytes.assign(static_cast<const char*>(from), size);
      return LV2_STATE_SUCCESS;
    };
    demand(states().save(handle, store, &kept, 0, nullptr) == LV2_STATE_SUCCESS);
    return kept.bytes;
  }
  bool restore(Kept kept) const {
    const auto retrieve = [](LV2_State_Handle from, std::uint32_t, std::size_t* size,
                             std::uint32_t* type, std::uint32_t*) -> const void* {
      const auto& given = *static_cast<Kept*>(from);
      *size = given.bytes.size(), *type = given.type;
      return given.type == 0 ? nullptr : given.bytes.data();
    };
    return states().restore(handle, retrieve, &kept, 0, nullptr) == LV2_STATE_SUCCESS;
  }
  void connect(std::uint32_t port, void* place) const { face().connect_port(handle, port, place); }

  LV2_Handle handle;
};

}  // namespace zum::fuzz
