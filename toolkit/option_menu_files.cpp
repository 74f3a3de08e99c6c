// A menu over a folder of files: its fixed rows, its sub-folders, and the walk from file to file.

#include <algorithm>
#include <vector>

#include "platform/files.hpp"
#include "state/fileio.hpp"
#include "state/path_text.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/option_menu.hpp"

namespace zum {
namespace {

constexpr std::size_t kDeepest = 8;  // folders in folders
constexpr int kMostFolders = 1000;   // a user may choose the whole disk

struct FixedRow {
  std::uint32_t bit;
  const char* text;
  const char* inBrackets;
};
constexpr FixedRow kFixedRows[] = {
    {KvOptionMenu::kSelectFolder, "Select Folder", "[Select Folder]"},
    {KvOptionMenu::kSaveEntry, "Save Preset", "[Save Preset]"},
    {KvOptionMenu::kLoadEntry, "Load Preset", "[Load Preset]"},
};

}  // namespace

/// From the root down to where the walk is: a link may lead back up.
struct KvOptionMenu::FolderWalk {
  std::vector<FolderId> above;
  int read = 0;
};

void KvOptionMenu::setFolder(const std::string& path, std::string extension) {
  fileExtension = std::move(extension);
  rescan(path.c_str());
}

void KvOptionMenu::rescan(const char* folder) {
  if ((style & kFolder) == 0) return;
  if (folder != nullptr) {
    std::string fresh = folder;
    ensureTrailingBackslash(fresh);
    if (fresh != folderPath) chosenPath.clear();
    folderPath = std::move(fresh);
  }
  FolderWalk walk;
  fill(walk);
}

void KvOptionMenu::fill(FolderWalk& walk) {
  ensureTrailingBackslash(folderPath);
  removeAllEntries();
  addFixedRows();
  const auto id = folderId(folderPath);
  const bool isNew = id && std::ranges::find(walk.above, *id) == walk.above.end();
  if (folderPath.empty() || !isNew || ++walk.read > kMostFolders) return;
  if ((style & kSubFolders) != 0 && walk.above.size() < kDeepest) {
    walk.above.push_back(*id);
    addSubFolders(walk);
    walk.above.pop_back();
  }
  KvFileio files;
  int count = 0;
  const KvFileio::Name* const names = files.listFiles(folderPath, count);
  const std::string ending = "." + fileExtension;
  int added = 0;
  for (int i = 0; names != nullptr && i < count && added < kMostFiles; ++i) {
    const std::string_view file = names[i].data();
    if (!file.ends_with(ending)) continue;
    addEntry(std::string(file.substr(0, file.size() - ending.size())), -1, false);
    ++added;
  }
}

void KvOptionMenu::addFixedRows() {
  for (const FixedRow& row : kFixedRows) {
    if ((style & row.bit) == 0) continue;
    addEntry((style & kBrackets) != 0 ? row.inBrackets : row.text, -1, false);
  }
  if ((style & kPresetsHeader) != 0) {
    addEntry("--Presets--", -1, true);
    setEntryEnabled(getNbEntries() - 1, false);
  }
  fixedCount = getNbEntries();
}

// A sub-menu holds files alone: the fixed rows are the root's.
void KvOptionMenu::addSubFolders(FolderWalk& walk) {
  constexpr std::uint32_t kPassedOn =
      kFolder | kSubFolders | kSteps | kStepsThroughSubMenus | kInherited;
  KvFileio files;
  int count = 0;
  const KvFileio::Name* const names = files.listAll(folderPath, count);
  for (int i = 0; names != nullptr && i < count; ++i) {
    if (!files.isFolder(i)) continue;
    const std::string folder = names[i].data();
    auto* const menu = new KvOptionMenu({}, this, getTag(), getFrame(), folder, style & kPassedOn);
    menu->look = look;
    menu->font = font;
    menu->textColor = textColor;
    menu->backgroundColor = backgroundColor;
    menu->listOffsetX = 0;
    menu->listOffsetY = -look.itemHeight;
    menu->folderPath = folderPath + folder;
    menu->fileExtension = fileExtension;
    menu->fill(walk);
    if (!addEntry(menu, folder)) return;
  }
}

std::string KvOptionMenu::filePath(int row) const {
  return folderPath + entry(row).text + "." + fileExtension;
}

bool KvOptionMenu::getFileName(std::string& path, const std::string& extension) const {
  if (!chosenPath.empty()) {
    path = chosenPath;
    return true;
  }
  if (!has(selectedEntry) || selectedEntry < fixedCount || entry(selectedEntry).subMenu) {
    return false;
  }
  path = folderPath + entry(selectedEntry).text + "." + extension;
  return true;
}

// However deep the row lay, who listens to the root hears of one choice.
void KvOptionMenu::choosePath(const std::string& path, const std::string& text) {
  remember();
  const Held<KvOptionMenu> alive(this);  // what listens may fill the menus anew
  chosenPath = path;
  shownText = text;
  selectedEntry = has(fixedCount) ? fixedCount : -1;
  CControl::setValue(static_cast<float>(fixedCount));
  setDirty(true);
  reportChoice();
}

void KvOptionMenu::reportChoice() {
  const bool isFile = parentMenu == nullptr && (style & kFolder) != 0 &&
                      getValue() >= static_cast<float>(fixedCount);
  const bool brackets = editBracket && parentMenu == nullptr;
  if (brackets) beginEdit();
  if (isFile) getFrame().setCursor(WindowCursor::hourglass);
  report();
  if (onSelect != nullptr) onSelect->menuChose(static_cast<int>(getValue()));
  if (isFile) getFrame().setCursor(WindowCursor::arrow);
  if (brackets) endEdit();
}

void KvOptionMenu::stepInRing(int direction) {
  const int rows = getNbEntries() - fixedCount;
  if (rows < 1) return;
  const int from = std::max(selectedEntry - fixedCount, direction > 0 ? -1 : 0);
  for (int i = 1; i <= rows; ++i) {
    const int row = fixedCount + (((from + direction * i) % rows) + rows) % rows;
    if (!entry(row).isChoice()) continue;
    setCurrent(row);
    return reportChoice();
  }
}

void KvOptionMenu::stepPreset(int direction) {
  struct Place {
    KvOptionMenu* menu;
    int row;
  };
  std::vector<Place> places;
  const auto collect = [this, &places](auto&& self, KvOptionMenu& menu) -> void {
    for (int row = menu.fixedCount; row < menu.getNbEntries(); ++row) {
      const KvOptionMenuEntryInfo& info = menu.entry(row);
      if (info.isChoice()) places.push_back({&menu, row});
      if (info.subMenu && (style & kStepsThroughSubMenus) != 0) self(self, *info.subMenu.get());
    }
  };
  collect(collect, *this);
  if (places.empty()) return;
  std::string now;
  const bool chosen = getFileName(now, fileExtension);
  const auto at = std::ranges::find_if(places, [&](const Place& place) {
    return chosen && (style & kFolder) != 0 ? place.menu->filePath(place.row) == now
                                            : place.menu == this && place.row == selectedEntry;
  });
  const auto last = static_cast<int>(places.size()) - 1;
  const int from =
      at != places.end() ? static_cast<int>(at - places.begin()) : (direction > 0 ? -1 : last + 1);
  const Place& to = places[static_cast<std::size_t>(std::clamp(from + direction, 0, last))];
  if (at != places.end() && &to == &*at) return;
  if (to.menu != this) return choosePath(to.menu->filePath(to.row), to.menu->entry(to.row).text);
  setCurrent(to.row);
  reportChoice();
}

}  // namespace zum
