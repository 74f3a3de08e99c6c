// Two sides on the channels that a device has.
#pragma once

#include <algorithm>
#include <array>
#include <vector>

#include "apps/zum/play/live_sound.hpp"

namespace zum {

/// One that there is alone feeds both sides, or plays their mean; of more than two the first two.
class DeviceChannels {
 public:
  DeviceChannels(unsigned inputs, unsigned outputs)
      : ins(std::min(inputs, 2U)),
        outs(std::min(outputs, 2U)),
        mono(outs == 1 ? std::vector<float>(2 * kMost) : std::vector<float>()) {}

  unsigned inputs() const { return ins; }
  unsigned outputs() const { return outs; }

  /// [audio] As many pointers as there are channels.
  void play(LiveSound& sound, const float* const* in, float* const* out, int frames) ZUM_REALTIME {
    const int part = outs == 1 ? static_cast<int>(kMost) : frames;
    for (int done = 0; done < frames; done += part) {
      const int count = std::min(part, frames - done);
      const std::array<const float*, 2> heard = {ins > 0 ? in[0] + done : nullptr,
                                                 ins > 0 ? in[ins - 1] + done : nullptr};
      const std::array<float*, 2> sides =
          outs == 1 ? std::array<float*, 2>{mono.data(), mono.data() + kMost}
                    : std::array<float*, 2>{out[0] + done, out[1] + done};
      sound.process(ins > 0 ? heard.data() : nullptr, sides.data(), count);
      if (outs == 1) mix(out[0] + done, count);
    }
  }

 private:
  static constexpr std::size_t kMost = LiveSound::kMostFrames;

  void mix(float* out, int count) const ZUM_REALTIME {
    for (int i = 0; i < count; ++i) {
      const float* const left = mono.data() + i;
      out[i] = 0.5F * (left[0] + left[kMost]);
    }
  }

  const unsigned ins;
  const unsigned outs;
  std::vector<float> mono;  // both sides of a part
};

}  // namespace zum
