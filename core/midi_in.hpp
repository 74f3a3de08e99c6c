// [host, audio, main: each operation says which] MIDI: what a host sends, until the control pass in
// which it is due, and what becomes of it there.
#pragma once

#include <array>
#include <atomic>
#include <cstdint>
#include <string>

#include "core/aeffect.hpp"
#include "core/controller_map.hpp"
#include "core/event_inbox.hpp"
#include "core/event_queue.hpp"
#include "core/note_state.hpp"
#include "core/parameter_store.hpp"
#include "core/state_gate.hpp"
#include "core/user_switches.hpp"

namespace zum {

/// Plays the programs that MIDI asks for.
class MidiPrograms {
 public:
  /// [audio] The program of that number in the folder for MIDI.
  virtual void playMidiProgram(int index) ZUM_REALTIME = 0;
  /// [audio] The neighbour of the current one, by 1 or -1.
  virtual void stepMidiProgram(int direction) ZUM_REALTIME = 0;

 protected:
  ~MidiPrograms() = default;
};

class MidiIn {
 public:
  MidiIn(StateGate& stateGate, ParameterStore& store, const UserSwitches& userSwitches)
      : gate(stateGate), parameters(store), switches(userSwitches) {
    controllerMap.reserve();
  }
  MidiIn(const MidiIn&) = delete;
  MidiIn& operator=(const MidiIn&) = delete;

  /// [host] One thread at a time, which need not be that of the block.
  void receive(const VstEvents& sent) ZUM_REALTIME;
  /// Three bytes of a message, due at a frame of the next block.
  void receive(std::int32_t frame, const std::uint8_t* bytes) ZUM_REALTIME;

  // [audio]
  /// A block goes by in which nothing can be due.
  void passBlock() ZUM_REALTIME { inbox.passBlock(); }
  void beginBlock() ZUM_REALTIME { inbox.takeInto(events); }
  /// Handles what is due in a control pass, `frames` behind the last one.
  void takeDue(std::int32_t frames, MidiPrograms& programs) ZUM_REALTIME;
  void handle(const EngineEvent& event, MidiPrograms& programs) ZUM_REALTIME;

  // [main] The next controller, or pressure, moves the parameter from now on. False for a tag that
  // there is not.
  bool beginLearn(std::int32_t tag);
  void endLearn() { learnTarget.store(-1); }
  /// What was learned of the parameter, by controllers; pressure keeps it.
  void clearBindings(std::int32_t tag);
  void clearAllBindings();

  // [main] Controller maps as files.
  enum class MapFile : std::uint8_t { taken, ignored, newer, invalid };
  MapFile loadMap(const std::string& path);
  bool saveMap(const std::string& path) const;
  /// The same words from behind the header on.
  ControllerMap::Read takeMap(KvChunk& map);

  /// [any] The tag that learns, -1 for none.
  const std::atomic<std::int32_t>& learning() const { return learnTarget; }
  ControllerMap& map() { return controllerMap; }
  /// [any] The last value of a controller, 0 to 1.
  float controllerValue(int number) const ZUM_REALTIME {
    return loadShared(controllerValues[static_cast<std::size_t>(number)]);
  }
  const NoteState& played() const { return noteState; }
  /// [audio]
  EventQueue& queue() { return events; }

 private:
  /// True for an event that is dropped as it arrives: the map is being changed, or the user wants
  /// no program changes.
  bool isIgnored(EngineEvent::Code code) const ZUM_REALTIME;
  struct Move {
    float from;  // 0 to 1
    float to;
  };
  void moveController(std::int32_t number, std::int32_t data, MidiPrograms& programs) ZUM_REALTIME;
  void learnAndMove(BindingList& list, const Move& move, MidiPrograms& programs) ZUM_REALTIME;
  /// In silence where room has to be made, so that no block writes into what grows. False when the
  /// memory does not suffice.
  bool makeRoom(const ControllerMap::Counts& counts);

  StateGate& gate;
  ParameterStore& parameters;
  const UserSwitches& switches;
  EventInbox inbox;
  EventQueue events;
  NoteState noteState;
  std::array<float, preset::kControllers> controllerValues{};
  ControllerMap controllerMap;
  std::atomic<std::int32_t> learnTarget{-1};
};

}  // namespace zum
