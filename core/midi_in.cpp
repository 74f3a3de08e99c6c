#include "core/midi_in.hpp"

#include <utility>

#include "core/tags.hpp"
#include "engine/shared_value.hpp"
#include "state/fileio.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

constexpr float kPerByte = 0.007874015718698502F;  // 1 / 127

// By the high half of a status byte; kCancelled for what is not queued.
EngineEvent::Code codeOf(int status, int data1, int data2) ZUM_REALTIME {
  constexpr int kAllNotesOffController = 123;
  switch (status & 0xF0) {
    case 0x80: return EngineEvent::kNoteOff;
    case 0x90: return data2 == 0 ? EngineEvent::kNoteOff : EngineEvent::kNoteOn;
    case 0xB0:  // on the first channel alone
      return status == 0xB0 && data1 == kAllNotesOffController ? EngineEvent::kAllNotesOff
                                                               : EngineEvent::kController;
    case 0xC0: return EngineEvent::kProgramChange;
    case 0xD0: return EngineEvent::kAftertouch;
    case 0xE0: return EngineEvent::kPitchBend;
    default: return EngineEvent::kCancelled;
  }
}

}  // namespace

// ---- from the host

bool MidiIn::isIgnored(EngineEvent::Code code) const ZUM_REALTIME {
  switch (code) {
    case EngineEvent::kCancelled: return true;
    case EngineEvent::kController:
    case EngineEvent::kAftertouch: return controllerMap.learning.load();
    case EngineEvent::kProgramChange:
      return controllerMap.learning.load() || switches.isOn(UserSwitches::kIgnoreProgramChanges);
    default: return false;
  }
}

void MidiIn::receive(const VstEvents& sent) ZUM_REALTIME {
  VstEvent* const* list = sent.events;  // of as many as it says, whatever it is declared with
  for (std::int32_t i = 0; i < sent.numEvents; ++i) {
    const VstEvent* event = list[i];
    if (event == nullptr || event->type != kVstMidiType) continue;
    const auto& midi = *reinterpret_cast<const VstMidiEvent*>(event);
    receive(midi.deltaFrames, reinterpret_cast<const std::uint8_t*>(midi.midiData));
  }
}

void MidiIn::receive(std::int32_t frame, const std::uint8_t* bytes) ZUM_REALTIME {
  const auto data1 = static_cast<std::uint8_t>(bytes[1] & 0x7F);
  const auto data2 = static_cast<std::uint8_t>(bytes[2] & 0x7F);
  const EngineEvent::Code code = codeOf(bytes[0], data1, data2);
  if (!isIgnored(code)) inbox.push({.time = frame, .code = code, .data1 = data1, .data2 = data2});
}

// ---- in the block

void MidiIn::takeDue(std::int32_t frames, MidiPrograms& programs) ZUM_REALTIME {
  events.age(frames);
  for (EngineEvent event{}; events.next(event);) handle(event, programs);
}

void MidiIn::handle(const EngineEvent& event, MidiPrograms& programs) ZUM_REALTIME {
  switch (event.code) {
    case EngineEvent::kNoteOn: noteState.noteOn(event.data1, event.data2); break;
    case EngineEvent::kNoteOff:
      if (!noteState.noteOff(event.data1)) events.cancelNoteOn(event.data1);
      break;
    case EngineEvent::kAllNotesOff: noteState.allNotesOff(); break;
    case EngineEvent::kController: moveController(event.data1, event.data2, programs); break;
    case EngineEvent::kPitchBend: noteState.bend(event.data2); break;
    case EngineEvent::kProgramChange:
      noteState.lastProgram = event.data1;
      programs.playMidiProgram(event.data1);
      break;
    case EngineEvent::kAftertouch: {
      const float value = static_cast<float>(event.data1) * kPerByte;
      const float before = std::exchange(noteState.aftertouch, value);
      learnAndMove(controllerMap.aftertouch, {before, value}, programs);
      break;
    }
    default: break;
  }
}

void MidiIn::moveController(std::int32_t number, std::int32_t data, MidiPrograms& programs)
    ZUM_REALTIME {
  if (controllerMap.learning.load() || number < 0 || number >= preset::kControllers) return;
  const auto place = static_cast<std::size_t>(number);
  const float value = static_cast<float>(data) * kPerByte;
  const float before = loadShared(controllerValues[place]);
  storeShared(controllerValues[place], value);
  learnAndMove(controllerMap.controllers[place], {before, value}, programs);
}

// What was just learned moves with the message that taught it, but for the buttons of the programs.
// They are pressed when their controller goes above the middle, once all others have moved: the
// program brings another list. Pressure does not teach them, since no clearing takes that back.
void MidiIn::learnAndMove(BindingList& list, const Move& move, MidiPrograms& programs)
    ZUM_REALTIME {
  constexpr float kMiddle = 0.5F;
  std::int32_t target = learnTarget.load();
  const auto tag = static_cast<std::int16_t>(target);
  // The target that was read is spent, not one that a window sets meanwhile.
  const bool isButton = outlastsPresets({tag, 0});
  const bool mayTeach = target >= 0 && !(isButton && &list == &controllerMap.aftertouch);
  const bool isTaught = mayTeach && list.tryAdd({tag, 0});
  if (isTaught) learnTarget.compare_exchange_strong(target, -1);
  const bool mayStep = !(isTaught && isButton);
  int way = 0;
  for (std::size_t i = 0; i < list.size(); ++i) {
    const int moved = list.at(i).tag;
    if (moved == tag::nextProgram) way = 1;
    if (moved == tag::previousProgram) way = -1;
    parameters.setParameter(moved, move.to);
  }
  const bool isPressed = move.from <= kMiddle && move.to > kMiddle;
  if (mayStep && way != 0 && isPressed) programs.stepMidiProgram(way);
}

// ---- learning

bool MidiIn::beginLearn(std::int32_t tag) {
  const StateGate::Turn turn(gate);
  learnTarget.store(-1);
  if (rowOfTag(tag) < 0 || !makeRoom(controllerMap.countsNow())) return false;
  learnTarget.store(tag);
  return true;
}

void MidiIn::clearBindings(std::int32_t tag) {
  const StateGate::Turn turn(gate);
  controllerMap.learning.store(true);
  for (BindingList& list : controllerMap.controllers) {
    list.remove(bindingOf(static_cast<std::uint32_t>(tag)));
  }
  controllerMap.learning.store(false);
}

void MidiIn::clearAllBindings() {
  const StateGate::Turn turn(gate);
  controllerMap.learning.store(true);
  controllerMap.clearControllers();
  controllerMap.learning.store(false);
}

// ---- maps as files

bool MidiIn::makeRoom(const ControllerMap::Counts& counts) {
  if (controllerMap.hasRoomFor(counts)) return true;
  const StateGate::Silence silence(gate);
  return controllerMap.reserve(counts);
}

bool MidiIn::saveMap(const std::string& path) const {
  const StateGate::Turn turn(gate);
  KvChunk map;
  return writeMapFile(controllerMap, map) && fitsChunkFile(map) &&
         KvFileio::writeFile(path.c_str(), map.data(), 4 * std::size_t{map.dataWords()}) != 0;
}

MidiIn::MapFile MidiIn::loadMap(const std::string& path) {
  KvChunk map;
  const ChunkFile found = readChunkFile(path, map);
  if (found == ChunkFile::tooLong) return MapFile::invalid;
  if (found == ChunkFile::missing || !map.readHeader()) return MapFile::ignored;
  if (map.isNewer()) return MapFile::newer;
  switch (takeMap(map)) {
    case ControllerMap::Read::taken: return MapFile::taken;
    case ControllerMap::Read::otherVersion: return MapFile::ignored;
    case ControllerMap::Read::damaged: break;
  }
  return MapFile::invalid;
}

ControllerMap::Read MidiIn::takeMap(KvChunk& map) {
  const StateGate::Turn turn(gate);
  ControllerMap::Counts counts{};
  const std::uint32_t start = map.cursor;
  const ControllerMap::Read read = ControllerMap::checkCcMap(map, counts);
  if (read != ControllerMap::Read::taken) return read;
  if (!makeRoom(counts)) return ControllerMap::Read::damaged;
  map.cursor = start;
  return controllerMap.readCcMap(map);
}

}  // namespace zum
