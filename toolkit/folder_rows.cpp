#include "toolkit/folder_rows.hpp"

#include <algorithm>
#include <utility>
#include <vector>

#include "platform/files.hpp"
#include "state/fileio.hpp"
#include "state/path_text.hpp"
#include "toolkit/menu_style.hpp"

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
    {menu_style::kSelectFolder, "Select Folder", "[Select Folder]"},
    {menu_style::kSaveEntry, "Save Preset", "[Save Preset]"},
    {menu_style::kLoadEntry, "Load Preset", "[Load Preset]"},
};

}  // namespace

/// From the root down to where the walk is: a link may lead back up.
struct FolderRows::Walk {
  std::vector<FolderId> above;
  int read = 0;
};

bool FolderRows::setFolder(const std::string& path) {
  std::string fresh = path;
  ensureTrailingBackslash(fresh);
  return std::exchange(folder, fresh) != fresh;
}

int FolderRows::read(MenuRows& rows) const {
  const int fixed = addFixedRows(rows);
  rows.folder = folder;
  Walk walk;
  addContent(rows, walk);
  return fixed;
}

int FolderRows::addFixedRows(MenuRows& rows) const {
  for (const FixedRow& row : kFixedRows) {
    if ((style & row.bit) == 0) continue;
    rows.tryAppend((style & menu_style::kBrackets) != 0 ? row.inBrackets : row.text);
  }
  if ((style & menu_style::kPresetsHeader) != 0) {
    KvOptionMenuEntryInfo header;
    header.text = "--Presets--";
    header.isHeader = true;
    header.enabled = false;
    rows.tryInsert(std::move(header), -1);
  }
  return rows.size();
}

void FolderRows::addContent(MenuRows& rows, Walk& walk) const {
  const auto id = folderId(rows.folder);
  const bool isNew = id && std::ranges::find(walk.above, *id) == walk.above.end();
  if (rows.folder.empty() || !isNew || ++walk.read > kMostFolders) return;
  if ((style & menu_style::kSubFolders) != 0 && walk.above.size() < kDeepest) {
    walk.above.push_back(*id);
    addSubFolders(rows, walk);
    walk.above.pop_back();
  }
  KvFileio files;
  int count = 0;
  const KvFileio::Name* const names = files.listFiles(rows.folder, count);
  const std::string ending = "." + extension;
  int added = 0;
  for (int i = 0; names != nullptr && i < count && added < kMostFiles; ++i) {
    const std::string_view file = names[i].data();
    if (!file.ends_with(ending)) continue;
    rows.tryAppend(std::string(file.substr(0, file.size() - ending.size())));
    ++added;
  }
}

void FolderRows::addSubFolders(MenuRows& rows, Walk& walk) const {
  KvFileio files;
  int count = 0;
  const KvFileio::Name* const names = files.listAll(rows.folder, count);
  for (int i = 0; names != nullptr && i < count; ++i) {
    if (!files.isFolder(i)) continue;
    const std::string name = names[i].data();
    auto inner = std::make_unique<MenuRows>();
    inner->folder = rows.folder + name;
    ensureTrailingBackslash(inner->folder);
    addContent(*inner, walk);
    if (!rows.tryAppend(name, std::move(inner))) return;
  }
}

}  // namespace zum
