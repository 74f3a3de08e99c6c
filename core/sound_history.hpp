// [main] The way back: what the user did to the sound, step by step, for each of two sounds, A and
// B, of which one is heard. It keeps nothing before start(), which the first window calls.
//
// A step holds what it moved as it was before; undone, it holds the same as it was then. So undo
// and redo are one exchange, and redo brings back what undo took, to the word. A step of single
// values leaves all others alone, whoever moves them meanwhile; the page that the window shows goes
// with it, but is no step by itself.
//
// What replaces the sound behind the history's back ends it: a host's state that of both sounds,
// which are the same from then on; a program that the block plays that of the one that is heard.
#pragma once

#include <atomic>
#include <bitset>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "core/sound_parts.hpp"

namespace zum {

class SoundHistory {
 public:
  static constexpr std::size_t kSteps = 100;                    // of each sound
  static constexpr std::size_t kBytes = std::size_t{8} << 20U;  // of each sound; the oldest go
  static constexpr int kSounds = 2;

  /// The owner, who speaks to the host.
  class Teller {
   public:
    /// As by a hand, with its begin and end, where the host knows the value.
    virtual void moveBack(int tag, float raw) = 0;
    /// More than values moved, or other names are to be shown.
    virtual void soundMoved() = 0;

   protected:
    ~Teller() = default;
  };

  SoundHistory(const SoundCopies::Around& rooms, const EditorLink& shown, Teller& host)
      : copies(rooms),
        gate(rooms.gate),
        parameters(rooms.parameters),
        window(shown),
        teller(host) {}
  SoundHistory(const SoundHistory&) = delete;
  SoundHistory& operator=(const SoundHistory&) = delete;

  void start();
  /// Forgets all steps; both sounds are what is heard now.
  void clear();

  // ---- steps. What lies in one another is one step; nothing moved, and there is none.
  /// What a step moves beside single values.
  enum class Part : std::uint8_t { values, steps, map, whole };

  class Step {
   public:
    Step(SoundHistory& history, Part part, std::string name);
    Step(const Step&) = delete;
    Step& operator=(const Step&) = delete;
    ~Step() { of.end(); }
    /// What it is called is known when it is done.
    void rename(std::string name);

   private:
    SoundHistory& of;
  };

  /// A gesture on a control, from its begin to its end. The step table's counts for its steps.
  void beginGesture(int tag);
  void endGesture(int tag);
  /// The value moves by the user's hand, within a step; for a reset button, what it centres.
  void touch(int tag);
  /// The gesture that is open goes on in the next one of the same tag, until anything else happens.
  void merge();
  void seal();

  // ---- the way back. False when there is nothing to do, within a step, and without memory.
  bool undo() { return exchange(&Side::done, &Side::undone); }
  bool redo() { return exchange(&Side::undone, &Side::done); }
  /// What it would be, such as "Cutoff"; nothing where it would do nothing.
  std::optional<std::string> undoName() { return nameOf(&Side::done); }
  std::optional<std::string> redoName() { return nameOf(&Side::undone); }

  // ---- A and B
  int chosen() const { return chosenSound.load(std::memory_order_relaxed); }
  bool choose(int sound);
  /// The sound that is heard over the other one, which is a step there.
  bool copy();

 private:
  struct Done {
    std::string name;
    SoundParts parts;
  };
  using Steps = std::vector<Done>;
  struct Side {
    Steps done;                         // the newest one last
    Steps undone;                       // the next one last
    std::unique_ptr<WholeSound> sound;  // of the one that is not heard
  };
  struct Open {
    std::string name;
    SoundParts parts;
    std::array<float, kPresetRows> values{};
    std::bitset<kPresetRows> touched;
    int tag = -1;  // of a gesture
    bool merges = false;
    bool isVoid = false;  // becomes no step
  };

  bool isUsable() const { return isKept.load(std::memory_order_relaxed); }
  Side& heard() { return sides[static_cast<std::size_t>(chosen())]; }
  void begin(std::string_view name, int tag);
  void end();
  void keep(Part part);
  void touchRow(int row);
  bool close();
  void keepMoved(Open& step) const;
  bool push(Open& step);
  void mergeInto(Done& last, Open& step) const;
  void forgetSide(Side& side);
  /// A program that was played in a block ends the history of what it replaced.
  void lookForPrograms();
  static void trim(Side& side);
  bool exchange(Steps Side::*from, Steps Side::*to);
  bool exchange(SoundParts& parts, std::uint32_t clearsBefore);
  /// A state of the host's came since: what a step holds is of no use any more.
  bool isOvertaken(std::uint32_t clearsBefore) const {
    const StateGate::Turn turn(gate);
    return clears != clearsBefore;
  }
  /// Something is put back, as long as it lives; however that ends.
  class Busy {
   public:
    explicit Busy(SoundHistory& history) : of(history) { of.isBusy = true; }
    Busy(const Busy&) = delete;
    Busy& operator=(const Busy&) = delete;
    ~Busy() {
      const StateGate::Turn turn(of.gate);
      of.isBusy = false;
      of.knownIntakes += ownIntakes;
    }

    std::uint32_t ownIntakes = 0;

   private:
    SoundHistory& of;
  };
  /// In a turn. False within a step, and while something is put back.
  bool mayPutBack();
  std::optional<std::string> nameOf(Steps Side::*steps);

  const SoundCopies copies;
  StateGate& gate;
  ParameterStore& parameters;
  const EditorLink& window;
  Teller& teller;
  std::atomic<bool> isKept{false};
  std::atomic<int> chosenSound{0};
  // All below changes in a turn.
  std::array<Side, kSounds> sides;
  std::optional<Open> open;
  int depth = 0;                   // steps that are open in one another
  std::bitset<kLastTag + 1> held;  // by gestures
  int merging = -1;                // tag of the gesture that the last step goes on with
  bool isBusy = false;             // something is put back
  std::uint32_t clears = 0;
  std::uint32_t knownIntakes = 0;  // of states, as far as the steps tell of them
};

}  // namespace zum
