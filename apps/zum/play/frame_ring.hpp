// Stereo frames on their way from one thread to another one, without waiting.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <bit>
#include <cstddef>
#include <vector>

#include "engine/realtime.hpp"

namespace zum {

/// One thread writes, one reads.
class FrameRing {
 public:
  /// Room for so many frames at least, and less than twice as many. Throws std::bad_alloc.
  explicit FrameRing(std::size_t frames)
      : mask(std::bit_ceil(frames) - 1), channels{Channel(mask + 1), Channel(mask + 1)} {}

  std::size_t room() const ZUM_REALTIME { return mask + 1 - filled(); }
  std::size_t filled() const ZUM_REALTIME {
    return written.load(std::memory_order_acquire) - taken.load(std::memory_order_acquire);
  }
  /// Frames that went in: fewer than `count` where there is no room.
  std::size_t write(const float* left, const float* right, std::size_t count) ZUM_REALTIME {
    count = std::min(count, room());
    const std::size_t at = written.load(std::memory_order_relaxed);
    copy(count, at, [&](std::size_t from, std::size_t to, std::size_t frames) ZUM_REALTIME {
      std::copy_n(left + from, frames, channels[0].data() + to);
      std::copy_n(right + from, frames, channels[1].data() + to);
    });
    written.store(at + count, std::memory_order_release);
    return count;
  }
  /// Frames that came out: fewer than `count` where there are no more.
  std::size_t read(float* left, float* right, std::size_t count) ZUM_REALTIME {
    count = std::min(count, filled());
    const std::size_t at = taken.load(std::memory_order_relaxed);
    copy(count, at, [&](std::size_t to, std::size_t from, std::size_t frames) ZUM_REALTIME {
      std::copy_n(channels[0].data() + from, frames, left + to);
      std::copy_n(channels[1].data() + from, frames, right + to);
    });
    taken.store(at + count, std::memory_order_release);
    return count;
  }

 private:
  using Channel = std::vector<float>;

  /// part(offset, place in the ring, frames), twice where it goes around the end.
  template <class Part>
  void copy(std::size_t count, std::size_t at, Part&& part) const ZUM_REALTIME {
    const std::size_t place = at & mask;
    const std::size_t first = std::min(count, mask + 1 - place);
    part(std::size_t{0}, place, first);
    part(first, std::size_t{0}, count - first);
  }

  const std::size_t mask;
  std::array<Channel, 2> channels;
  std::atomic<std::size_t> written{0};
  std::atomic<std::size_t> taken{0};
};

}  // namespace zum
