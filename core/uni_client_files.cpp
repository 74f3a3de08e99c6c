// Preset files: loading and saving with and without a dialog, the neighbours of the current file,
// and where a state's file lies.

#include <functional>
#include <memory>
#include <string>

#include "core/uni_client.hpp"
#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "state/file_chooser.hpp"
#include "state/fileio.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/preset_files.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

std::string extensionOr(const char* extension) {
  return extension != nullptr ? extension : preset::kExtension;
}

void tell(const std::string& text) { showMessage(libraryRecord().product, text.c_str()); }

void askReplace(void* owner, const std::string& file, MessageAnswer answer) {
  const std::string text = "The file " + file + " exists.\nDo you want to replace it ?";
  askMessage(owner, libraryRecord().product, text.c_str(), std::move(answer));
}

}  // namespace

std::string KvUniClient::presetRoot() {
  std::string root = readSettingString(kPresetPath).value_or("");
  if (!isAbsolutePath(root)) return {};
  ensureTrailingBackslash(root);
  return root;
}

void KvUniClient::loadPresetFile(const char* path, int slot, const char* extension, bool notify) {
  if (!isSlot(slot)) return;
  if (path == nullptr) {
    const auto load = [this, slot, notify](const std::string& chosen) {
      loadPresetFile(chosen.c_str(), slot, nullptr, notify);
    };
    return KvFileChooser(this).chooseLoad(extensionOr(extension), load);
  }
  const std::string file = path;
  KvChunk preset;
  const ChunkFile found = readChunkFile(file, preset);
  if (found == ChunkFile::missing) return;
  if (!preset.readHeader(false)) return;  // nothing of a file that is too long was read
  if (preset.isNewer()) {
    tell(std::string("preset was written with a newer version of ") + libraryRecord().product);
    return;
  }
  PresetNeeds needs;
  if (!accepts(preset, slot, false, needs)) return;
  {
    const std::lock_guard turn(loadTurn);
    if (!replaceState(preset, slot, needs, false, false, baseName(file))) return;
    takeOrigin(slot, file);
    takePosition();
  }
  updateEditor();
  if (notify) updateDisplay();
}

void KvUniClient::savePreset(const char* path, int slot, const char* extension, bool notify,
                             const std::function<void()>& done) {
  if (!isSlot(slot)) return;
  if (path == nullptr) return askWhereToSave(slot, extensionOr(extension), notify, done);
  const std::string file = path;
  if (!writePresetFile(file, slot)) return tell("saving preset to " + file + " failed");
  readBankBehind(file);
  if (notify) updateDisplay();
  if (done) done();
}

// The dialog asked about the name as it was typed; with its ending it may be that of another file.
void KvUniClient::askWhereToSave(int slot, const std::string& extension, bool notify,
                                 const std::function<void()>& done) {
  const auto save = [this, slot, notify, done](const std::string& file) {
    savePreset(file.c_str(), slot, nullptr, notify, done);
  };
  const auto complete = [this, ending = "." + extension, save](const std::string& chosen) {
    if (chosen.ends_with(ending)) return save(chosen);
    const std::string file = chosen + ending;
    if (!fileExists(file)) return save(file);
    askReplace(this, file, [file, save](bool yes) {
      if (yes) save(file);
    });
  };
  KvFileChooser(this).chooseSave(extension, readSettingString(kPresetSavePath).value_or(""),
                                 complete);
}

bool KvUniClient::writePresetFile(const std::string& file, int slot) {
  const std::lock_guard turn(loadTurn);
  KvChunk preset;
  if (!writePreset(preset, slot) || !fitsChunkFile(preset) ||
      KvFileio::writeFile(file.c_str(), preset.data(), 4 * std::size_t{preset.dataWords()}) == 0) {
    return false;
  }
  slots[static_cast<std::size_t>(slot)].name.set(baseName(file));
  takeOrigin(slot, file);
  return true;
}

// The name is set where the state is: it goes with what is heard.
void KvUniClient::takeOrigin(int slot, const std::string& file) {
  PresetSlot& names = slots[static_cast<std::size_t>(slot)];
  names.path.set(file);
  names.folder.set(folderName(file));
}

void KvUniClient::stepPreset(int slot, int direction) {
  if (!isSlot(slot)) return;
  const PresetSlot& names = slots[static_cast<std::size_t>(slot)];
  std::string folder = names.path.get();
  cutToFolder(folder);
  const std::vector<std::string> files = filesWithExtension(folder, preset::kExtension);
  if (files.empty()) return;
  const auto count = static_cast<int>(files.size());
  const std::string name = names.name.get();
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

void KvUniClient::findOrigin(int slot) {
  PresetSlot& names = slots[static_cast<std::size_t>(slot)];
  const std::string root = presetRoot();
  if (root.empty()) return;
  const FoundPreset found = findPresetFile(root, names.name.get() + "." + preset::kExtension);
  names.folder.set(found.folder);
  if (!found.path.empty()) names.path.set(found.path);
}

}  // namespace zum
