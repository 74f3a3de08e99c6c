// All presets of the tree's folders, whole and in memory, so that a program change needs no file.
// Filled by the effect object, which never changes it afterwards.
#pragma once

#include <deque>
#include <string>
#include <string_view>

#include "engine/realtime.hpp"
#include "state/chunk.hpp"

namespace zum {

struct BankPreset {
  KvChunk chunk;     // holds the whole file
  std::string name;  // of the file, without its extension
};

class KvProgramBank {
 public:
  static constexpr int kFolders = 128;
  static constexpr int kPresets = 128;  // of a folder
  static constexpr const char* kMidiFolder = "Midi Programs";
  static constexpr const char* kNoPreset = "empty";

  explicit KvProgramBank(std::string fileExtension) : extension(std::move(fileExtension)) {}

  /// [main] Reads the first folders below the root, and the first presets of each. Files that are
  /// no presets are left out without a word. A root that is empty or relative gives an empty bank.
  void scan(std::string root);

  // [any] once scanned. Null, -1 or an empty count for what is not there.
  const BankPreset* get(int folder, int index) const ZUM_REALTIME;
  int folderCount() const { return static_cast<int>(folders.size()); }
  int presetCount(int folder) const;
  int findFolder(std::string_view name) const;
  int findPreset(int folder, std::string_view name) const;
  std::string_view folderName(int folder) const;
  std::string_view presetName(int folder, int index) const;
  /// A preset of the folder "Midi Programs".
  const BankPreset* getMidiProgram(int index) const ZUM_REALTIME { return get(midiFolder, index); }

 private:
  struct Folder {
    std::string name;
    std::deque<BankPreset> presets;  // chunks do not move
  };
  const Folder* at(int folder) const ZUM_REALTIME;
  std::deque<BankPreset> presetsOf(const std::string& folder) const;

  std::string extension;
  std::deque<Folder> folders;
  int midiFolder = -1;
};

}  // namespace zum
