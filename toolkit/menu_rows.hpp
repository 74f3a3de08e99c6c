// The rows of a menu as data, and in them the rows of its sub-menus.
#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "toolkit/menu_user_entry.hpp"

namespace zum {

class MenuRows;

/// A row that can be selected.
struct MenuChoice {
  MenuRows* rows;
  int row;
};

struct KvOptionMenuEntryInfo {
  std::string text;
  std::unique_ptr<MenuRows> subMenu;  // opens instead of being selected; null for a plain row
  std::unique_ptr<KvOptionMenuUserEntry> userEntry;
  std::optional<MenuChoice> target;  // that it stands for: the same row, found or listed elsewhere
  bool isMarked = false;             // as what is in use
  bool isFavourite = false;
  bool isTyped = false;  // a header that shows what is typed
  bool enabled = true;
  bool isHeader = false;  // cannot be selected; without a text it is a line

  bool isChoice() const { return enabled && !isHeader && subMenu == nullptr; }
};

/// [main] One of them may be selected.
class MenuRows {
 public:
  static constexpr std::size_t kMost = 1024;

  /// An index of -1 appends. False for a row too many, or one that cannot be there.
  bool tryInsert(KvOptionMenuEntryInfo row, int index);
  bool tryAppend(std::string text);
  bool tryAppend(std::string text, std::unique_ptr<MenuRows> subMenu);
  /// The selection stays on its row. False for one that is not there.
  bool remove(int index);
  void clear();

  int size() const { return static_cast<int>(rows.size()); }
  bool has(int index) const { return index >= 0 && index < size(); }
  KvOptionMenuEntryInfo& operator[](int index) { return rows[static_cast<std::size_t>(index)]; }
  const KvOptionMenuEntryInfo& operator[](int index) const {
    return rows[static_cast<std::size_t>(index)];
  }
  /// What the row stands for, itself or another one.
  MenuChoice meant(int index) { return (*this)[index].target.value_or(MenuChoice{this, index}); }
  const KvOptionMenuEntryInfo& meantInfo(int index) const {
    const KvOptionMenuEntryInfo& row = (*this)[index];
    return row.target ? (*row.target->rows)[row.target->row] : row;
  }
  /// -1 for none.
  int find(std::string_view text) const;
  /// Adds the choices from a row on, those of sub-menus too where `deep`.
  void addChoices(std::vector<MenuChoice>& found, int from, bool deep);

  /// A row that is not there selects none.
  void select(int index) { selectedRow = has(index) ? index : -1; }
  int selected() const { return selectedRow; }

  std::string folder;           // whose files they are, with a separator at its end; or none
  float scrollPosition = 0.0F;  // of their list when it was open last, 0 to 1

 private:
  std::vector<KvOptionMenuEntryInfo> rows;
  int selectedRow = -1;
};

}  // namespace zum
