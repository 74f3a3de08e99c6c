// What a user types while the list of a menu over folders is open, and the rows that match it.
#pragma once

#include <string>

#include "platform/input.hpp"
#include "toolkit/menu_rows.hpp"

namespace zum {

/// What a row is called out of its folder: "Bass / Deep", below the folder of `root`.
std::string menuLabel(const MenuRows& root, const MenuRows& rows, int row);

/// [main]
class MenuFinder {
 public:
  bool isActive() const { return !text.empty(); }
  /// Adds a letter or takes the last one away. False for any other key.
  bool type(const WindowKey& key);
  void clear();
  /// Makes the rows anew: the text, then at most `most` files that match it, of all folders below
  /// `tree`, whose own begin at `from`. Names that begin with the text come first. Capitals count
  /// as small letters.
  void look(MenuRows& tree, int from, int most);
  MenuRows& rows() { return found; }

 private:
  std::string text;
  MenuRows found;
};

}  // namespace zum
