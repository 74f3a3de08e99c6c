#include "state/preset_search.hpp"

#include <set>

#include "platform/files.hpp"
#include "state/path_text.hpp"

namespace zum {
namespace {

constexpr int kMostEntries = 100000;  // of a tree; a host waits for this search

class Search {
 public:
  explicit Search(const std::string& wantedName) : wanted(wantedName) {}

  FoundPreset in(std::string folder) {
    const auto id = folderId(folder);
    if (!id || !visited.insert(*id).second) return {};
    const auto entries = listFolder(folder);
    if (!entries) return {};
    ensureTrailingBackslash(folder);
    for (const FolderEntry& entry : *entries) {
      if (--entriesLeft < 0) return {};
      if (entry.isFolder) {
        FoundPreset found = in(folder + entry.name);
        if (!found.path.empty()) return found;
      } else if (entry.name == wanted) {
        const std::string path = folder + entry.name;
        return {path, std::string(folderName(path))};
      }
    }
    return {};
  }

 private:
  const std::string& wanted;
  std::set<FolderId> visited;
  int entriesLeft = kMostEntries;
};

}  // namespace

FoundPreset findPresetFile(const std::string& root, const std::string& fileName) {
  return Search(fileName).in(root);
}

}  // namespace zum
