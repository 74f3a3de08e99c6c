// [main] The component: buses and states.
#include <travesty/component.h>

#include <cstring>
#include <span>
#include <vector>

#include "adaptor/vst3/effect.hpp"
#include "adaptor/vst3/text16.hpp"

namespace zum::vst3 {
namespace {

struct Bus {
  std::int32_t media;
  std::int32_t direction;
  std::int32_t channels;
  const char* name;
  std::int32_t type;
  std::uint32_t flags;
};

// clang-format off
constexpr Bus kBuses[] = {
// media     direction  channels  name          type     flags
  {V3_AUDIO, V3_INPUT,  2,        "Input",      V3_MAIN, V3_DEFAULT_ACTIVE},
  {V3_AUDIO, V3_INPUT,  2,        "Side-chain", V3_AUX,  0},
  {V3_AUDIO, V3_OUTPUT, 2,        "Output",     V3_MAIN, V3_DEFAULT_ACTIVE},
  {V3_EVENT, V3_INPUT,  16,       "MIDI",       V3_MAIN, V3_DEFAULT_ACTIVE},
};
// clang-format on
constexpr std::int32_t kSideChain = 1;  // among the audio inputs

const Bus* findBus(std::int32_t media, std::int32_t direction, std::int32_t index) {
  if (index < 0) return nullptr;
  for (const Bus& bus : kBuses) {
    if (bus.media == media && bus.direction == direction && index-- == 0) return &bus;
  }
  return nullptr;
}

// ---- states: the bytes of a preset file, in as many pieces as the host likes

constexpr std::size_t kWord = 4;
constexpr std::size_t kMostStateBytes = std::size_t{1} << 20U;

/// All bytes by a routine of the stream's; false where it stops ahead of the end.
template <v3_result (*v3_bstream::*routine)(void*, void*, std::int32_t, std::int32_t*)>
bool pass(v3_bstream** stream, std::span<std::byte> bytes) {
  while (!bytes.empty()) {
    const auto left = static_cast<std::int32_t>(bytes.size());
    std::int32_t done = 0;
    if ((v3_cpp_obj(stream)->*routine)(stream, bytes.data(), left, &done) != V3_OK) return false;
    if (done <= 0 || done > left) return false;
    bytes = bytes.subspan(static_cast<std::size_t>(done));
  }
  return true;
}

// The first word counts all of them: what a host keeps behind the state is not ours to read.
v3_result takeState(Effect& effect, v3_bstream** stream) {
  std::vector<std::byte> state(kWord);
  if (!pass<&v3_bstream::read>(stream, state)) return V3_FALSE;
  std::uint32_t words = 0;
  std::memcpy(&words, state.data(), kWord);
  if (words == 0 || words > kMostStateBytes / kWord) return V3_FALSE;
  state.resize(words * kWord);
  if (!pass<&v3_bstream::read>(stream, std::span(state).subspan(kWord))) return V3_FALSE;
  return resultOf(effect.loadState(state));
}

v3_result giveState(Effect& effect, v3_bstream** stream) {
  if (effect.isOnMain()) effect.values.playWanted();
  std::vector<std::byte> state = effect.host.saveState();
  return resultOf(!state.empty() && pass<&v3_bstream::write>(stream, state));
}

v3_result activateBus(Effect& effect, std::int32_t media, std::int32_t direction,
                      std::int32_t index, bool active) {
  if (findBus(media, direction, index) == nullptr) return V3_INVALID_ARG;
  if (media == V3_AUDIO && direction == V3_INPUT && index == kSideChain) {
    effect.processor.hearSideChain(active);
  }
  return V3_OK;
}

v3_result describeBus(std::int32_t media, std::int32_t direction, std::int32_t index,
                      v3_bus_info* info) {
  const Bus* const bus = findBus(media, direction, index);
  if (bus == nullptr || info == nullptr) return V3_INVALID_ARG;
  *info = {bus->media, bus->direction, bus->channels, {}, bus->type, bus->flags};
  putText(bus->name, info->bus_name);
  return V3_OK;
}

}  // namespace

constexpr v3_component_cpp kComponent = {
    unknownOf<Effect>(),
    {
        .initialize = [](void* self, v3_funknown**) { return objectOf<Effect>(self).initialize(); },
        .terminate = [](void* self) -> v3_result {
          return tried([&] { return objectOf<Effect>(self).terminate(), V3_OK; });
        },
    },
    {
        // the controller is this object
        .get_controller_class_id = [](void*, v3_tuid) -> v3_result { return V3_NOT_IMPLEMENTED; },
        .set_io_mode = [](void*, std::int32_t) -> v3_result { return V3_NOT_IMPLEMENTED; },
        .get_bus_count = [](void*, std::int32_t media, std::int32_t direction) -> std::int32_t {
          std::int32_t count = 0;
          while (findBus(media, direction, count) != nullptr) ++count;
          return count;
        },
        .get_bus_info = [](void*, std::int32_t media, std::int32_t direction, std::int32_t index,
                           v3_bus_info* info) -> v3_result {
          return tried([&] { return describeBus(media, direction, index, info); });
        },
        .get_routing_info = [](void*, v3_routing_info*, v3_routing_info*) -> v3_result {
          return V3_NOT_IMPLEMENTED;
        },
        .activate_bus = [](void* self, std::int32_t media, std::int32_t direction,
                           std::int32_t index, v3_bool active) -> v3_result {
          return activateBus(objectOf<Effect>(self), media, direction, index, active != 0);
        },
        .set_active = [](void* self, v3_bool active) -> v3_result {
          return tried([&] {
            objectOf<Effect>(self).processor.setActive(active != 0);
            return V3_OK;
          });
        },
        .set_state = [](void* self, v3_bstream** stream) -> v3_result {
          if (stream == nullptr) return V3_INVALID_ARG;
          return tried([&] { return takeState(objectOf<Effect>(self), stream); });
        },
        .get_state = [](void* self, v3_bstream** stream) -> v3_result {
          if (stream == nullptr) return V3_INVALID_ARG;
          return tried([&] { return giveState(objectOf<Effect>(self), stream); });
        },
    },
};

}  // namespace zum::vst3
