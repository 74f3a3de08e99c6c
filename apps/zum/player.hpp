// The thread that stands in for a sound card: takes block after block from the effect, as fast as
// one would, and lets nobody hear them. Used by the edit command.
#pragma once

#include <atomic>
#include <thread>

namespace zum {

class EffectHost;
class SoundLoop;

class Player {
 public:
  static constexpr int kBlock = 256;  // frames

  /// Plays from now on. Both outlive it, and nobody else uses the loop or processes.
  Player(EffectHost& effectHost, SoundLoop& played);
  /// Ends behind the block that is at work.
  ~Player();
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

 private:
  void play();  // [audio]

  EffectHost& host;
  SoundLoop& loop;
  std::atomic<bool> ending{false};
  std::thread thread;  // last: uses all of the above
};

}  // namespace zum
