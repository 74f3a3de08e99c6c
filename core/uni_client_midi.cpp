// MIDI: what a host sends, what becomes of it in the control pass, learning, and controller maps as
// files.

#include <algorithm>
#include <string>

#include "core/uni_client.hpp"
#include "engine/shared_value.hpp"
#include "platform/message_box.hpp"
#include "state/file_chooser.hpp"
#include "state/fileio.hpp"
#include "state/library_record.hpp"
#include "state/preset_files.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

constexpr float kPerByte = 0.007874015718698502F;  // 1 / 127
constexpr const char* kMapName = "ZUM CC Map";
constexpr const char* kMapExtension = "kvm";

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

void tell(const std::string& text) { showMessage(libraryRecord().product, text.c_str()); }

KvFileChooser mapChooser(void* owner) {
  KvFileChooser chooser(owner);
  chooser.addFilter(kMapName, kMapExtension);
  return chooser;
}

}  // namespace

// ---- from the host

bool KvUniClient::isShut(EngineEvent::Code code) const ZUM_REALTIME {
  switch (code) {
    case EngineEvent::kCancelled: return true;
    case EngineEvent::kController:
    case EngineEvent::kAftertouch: return controllerMap.learning.load();
    case EngineEvent::kProgramChange:
      return controllerMap.learning.load() || option(kIgnoreProgramChanges) != 0.0F;
    default: return false;
  }
}

std::int32_t KvUniClient::processEvents(VstEvents* sent) {
  if (adaptorTransport.load(std::memory_order_relaxed)) return 1;  // which feeds the queue itself
  VstEvent* const* list = sent->events;  // of as many as it says, whatever it is declared with
  for (std::int32_t i = 0; i < sent->numEvents; ++i) {
    const VstEvent* event = list[i];
    if (event == nullptr || event->type != kVstMidiType) continue;
    const auto& midi = *reinterpret_cast<const VstMidiEvent*>(event);
    const auto byte = [&midi](std::size_t at) ZUM_REALTIME {
      return static_cast<int>(static_cast<unsigned char>(midi.midiData[at]));
    };
    const int data1 = byte(1) & 0x7F;
    const int data2 = byte(2) & 0x7F;
    const EngineEvent::Code code = codeOf(byte(0), data1, data2);
    if (isShut(code)) continue;
    inbox.push({.time = midi.deltaFrames, .code = code, .data1 = data1, .data2 = data2});
  }
  return 1;
}

// ---- in the block

void KvUniClient::takeDueEvents() ZUM_REALTIME {
  events.age(Engine::kControlFrames);
  for (EngineEvent event; events.next(event);) handleEvent(event);
}

void KvUniClient::handleEvent(const EngineEvent& event) ZUM_REALTIME {
  switch (event.code) {
    case EngineEvent::kNoteOn: noteState.noteOn(event.data1, event.data2); break;
    case EngineEvent::kNoteOff:
      if (!noteState.noteOff(event.data1)) events.cancelNoteOn(event.data1);
      break;
    case EngineEvent::kAllNotesOff: noteState.allNotesOff(); break;
    case EngineEvent::kController: moveController(event.data1, event.data2); break;
    case EngineEvent::kPitchBend: noteState.bend(event.data2); break;
    case EngineEvent::kProgramChange:
      noteState.lastProgram = event.data1;
      playMidiProgram(event.data1);
      break;
    case EngineEvent::kAftertouch: {
      const float value = static_cast<float>(event.data1) * kPerByte;
      learnAndMove(controllerMap.aftertouch, value);
      noteState.aftertouch = value;
      break;
    }
    default: break;
  }
}

void KvUniClient::moveController(std::int32_t number, std::int32_t data) ZUM_REALTIME {
  if (controllerMap.learning.load() || number < 0 || number >= preset::kControllers) return;
  const auto place = static_cast<std::size_t>(number);
  const float value = static_cast<float>(data) * kPerByte;
  storeShared(controllerValues[place], value);
  learnAndMove(controllerMap.controllers[place], value);
}

// What was just learned moves with the message that taught it.
void KvUniClient::learnAndMove(BindingList& list, float value) ZUM_REALTIME {
  std::int32_t target = learnTarget.load();
  const auto tag = static_cast<std::int16_t>(target);
  // The target that was read is spent, not one that a window sets meanwhile.
  if (target >= 0 && list.tryAppend({tag, 0})) learnTarget.compare_exchange_strong(target, -1);
  for (std::size_t i = 0; i < list.size(); ++i) setParameter(list.at(i).tag, value);
}

// ---- learning

bool KvUniClient::beginLearn(std::int32_t tag) {
  const std::lock_guard turn(loadTurn);
  learnTarget.store(-1);
  if (rowOfTag(tag) < 0 || !makeRoom({.bindings = controllerMap.countsNow()})) return false;
  learnTarget.store(tag);
  return true;
}

void KvUniClient::endLearn() { learnTarget.store(-1); }

void KvUniClient::clearBindings(std::int32_t tag) {
  const std::lock_guard turn(loadTurn);
  controllerMap.learning.store(true);
  for (BindingList& list : controllerMap.controllers) {
    list.remove(bindingOf(static_cast<std::uint32_t>(tag)));
  }
  controllerMap.learning.store(false);
}

void KvUniClient::clearAllBindings() {
  const std::lock_guard turn(loadTurn);
  controllerMap.learning.store(true);
  controllerMap.clearControllers();
  controllerMap.learning.store(false);
}

// ---- maps as files

void KvUniClient::saveCcMap(const char* path) {
  if (path == nullptr) {
    const auto save = [this](const std::string& chosen) { saveCcMap(chosen.c_str()); };
    return mapChooser(this).save("Save File", kControllerMapPath, save);
  }
  const std::string file = path;
  if (file == KvFileChooser::kNothing || file.size() < 2) return;
  bool saved = false;
  {
    const std::lock_guard turn(loadTurn);
    KvChunk map;
    saved = writeMapFile(controllerMap, map) && fitsChunkFile(map) &&
            KvFileio::writeFile(file.c_str(), map.data(), 4 * std::size_t{map.dataWords()}) != 0;
  }
  if (!saved) tell("saving cc map to " + file + " failed");
}

void KvUniClient::loadCcMap(const char* path) {
  if (path == nullptr) {
    const auto load = [this](const std::string& chosen) { loadCcMap(chosen.c_str()); };
    return mapChooser(this).load("Load File", kControllerMapPath, load);
  }
  const std::string file = path;
  if (file == KvFileChooser::kNothing) return;
  KvChunk map;
  const ChunkFile found = readChunkFile(file, map);
  const std::string product = libraryRecord().product;
  const std::string invalid = "\t This is no valid " + product + " format!";
  if (found == ChunkFile::tooLong) return tell(invalid);
  if (found == ChunkFile::missing || !map.readHeader()) return;
  if (map.isNewer()) return tell("midi map was written with a newer version of " + product);
  if (takeCcMap(map) == ControllerMap::Read::damaged) tell(invalid);
}

ControllerMap::Read KvUniClient::takeCcMap(KvChunk& map) {
  const std::lock_guard turn(loadTurn);
  PresetNeeds needs;
  const std::uint32_t start = map.cursor;
  const ControllerMap::Read read = ControllerMap::checkCcMap(map, needs.bindings);
  if (read != ControllerMap::Read::taken) return read;
  if (!makeRoom(needs)) return ControllerMap::Read::damaged;
  map.cursor = start;
  return controllerMap.readCcMap(map);
}

}  // namespace zum
