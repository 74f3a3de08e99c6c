// All presets of the tree's folders, in memory, so that a program change needs no file. Filled once
// and never changed afterwards: another bank takes its place. The effects of a process share what
// is the same (state/bank_shelf.hpp).
#pragma once

#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "engine/realtime.hpp"
#include "platform/files.hpp"
#include "state/chunk.hpp"
#include "state/preset_format.hpp"
#include "state/preset_needs.hpp"

namespace zum {

struct BankPreset {
  KvChunk chunk;      // the whole file; empty for one that is refused
  std::string name;   // of the file, without its extension
  PresetFault fault;  // why it is refused
};

class KvProgramBank {
 public:
  static constexpr int kFolders = 128;
  static constexpr int kPresets = 128;  // of a folder
  /// Limit for all presets together, those that are refused included, so that a scan has an end.
  static constexpr std::size_t kMostBytes = std::size_t{32} << 20U;
  static constexpr const char* kMidiFolder = "Midi Programs";
  static constexpr const char* kNoPreset = "empty";

  /// Why a preset is refused, and what room it asks for.
  using Check = std::function<PresetFault(const KvChunk&, PresetNeeds&)>;

  explicit KvProgramBank(std::string fileExtension) : extension(std::move(fileExtension)) {}

  /// [main] Reads the first folders below the root, and the first presets of each. Files of another
  /// kind are left out without a word; a preset that the check refuses keeps its place. A root that
  /// is empty or relative gives an empty bank.
  /// Folders in which no file has changed since `known` read them are shared with it.
  void scan(std::string root, const Check& check, const KvProgramBank* known = nullptr);
  /// [main] Reads the tree of `older` again after `file` was written: only the folder of that file,
  /// and what there was no room for. All other folders are shared with `older`.
  void scanBehind(const KvProgramBank& older, const std::string& file, const Check& check);

  // [any] once scanned. Null, -1 or an empty count for what is not there.
  const BankPreset* get(int folder, int index) const ZUM_REALTIME;
  int folderCount() const ZUM_REALTIME { return static_cast<int>(folders.size()); }
  int presetCount(int folder) const ZUM_REALTIME;
  int findFolder(std::string_view name) const ZUM_REALTIME;
  int findPreset(int folder, std::string_view name) const ZUM_REALTIME;
  std::string_view folderName(int folder) const;
  std::string_view presetName(int folder, int index) const;
  /// A preset of the folder "Midi Programs".
  const BankPreset* getMidiProgram(int index) const ZUM_REALTIME { return get(midiFolder, index); }
  /// Folder and name of the first preset that there was no room for; it and all behind it are not
  /// in the bank.
  const std::string& firstLeftOut() const { return leftOut; }
  /// Room for any one of all presets that are not refused.
  const PresetNeeds& needs() const { return allNeeds; }
  const std::string& root() const { return rootPath; }
  /// Every folder is shared, and none is more.
  bool isTheSameAs(const KvProgramBank& other) const {
    return rootPath == other.rootPath && folders == other.folders && leftOut == other.leftOut;
  }

 private:
  struct ReadFile {
    std::string name;
    FileStamp stamp{};  // zeros for one that could not be opened
  };
  struct Folder {
    std::string name;
    std::deque<BankPreset> presets;  // chunks do not move
    std::vector<ReadFile> files;     // as they were read
    std::size_t filesThere = 0;      // of which those behind the last preset are not read
    FileStamp stamp{};               // of the folder, ahead of its listing; zeros for none
    PresetNeeds needs;               // of all its presets
    std::size_t bytes = 0;           // size of its presets as files
    bool isWhole = false;            // nothing was left out
    bool isSettled = true;           // all stamps are
  };
  /// Says of a folder of an older bank whether it is still as it is on disk.
  using Holds = std::function<bool(const Folder&)>;
  const Folder* at(int folder) const ZUM_REALTIME;
  void fill(const Check& check, const KvProgramBank* older, const Holds& holds);
  /// No file came, went or changed since. Only a folder whose own stamp says nothing is listed.
  bool isAsRead(const Folder& folder) const;
  /// Reads as many presets of a folder as fit into `room` bytes.
  std::shared_ptr<const Folder> read(const std::string& name, std::size_t room, const Check& check);

  std::string extension;
  std::string rootPath;
  std::deque<std::shared_ptr<const Folder>> folders;
  int midiFolder = -1;
  std::string leftOut;
  PresetNeeds allNeeds;
};

}  // namespace zum
