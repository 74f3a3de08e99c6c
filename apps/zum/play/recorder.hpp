// Writes what is heard into a music file, on a thread of its own.
#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <string>
#include <thread>

#include "apps/zum/play/frame_ring.hpp"

namespace zum {

class AudioOutput;

class Recorder {
 public:
  /// [main] A file of the format that the extension names, float where it can hold it, at `rate`
  /// Hz. It appears when it is finished. Throws Failure when it cannot be made.
  Recorder(const std::filesystem::path& path, int rate);
  /// Finishes it.
  ~Recorder();
  Recorder(const Recorder&) = delete;
  Recorder& operator=(const Recorder&) = delete;

  /// [audio]
  void write(const float* left, const float* right, int count) ZUM_REALTIME;

  /// [main] False when it stopped by itself, as on a full disk: what was written up to there is a
  /// whole file. problem() says why.
  bool isRunning() const { return running.load(); }
  /// [main] Once, while no write() runs: all that was written before is in the file, which has its
  /// name from now on.
  void finish();
  const std::filesystem::path& file() const { return name; }
  /// [main] What is wrong with the file of one that runs no more; empty for nothing.
  std::string problem() const;
  /// [any] Frames that were lost because the disk was too slow.
  std::int64_t lostFrames() const { return lost.load(std::memory_order_relaxed); }

 private:
  void run(const std::stop_token& end);
  void keepWhatFits(const std::string& why);
  std::string endedEarly(const std::string& why) const;

  FrameRing ring;
  const std::filesystem::path name;
  std::unique_ptr<AudioOutput> output;
  std::atomic<bool> running{true};
  std::atomic<std::int64_t> lost{0};
  std::string trouble;  // written ahead of `running`
  std::jthread thread;  // last: uses all of the above
};

}  // namespace zum
