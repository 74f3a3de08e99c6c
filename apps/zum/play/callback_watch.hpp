// How a device's callback gets on: that it comes at all, and how much of its time it takes.
#pragma once

#include <atomic>
#include <chrono>
#include <cstdint>

#include "apps/zum/play/sound_device.hpp"
#include "engine/realtime.hpp"

namespace zum {

class CallbackWatch {
 public:
  /// In Hz.
  explicit CallbackWatch(double sampleRate) : rate(sampleRate) {}

  // ---- [audio] around each block; the clock is read without a system call
  void begin() ZUM_REALTIME { started = now(); }
  void end(int frames) ZUM_REALTIME {
    const double spent = std::chrono::duration<double>(now() - started).count();
    const double lasts = frames / rate;
    add(sumSpent, spent);
    add(sumLasts, lasts);
    if (spent / lasts > most.load(std::memory_order_relaxed)) most.store(spent / lasts);
    if (spent > lasts) ownLate.fetch_add(1);
    calls.fetch_add(1);
  }
  void noteXrun() ZUM_REALTIME { lateBlocks.fetch_add(1); }

  // ---- [any]
  std::uint64_t callCount() const { return calls.load(); }
  int xruns() const { return lateBlocks.load(); }
  SoundDevice::Load load() const {
    const double lasts = sumLasts.load();
    return {lasts > 0.0 ? sumSpent.load() / lasts : 0.0, most.load(), ownLate.load()};
  }

 private:
  using Clock = std::chrono::steady_clock;
  static Clock::time_point now() ZUM_REALTIME {
    return trusted([] { return Clock::now(); });
  }
  static void add(std::atomic<double>& sum, double part) ZUM_REALTIME {
    sum.store(sum.load(std::memory_order_relaxed) + part, std::memory_order_relaxed);
  }

  const double rate;
  Clock::time_point started;
  std::atomic<double> sumSpent{0.0};  // seconds
  std::atomic<double> sumLasts{0.0};
  std::atomic<double> most{0.0};
  std::atomic<std::uint64_t> calls{0};
  std::atomic<int> lateBlocks{0};
  std::atomic<int> ownLate{0};
};

}  // namespace zum
