// [any] Keeps blocks and loaders apart: who replaces a state, or sets the engine anew, takes a
// turn, asks for silence and waits for the block at work; blocks are silent meanwhile, and never
// wait.
#pragma once

#include <atomic>
#include <cstdint>
#include <mutex>

#include "engine/realtime.hpp"

namespace zum {

class StateGate {
 public:
  /// Set while a state is replaced or the engine set anew: blocks are silent and touch nothing.
  std::atomic<bool> muteRequest{false};
  /// Set while a block runs; stays set behind a block that the host took offline.
  std::atomic<bool> inProcess{false};

  StateGate() = default;
  StateGate(const StateGate&) = delete;
  StateGate& operator=(const StateGate&) = delete;

  /// [any] The last block was left as the host gave it.
  bool isOffline() const ZUM_REALTIME { return offline.load(std::memory_order_relaxed); }

  /// [audio] One block.
  class Block {
   public:
    explicit Block(StateGate& entered) ZUM_REALTIME : gate(entered), open(entered.tryEnter()) {}
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() ZUM_REALTIME {
      if (open) gate.inProcess.store(false);
    }

    /// False for a block that has to be silent and touch nothing.
    bool isOpen() const ZUM_REALTIME { return open; }
    /// The host works offline: the block touches nothing, and its byte stays set.
    void leaveOffline() ZUM_REALTIME {
      open = false;
      gate.offline.store(true);
    }

   private:
    StateGate& gate;
    bool open;
  };

  /// [main] Of those who replace or read states. One thread may take it again.
  class Turn {
   public:
    explicit Turn(StateGate& gate) : lock(gate.turns) {}

   private:
    const std::lock_guard<std::recursive_mutex> lock;
  };

  /// [main] A turn in which no block is at work, or none that ends within half a second.
  class Silence {
   public:
    enum class Ends : std::uint8_t {
      asItBegan,  // a mute that was there stays; does not wait for a block that was left offline
      withEveryMute,  // a whole new state also ends a mute that an earlier loader left
    };
    explicit Silence(StateGate& gate, Ends ending = Ends::asItBegan);
    Silence(const Silence&) = delete;
    Silence& operator=(const Silence&) = delete;
    ~Silence() { gate.muteRequest.store(mutedAfterwards); }

    /// False when a block may still be at work.
    bool isComplete() const { return complete; }
    void staysUntilAStateIsLoaded() { mutedAfterwards = true; }

   private:
    StateGate& gate;
    const Turn turn;
    bool mutedAfterwards;
    const bool complete;
  };

  /// [any] A preset on its way into the parameters.
  class Intake {
   public:
    explicit Intake(StateGate& entered) ZUM_REALTIME : gate(entered) { gate.intakes.fetch_add(1); }
    Intake(const Intake&) = delete;
    Intake& operator=(const Intake&) = delete;
    ~Intake() ZUM_REALTIME { gate.intakes.fetch_add(1); }

   private:
    StateGate& gate;
  };
  /// [any] Twice the number of presets that were taken over; odd while one is.
  std::uint32_t intakeCount() const ZUM_REALTIME { return intakes.load(); }

 private:
  bool tryEnter() ZUM_REALTIME;
  bool silenceBlocks(bool waitsForOffline);

  std::atomic<bool> offline{false};
  std::atomic<std::uint32_t> intakes{0};
  std::recursive_mutex turns;
};

}  // namespace zum
