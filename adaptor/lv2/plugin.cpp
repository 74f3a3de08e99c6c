#include "adaptor/lv2/plugin.hpp"

#include <algorithm>
#include <span>
#include <vector>

#include "editor/create_editor.hpp"

namespace zum::lv2 {
namespace {

constexpr double kPatience = 0.25;  // seconds
constexpr std::size_t kMidiBytes = 3;

constexpr std::uint64_t kAllPorts = (std::uint64_t{1} << kFaceParameters) - 1;

bool isComplete(const std::array<float*, 2>& channels) ZUM_REALTIME {
  return channels[0] != nullptr && channels[1] != nullptr;
}

PortValues valuesOf(const HostSide& effect) {
  PortValues values{};
  std::ranges::transform(faceTags(), values.begin(), [&](std::int16_t tag) {
    return portOfPlain(tag, effect.plainValue(tag));
  });
  return values;
}

}  // namespace

Plugin::Plugin(double rate, const LV2_URID_Map& map)
    : urids(map),
      sampleRate(rate),
      effect(createEditor, this),
      song(urids, rate),
      controlPorts(valuesOf(effect), static_cast<std::int32_t>(rate * kPatience)) {}

void Plugin::connect(std::uint32_t port, void* place) ZUM_REALTIME {
  auto* const channel = static_cast<float*>(place);
  switch (port) {
    case Port::inLeft:
    case Port::inRight: inputs[port - Port::inLeft] = channel; break;
    case Port::outLeft:
    case Port::outRight: outputs[port - Port::outLeft] = channel; break;
    case Port::sideLeft:
    case Port::sideRight: sideChain[port - Port::sideLeft] = channel; break;
    case Port::events: eventPort = static_cast<const LV2_Atom*>(place); break;
    default:
      if (port < kPorts) controlPorts.connect(port - Port::firstControl, channel);
  }
}

void Plugin::activate() {
  constexpr std::int32_t kMostFrames = 8192;  // it takes blocks of any size
  effect.activate(sampleRate, kMostFrames);
}

void Plugin::run(std::uint32_t sampleCount) ZUM_REALTIME {
  const bool plays = isComplete(inputs) && isComplete(outputs);
  const auto frames = plays ? static_cast<std::int32_t>(std::min(sampleCount, 1U << 30U)) : 0;
  const float* const* const side = isComplete(sideChain) ? sideChain.data() : nullptr;
  const HostSide::Buffers buffers{inputs.data(), effect.heardSideChain(side, frames),
                                  outputs.data(), frames};
  HostSide::Song& now = effect.song();
  HostSide::Block block(effect, buffers, now);
  controlPorts.take(frames, [&](std::size_t position, float value) ZUM_REALTIME {
    const int tag = faceTags()[position];
    block.setPlain(0, tag, plainOfPort(tag, value));
  });
  forEachEvent(eventPort, urids, [&](std::int64_t time, const AtomView& atom) ZUM_REALTIME {
    const auto frame = static_cast<std::int32_t>(std::clamp<std::int64_t>(time, 0, frames));
    if (atom.type == urids.midiEvent) {
      if (atom.body.empty() || atom.body.size() > kMidiBytes) return;
      std::array<std::uint8_t, kMidiBytes> bytes{};
      std::memcpy(bytes.data(), atom.body.data(), atom.body.size());
      block.midi(frame, bytes.data());
    } else if (isObject(atom, urids.position, urids)) {
      block.moveSong(frame, now);  // counts the beats up to there
      song.take(atom, now);
    }
  });
}

// ---- states

LV2_State_Status Plugin::save(LV2_State_Store_Function store, LV2_State_Handle handle) {
  const std::vector<std::byte> bytes = effect.saveState();
  if (bytes.empty()) return LV2_STATE_ERR_NO_SPACE;
  return store(handle, urids.state, bytes.data(), bytes.size(), urids.chunk,
               LV2_STATE_IS_POD | LV2_STATE_IS_PORTABLE);
}

LV2_State_Status Plugin::restore(LV2_State_Retrieve_Function retrieve, LV2_State_Handle handle) {
  std::size_t size = 0;
  std::uint32_t type = 0;
  std::uint32_t flags = 0;
  const void* const data = retrieve(handle, urids.state, &size, &type, &flags);
  if (data == nullptr) return LV2_STATE_ERR_NO_PROPERTY;
  if (type != urids.chunk) return LV2_STATE_ERR_BAD_TYPE;
  if (!effect.loadState({static_cast<const std::byte*>(data), size})) return LV2_STATE_ERR_UNKNOWN;
  controlPorts.takeState();
  restored.store(kAllPorts);
  return LV2_STATE_SUCCESS;
}

// ---- what the user does

void Plugin::gestureBegan(int tag) {
  if (shown != nullptr) shown->gestureBegan(tag);
}

void Plugin::gestureMoved(int tag, float raw) {
  if (shown != nullptr) shown->gestureMoved(tag, raw);
}

void Plugin::gestureEnded(int tag) {
  if (shown != nullptr) shown->gestureEnded(tag);
}

void Plugin::presetChanged() { restored.store(kAllPorts); }

}  // namespace zum::lv2
