#include "toolkit/menu_rows.hpp"

#include <algorithm>
#include <utility>

namespace zum {

bool MenuRows::tryInsert(KvOptionMenuEntryInfo row, int index) {
  if (rows.size() >= kMost || index < -1 || index > size()) return false;
  if (index < 0) index = size();
  rows.insert(rows.begin() + index, std::move(row));
  if (selectedRow >= index) ++selectedRow;
  return true;
}

bool MenuRows::tryAppend(std::string text) { return tryAppend(std::move(text), nullptr); }

bool MenuRows::tryAppend(std::string text, std::unique_ptr<MenuRows> subMenu) {
  KvOptionMenuEntryInfo row;
  row.text = std::move(text);
  row.subMenu = std::move(subMenu);
  return tryInsert(std::move(row), -1);
}

bool MenuRows::remove(int index) {
  if (!has(index)) return false;
  rows.erase(rows.begin() + index);
  if (selectedRow > index) --selectedRow;
  selectedRow = std::min(selectedRow, size() - 1);
  return true;
}

void MenuRows::clear() {
  rows.clear();
  selectedRow = -1;
}

int MenuRows::find(std::string_view text) const {
  const auto row = std::ranges::find(rows, text, &KvOptionMenuEntryInfo::text);
  return row != rows.end() ? static_cast<int>(row - rows.begin()) : -1;
}

void MenuRows::addChoices(std::vector<MenuChoice>& found, int from, bool deep) {
  for (int row = from; row < size(); ++row) {
    const KvOptionMenuEntryInfo& info = (*this)[row];
    if (info.isChoice()) found.push_back({this, row});
    if (info.subMenu != nullptr && deep) info.subMenu->addChoices(found, 0, deep);
  }
}

}  // namespace zum
