#include "core/file_desk.hpp"

#include <vector>

#include "platform/files.hpp"
#include "state/fileio.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/preset_files.hpp"

namespace zum {

bool FileDesk::load(const std::string& file, int slot) {
  KvChunk preset;
  if (readChunkFile(file, preset) == ChunkFile::missing) return false;
  if (!preset.readHeader(false)) return false;  // nothing of a file that is too long was read
  if (preset.isNewer()) {
    PresetDialogs::tell(std::string("preset was written with a newer version of ") +
                        libraryRecord().product);
    return false;
  }
  PresetNeeds needs;
  if (!desk.accepts(preset, slot, false, needs)) return false;
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

std::optional<std::string> FileDesk::neighbour(int slot, int direction) const {
  std::string folder = desk.slot(slot).path.get();
  cutToFolder(folder);
  const std::vector<std::string> files = filesWithExtension(folder, preset::kExtension);
  if (files.empty()) return std::nullopt;
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
  return folder + files[static_cast<std::size_t>(at)];
}

}  // namespace zum
