// One instance on the stage, as its host has it: blocks and MIDI on a thread of their own, the
// window and all else on the main thread.
#pragma once

#include <sys/resource.h>
#include <unistd.h>

#include <bit>
#include <mutex>
#include <thread>

#include "editor/create_editor.hpp"
#include "tests/support/chance.hpp"
#include "tests/support/gestures.hpp"
#include "tests/support/own_display.hpp"

namespace zum::test {

class Player {
 public:
  static constexpr int kMostFrames = 1024;

  explicit Player(unsigned seed) : chance(seed) {}
  ~Player() { closeWindow(); }

  /// Blocks that were heard; -1 once a sample was not finite.
  int heard() const { return heardBlocks.load(std::memory_order_relaxed); }

  void openWindow(int left) {
    if (place) return;
    auto fresh = std::make_unique<HostWindow>(left);
    void* const handle = std::bit_cast<void*>(fresh->window);
    if (host.dispatch(effEditOpen, 0, 0, handle) == 1) place = std::move(fresh);
  }
  void closeWindow() { host.dispatch(effEditClose), place.reset(); }
  void setLevel(std::int32_t processLevel) {
    const std::lock_guard turn(block);
    host.host.level = processLevel;
  }
  void idle() const { host.dispatch(effEditIdle); }

  std::mutex block;  // held also by a host that keeps blocks away from what it does
  TestHost host{44100.0F, {}, createEditor};
  KvUniClient& effect = host.client();
  const Gestures gestures{host.host};
  std::unique_ptr<HostWindow> place;  // of the window that is open
  int longestBlock = kMostFrames;
  std::atomic<bool> floods{false};  // the next block comes behind more MIDI than it has room for

 private:
  void playBlock() {
    const std::lock_guard turn(block);
    const auto byte = [this] { return chance.below(128); };
    for (int i = floods.exchange(false) ? 3000 : chance.below(2); i > 0; --i)
      host.send({{i % 64, 0xB0, byte(), byte()}});
    if (chance.once(8)) host.send({{5, 0x90, byte(), byte()}, {30, 0xE0, 0, byte()}});
    if (chance.once(100)) host.send({{9, 0xC0, chance.below(12)}});  // one of the doors of presets
    Stereo out(static_cast<std::size_t>(1 + chance.below(longestBlock)));
    host.process(in, out, 0, static_cast<std::int32_t>(out.frames()));
    const double sum = energy(out);
    const int count = std::isfinite(sum) && heard() >= 0 ? heard() + (sum > 0.0 ? 1 : 0) : -1;
    heardBlocks.store(count, std::memory_order_relaxed);
  }

  const Stereo in = noise(kMostFrames);
  Chance chance;  // of the audio thread
  std::atomic<int> heardBlocks{0};
  std::jthread audio{[this](const std::stop_token& stop) {  // last: it ends ahead of what it uses
    setpriority(PRIO_PROCESS, static_cast<id_t>(gettid()), -10);  // where the user may
    for (; !stop.stop_requested(); playBlock()) usleep(3000);
  }};
};

}  // namespace zum::test
