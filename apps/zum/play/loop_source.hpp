// A music file that plays again and again, read and resampled on a thread of its own: as long as it
// likes, in constant memory.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "apps/zum/play/frame_ring.hpp"

namespace zum {

class LoopSource {
 public:
  /// [main] Plays from the file's begin at `rate` Hz, resampled where the file has another one; the
  /// first second of it is there when this returns. Throws Failure for what is no music file, for
  /// one that cannot be read from its begin again, and for one without frames.
  LoopSource(const std::filesystem::path& path, int rate);
  /// Ends the thread.
  ~LoopSource();
  LoopSource(const LoopSource&) = delete;
  LoopSource& operator=(const LoopSource&) = delete;

  /// [audio] The next frames of both channels; silence for those that are not there in time.
  void read(float* left, float* right, int count) ZUM_REALTIME;

  /// [any] Frames that were not there in time.
  std::int64_t lateFrames() const { return late.load(std::memory_order_relaxed); }
  /// [main] Why it reads no more, as when the file broke off; empty while all is well. It is silent
  /// then.
  std::string problem() const;

 private:
  class Reader;

  FrameRing ring;
  std::atomic<std::int64_t> late{0};
  std::unique_ptr<Reader> reader;
  std::jthread thread;  // last: uses all of the above
};

}  // namespace zum
