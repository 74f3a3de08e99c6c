// [main] The effect's bank as a host shows it: one list of all presets, folder by folder.
#pragma once

#include <string>
#include <string_view>
#include <vector>

#include "core/uni_client.hpp"

namespace zum::vst3 {

/// The list stays as the bank was when the effect was made: hosts keep positions in it. What plays
/// is the bank's present program of that name.
class ProgramList {
 public:
  explicit ProgramList(KvUniClient& played);

  int count() const ZUM_REALTIME { return static_cast<int>(entries.size()); }
  /// "Folder/Name"; empty for a position that there is not.
  std::string nameOf(int index) const;
  /// -1 for a name that there is not.
  int find(std::string_view name) const;

  // Values of the program's parameter, 0 to 1.
  int stepCount() const ZUM_REALTIME { return count() > 1 ? count() - 1 : 0; }
  int indexOf(double value) const ZUM_REALTIME;
  double valueOf(int index) const ZUM_REALTIME;

  /// [any] Where the effect stands.
  int current() const ZUM_REALTIME;
  bool play(int index);
  /// [audio] Between two parts of a block. False where only the main thread can.
  bool tryPlay(int index) ZUM_REALTIME;

 private:
  struct Entry {
    std::string folder;
    std::string name;
  };
  bool has(int index) const ZUM_REALTIME { return index >= 0 && index < count(); }
  const Entry& at(int index) const ZUM_REALTIME { return entries[static_cast<std::size_t>(index)]; }

  KvUniClient& effect;
  std::vector<Entry> entries;
  std::vector<int> firstOfFolder;  // and, behind the last, the count
};

}  // namespace zum::vst3
