#include "state/program_bank.hpp"

#include <optional>
#include <vector>

#include "platform/files.hpp"
#include "state/path_text.hpp"
#include "state/preset_files.hpp"
#include "state/preset_format.hpp"

namespace zum {
namespace {

/// What a program of this product starts with; its body is checked when it is loaded.
bool startsLikeAPreset(KvChunk& chunk) {
  if (!chunk.readHeader()) return false;
  chunk.getInt();
  if (chunk.getInt() < preset::kProductFormat) return false;
  const bool hasReserved = chunk.getInt() >= preset::kFirstReservedLayout;
  if (hasReserved && chunk.getInt() != 0) return false;
  chunk.cursor = 0;
  return !chunk.overrun();
}

}  // namespace

void KvProgramBank::scan(std::string root) {
  folders.clear();
  midiFolder = -1;
  if (!isAbsolutePath(root)) return;
  ensureTrailingBackslash(root);
  for (const FolderEntry& entry : listFolder(root).value_or(std::vector<FolderEntry>())) {
    if (!entry.isFolder) continue;
    if (folders.size() == kFolders) break;
    if (entry.name == kMidiFolder) midiFolder = folderCount();
    folders.push_back({entry.name, presetsOf(root + entry.name + '\\')});
  }
}

std::deque<BankPreset> KvProgramBank::presetsOf(const std::string& folder) const {
  std::deque<BankPreset> presets;
  for (const std::string& file : filesWithExtension(folder, extension)) {
    if (presets.size() == kPresets) break;
    BankPreset& preset = presets.emplace_back();
    preset.name = baseName(file);
    if (!readChunkFile(folder + file, preset.chunk) || !startsLikeAPreset(preset.chunk)) {
      presets.pop_back();
    }
  }
  return presets;
}

const KvProgramBank::Folder* KvProgramBank::at(int folder) const ZUM_REALTIME {
  const auto place = static_cast<std::size_t>(folder);
  return folder >= 0 && place < folders.size() ? &folders[place] : nullptr;
}

const BankPreset* KvProgramBank::get(int folder, int index) const ZUM_REALTIME {
  const Folder* found = at(folder);
  const auto place = static_cast<std::size_t>(index);
  return found != nullptr && index >= 0 && place < found->presets.size() ? &found->presets[place]
                                                                         : nullptr;
}

int KvProgramBank::presetCount(int folder) const {
  const Folder* found = at(folder);
  return found != nullptr ? static_cast<int>(found->presets.size()) : 0;
}

int KvProgramBank::findFolder(std::string_view name) const {
  for (std::size_t i = 0; i < folders.size(); ++i) {
    if (folders[i].name == name) return static_cast<int>(i);
  }
  return -1;
}

int KvProgramBank::findPreset(int folder, std::string_view name) const {
  for (int i = 0; i < presetCount(folder); ++i) {
    if (get(folder, i)->name == name) return i;
  }
  return -1;
}

std::string_view KvProgramBank::folderName(int folder) const {
  const Folder* found = at(folder);
  return found != nullptr ? std::string_view(found->name) : kNoPreset;
}

std::string_view KvProgramBank::presetName(int folder, int index) const {
  const BankPreset* preset = get(folder, index);
  return preset != nullptr ? std::string_view(preset->name) : kNoPreset;
}

}  // namespace zum
