// A menu over folders: its files, the one in use, what a user looks for, and what he has marked.

#include <algorithm>
#include <utility>

#include "toolkit/control_frame.hpp"
#include "toolkit/menu_style.hpp"
#include "toolkit/option_menu.hpp"

namespace zum {

void KvOptionMenu::setFolder(const std::string& path, std::string extension) {
  folder.setExtension(std::move(extension));
  rescan(path.c_str());
}

void KvOptionMenu::rescan(const char* path) {
  if (!hasStyle(menu_style::kFolder)) return;
  if (path != nullptr && folder.setFolder(path)) chosenPath.clear();
  removeAllEntries();
  fixedCount = folder.read(rows);
}

bool KvOptionMenu::getFileName(std::string& path, const std::string& extension) const {
  if (!chosenPath.empty()) {
    path = chosenPath;
    return true;
  }
  const int row = rows.selected();
  if (!rows.has(row) || row < fixedCount || rows[row].subMenu != nullptr) return false;
  path = FolderRows::path(rows, row, extension);
  return true;
}

bool KvOptionMenu::isFile(const MenuChoice& at) const {
  const bool isFixed = at.rows == &rows && at.row < fixedCount;
  return hasStyle(menu_style::kFolder) && !isFixed && !at.rows->folder.empty();
}

// ---- the one in use

/// Appends the way to the first row that fits, one number a list.
template <class Fits>
bool KvOptionMenu::findWay(const MenuRows& shown, const Fits& fits, std::vector<int>& way) const {
  for (int row = &shown == &rows ? fixedCount : 0; row < shown.size(); ++row) {
    const MenuRows* const inner = shown[row].subMenu.get();
    if (inner == nullptr && !fits(shown, row)) continue;
    way.push_back(row);
    if (inner == nullptr || (!inner->folder.empty() && findWay(*inner, fits, way))) return true;
    way.pop_back();
  }
  return false;
}

// Files go by the name that is shown, as arrows and hosts load them, too; of several that have it,
// the one that was loaded as a file comes first.
std::vector<int> KvOptionMenu::wayToCurrent() const {
  std::vector<int> way;
  if (!hasStyle(menu_style::kFolder)) return way;
  const std::string current = currentText();
  const auto isNamed = [&](const MenuRows& shown, int row) { return shown[row].text == current; };
  const auto isLoaded = [&](const MenuRows& shown, int row) {
    return isNamed(shown, row) && FolderRows::path(shown, row, folder.getExtension()) == shownPath;
  };
  if (!findWay(rows, isLoaded, way)) findWay(rows, isNamed, way);
  return way;
}

// It also marks the way to one in a sub-menu.
bool KvOptionMenu::isInUse(const MenuRows& shown, int row) const {
  const KvOptionMenuEntryInfo& info = shown[row];
  if (!hasStyle(menu_style::kFolder)) {
    return info.isMarked || (row == shown.selected() && info.isChoice());
  }
  const std::string current = currentText();
  const auto isNamed = [&current](const MenuRows& in, int at) {
    return in.meantInfo(at).text == current;
  };
  if (info.subMenu == nullptr) return (&shown != &rows || row >= fixedCount) && isNamed(shown, row);
  std::vector<int> way;
  return findWay(*info.subMenu, isNamed, way);
}

// ---- what is looked for

void KvOptionMenu::showFound() {
  const int width = list->getRect().width();
  takeListAway();
  if (!finder.isActive()) {
    showList(rows, width);
    return list->reveal(wayToCurrent());
  }
  constexpr int kMost = 20;  // files
  finder.look(rows, fixedCount, kMost);
  showList(finder.rows(), width);
  list->light(1);  // a header if there is none
}

bool KvOptionMenu::pressFileKey(const WindowKey& key) {
  if (!hasStyle(menu_style::kFolder)) return false;
  if (key.virt == keys::kInsert) {
    if (const auto lit = list->litChoice()) toggleFavourite(*lit);
    return true;
  }
  if (key.virt == keys::kEscape && finder.isActive()) {
    finder.clear();
  } else if (!finder.type(key)) {
    return false;
  }
  showFound();
  return true;
}

// ---- favourites

std::string KvOptionMenu::nameOf(const MenuChoice& file) const {
  const std::string& in = file.rows->folder;
  const std::size_t above = in.starts_with(rows.folder) ? rows.folder.size() : 0;
  return in.substr(above) + (*file.rows)[file.row].text;
}

// What was read before may have been marked in another window since.
void KvOptionMenu::showFavourites() {
  if (!favourites.read) return;
  const int before = rows.selected();
  const MenuRows* const first = rows.has(fixedCount) ? rows[fixedCount].subMenu.get() : nullptr;
  if (first != nullptr && first->folder.empty()) rows.remove(fixedCount);
  const MenuFavourites marked(favourites.read());
  KvOptionMenuEntryInfo row;
  row.text = "Favourites";
  row.subMenu = std::make_unique<MenuRows>();
  MenuRows& inside = *row.subMenu;
  const bool hasRoom = rows.tryInsert(std::move(row), fixedCount);
  std::vector<MenuChoice> files;
  rows.addChoices(files, fixedCount, true);
  for (const MenuChoice& file : files) {
    const bool isOne = marked.has(nameOf(file));
    (*file.rows)[file.row].isFavourite = isOne;
    if (!isOne || !hasRoom) continue;
    KvOptionMenuEntryInfo info;
    info.text = menuLabel(rows, *file.rows, file.row);
    info.target = file;
    inside.tryInsert(std::move(info), -1);
  }
  if (hasRoom && inside.size() == 0) rows.remove(fixedCount);
  if (rows.selected() != before) showSelected();
}

void KvOptionMenu::toggleFavourite(const MenuChoice& at) {
  const MenuChoice file = at.rows->meant(at.row);
  if (!favourites.read || !isFile(file)) return;
  MenuFavourites marked(favourites.read());
  const std::string marks = nameOf(file);
  if (!marked.toggle(marks)) return;
  favourites.write(marked.text());
  (*file.rows)[file.row].isFavourite = marked.has(marks);
  setDirty(true);
}

}  // namespace zum
