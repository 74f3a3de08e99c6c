#include "state/program_bank.hpp"

#include <algorithm>
#include <span>
#include <vector>

#include "state/path_text.hpp"
#include "state/preset_files.hpp"

namespace zum {
namespace {

/// True for the header and the first words of a program of this product.
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

void KvProgramBank::scan(std::string root, const Check& check, const KvProgramBank* known) {
  rootPath = std::move(root);
  if (!rootPath.empty()) ensureTrailingBackslash(rootPath);
  if (known != nullptr && known->rootPath != rootPath) known = nullptr;
  fill(check, known, [this](const Folder& folder) { return isAsRead(folder); });
}

void KvProgramBank::scanBehind(const KvProgramBank& older, const std::string& file,
                               const Check& check) {
  rootPath = older.rootPath;
  std::string written = file;
  cutToFolder(written);
  fill(check, &older, [this, id = folderId(written)](const Folder& folder) {
    return folderId(rootPath + folder.name) != id;
  });
}

void KvProgramBank::fill(const Check& check, const KvProgramBank* older, const Holds& holds) {
  folders.clear();
  leftOut.clear();
  allNeeds = {};
  midiFolder = -1;
  if (!isAbsolutePath(rootPath)) return;
  std::size_t room = kMostBytes;
  for (const FolderEntry& entry : listFolder(rootPath).value_or(std::vector<FolderEntry>())) {
    if (!entry.isFolder) continue;
    if (folders.size() == kFolders) break;
    if (entry.name == kMidiFolder) midiFolder = folderCount();
    const int known = older != nullptr ? older->findFolder(entry.name) : -1;
    std::shared_ptr<const Folder> folder;
    if (known >= 0) folder = older->folders[static_cast<std::size_t>(known)];
    if (folder == nullptr || !folder->isWhole || !leftOut.empty() || folder->bytes > room ||
        !holds(*folder)) {
      folder = read(entry.name, room, check);
    }
    room -= folder->bytes;
    allNeeds.include(folder->needs);
    folders.push_back(std::move(folder));
  }
}

bool KvProgramBank::isAsRead(const Folder& folder) const {
  if (!folder.isSettled) return false;
  const std::string path = rootPath + folder.name + '\\';
  if (folder.stamp == FileStamp{} || folderStamp(path) != folder.stamp) {
    const std::vector<std::string> there = filesWithExtension(path, extension);
    if (there.size() != folder.filesThere ||
        !std::ranges::equal(folder.files, std::span(there).first(folder.files.size()), {},
                            &ReadFile::name)) {
      return false;
    }
  }
  return std::ranges::all_of(folder.files, [&](const ReadFile& read) {
    return read.stamp == fileStamp(path + read.name).value_or(FileStamp{});
  });
}

std::shared_ptr<const KvProgramBank::Folder> KvProgramBank::read(const std::string& name,
                                                                 std::size_t room,
                                                                 const Check& check) {
  const auto folder = std::make_shared<Folder>();
  folder->name = name;
  if (!leftOut.empty()) return folder;
  const std::string path = rootPath + name + '\\';
  const FileStamp ahead = folderStamp(path).value_or(FileStamp{});
  if (isSettled(ahead)) folder->stamp = ahead;
  const std::vector<std::string> there = filesWithExtension(path, extension);
  folder->filesThere = there.size();
  for (const std::string& file : there) {
    if (folder->presets.size() == kPresets) break;
    ReadFile& read = folder->files.emplace_back();
    read.name = file;
    BankPreset& preset = folder->presets.emplace_back();
    preset.name = baseName(file);
    const ChunkFile found = readChunkFile(path + file, preset.chunk, &read.stamp);
    folder->isSettled = folder->isSettled && isSettled(read.stamp);
    if (found != ChunkFile::read || !startsLikeAPreset(preset.chunk)) {
      folder->presets.pop_back();
      continue;
    }
    const std::size_t bytes = std::size_t{4} * preset.chunk.dataWords();
    if (folder->bytes + bytes > room) {
      folder->presets.pop_back();
      leftOut = name;
      leftOut.append(1, '\\').append(file);
      return folder;
    }
    folder->bytes += bytes;
    PresetNeeds needs;
    preset.fault = check(preset.chunk, needs);
    if (preset.fault) {
      preset.chunk.adopt(nullptr, 0);
    } else {
      folder->needs.include(needs);
    }
  }
  folder->isWhole = true;
  return folder;
}

const KvProgramBank::Folder* KvProgramBank::at(int folder) const ZUM_REALTIME {
  const auto place = static_cast<std::size_t>(folder);
  return folder >= 0 && place < folders.size() ? folders[place].get() : nullptr;
}

const BankPreset* KvProgramBank::get(int folder, int index) const ZUM_REALTIME {
  const Folder* found = at(folder);
  const auto place = static_cast<std::size_t>(index);
  return found != nullptr && index >= 0 && place < found->presets.size() ? &found->presets[place]
                                                                         : nullptr;
}

int KvProgramBank::presetCount(int folder) const ZUM_REALTIME {
  const Folder* found = at(folder);
  return found != nullptr ? static_cast<int>(found->presets.size()) : 0;
}

int KvProgramBank::findFolder(std::string_view name) const ZUM_REALTIME {
  for (std::size_t i = 0; i < folders.size(); ++i) {
    if (folders[i]->name == name) return static_cast<int>(i);
  }
  return -1;
}

int KvProgramBank::findPreset(int folder, std::string_view name) const ZUM_REALTIME {
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
