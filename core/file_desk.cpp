#include "core/file_desk.hpp"

#include <new>
#include <vector>

#include "platform/files.hpp"
#include "state/file_chooser.hpp"
#include "state/fileio.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/preset_files.hpp"

namespace zum {

// ---- with a question where there is no path

void FileDesk::loadPresetFile(const char* path, int slot, const char* extension, bool notify) {
  if (!PresetDesk::isSlot(slot)) return;
  if (path == nullptr) {
    return dialogs.askWhatToLoad(extension, [this, slot, notify](const std::string& chosen) {
      loadPresetFile(chosen.c_str(), slot, nullptr, notify);
    });
  }
  if (load(path, slot) && notify) host.namesChanged();
}

void FileDesk::savePreset(const char* path, int slot, const char* extension, bool notify,
                          const std::function<void()>& done) {
  if (!PresetDesk::isSlot(slot)) return;
  if (path == nullptr) {
    return dialogs.askWhereToSave(extension, [this, slot, notify, done](const std::string& file) {
      savePreset(file.c_str(), slot, nullptr, notify, done);
    });
  }
  if (!save(path, slot)) return;
  if (notify) host.namesChanged();
  if (done) done();
}

void FileDesk::step(int slot, int direction) {
  if (!PresetDesk::isSlot(slot)) return;
  std::string folder = desk.slot(slot).path.get();
  cutToFolder(folder);
  const std::vector<std::string> files = filesWithExtension(folder, preset::kExtension);
  if (files.empty()) return;
  const auto count = static_cast<int>(files.size());
  const std::string name = desk.slot(slot).name.get();
  int at = 0;
  while (at < count && baseName(files[static_cast<std::size_t>(at)]) != name) ++at;
  // Without a match the walk starts outside: at the first file forwards, at the last backwards.
  if (direction > 0) {
    at = at + 1 < count ? at + 1 : 0;
  } else {
    at = at > 0 && at < count ? at - 1 : count - 1;
  }
  loadPresetFile((folder + files[static_cast<std::size_t>(at)]).c_str(), slot, nullptr, true);
}

// The bank is read anew in any case: presets may have come or gone.
void FileDesk::choosePresetRoot(const std::function<void()>& done) {
  dialogs.askForRoot(
      PresetDesk::root(),
      [this, done](const std::string& chosen) {
        bank.setRoot(chosen);
        done();
      },
      [this, done] {
        bank.scan();
        done();
      });
}

void FileDesk::saveCcMap(const char* path) {
  if (path == nullptr) {
    return dialogs.askForMapToSave(
        [this](const std::string& chosen) { saveCcMap(chosen.c_str()); });
  }
  const std::string file = path;
  if (file == KvFileChooser::kNothing || file.size() < 2) return;
  if (!midi.saveMap(file)) PresetDialogs::tell("saving cc map to " + file + " failed");
}

void FileDesk::loadCcMap(const char* path) {
  if (path == nullptr) {
    return dialogs.askForMapToLoad(
        [this](const std::string& chosen) { loadCcMap(chosen.c_str()); });
  }
  const std::string file = path;
  if (file == KvFileChooser::kNothing) return;
  const SoundHistory::Step step(history, SoundHistory::Part::map, "Load controllers");
  switch (midi.loadMap(file)) {
    case MidiIn::MapFile::taken:
    case MidiIn::MapFile::ignored: return;
    case MidiIn::MapFile::invalid: return PresetDialogs::tellInvalid();
    case MidiIn::MapFile::newer:
      return PresetDialogs::tell(std::string("midi map was written with a newer version of ") +
                                 libraryRecord().product);
  }
}

// ---- files

bool FileDesk::load(const std::string& file, int slot) {
  KvChunk preset;
  try {
    if (readChunkFile(file, preset) == ChunkFile::missing) return false;
  } catch (const std::bad_alloc&) {
    return false;
  }
  if (!preset.readHeader(false)) return false;  // nothing of a file that is too long was read
  if (preset.isNewer()) {
    PresetDialogs::tell(std::string("preset was written with a newer version of ") +
                        libraryRecord().product);
    return false;
  }
  PresetNeeds needs;
  if (!desk.accepts(preset, slot, false, needs)) return false;
  SoundHistory::Step step(history, SoundHistory::Part::whole, "Preset");
  step.rename("Preset " + std::string(baseName(file)));
  {
    const StateGate::Turn turn(gate);
    if (!desk.replace(preset, slot, needs, {.title = baseName(file)})) return false;
    desk.takeOrigin(slot, file);
    bank.takePosition();
  }
  window.update();
  return true;
}

bool FileDesk::save(const std::string& file, int slot) {
  if (!write(file, slot)) {
    PresetDialogs::tell("saving preset to " + file + " failed");
    return false;
  }
  bank.scanBehind(file);
  return true;
}

bool FileDesk::write(const std::string& file, int slot) {
  const StateGate::Turn turn(gate);
  KvChunk preset;
  if (!desk.write(preset, slot) || !fitsChunkFile(preset) ||
      KvFileio::writeFile(file.c_str(), preset.data(), 4 * std::size_t{preset.dataWords()}) == 0) {
    return false;
  }
  desk.slot(slot).name.set(baseName(file));
  desk.takeOrigin(slot, file);
  return true;
}

}  // namespace zum
