// The rows of a menu over a folder: fixed ones, then its sub-folders as sub-menus, then its files
// without their extension.
#pragma once

#include <cstdint>
#include <string>

#include "toolkit/menu_rows.hpp"

namespace zum {

/// [main]
class FolderRows {
 public:
  static constexpr int kMostFiles = 128;  // of a folder

  /// Bits of `menu_style` tell which fixed rows there are, and whether sub-folders.
  explicit FolderRows(std::uint32_t menuStyle) : style(menuStyle) {}

  /// True when it is another one than before.
  bool setFolder(const std::string& path);
  void setExtension(std::string ending) { extension = std::move(ending); }
  const std::string& getExtension() const { return extension; }
  /// Appends what the folder holds now. The answer is how many rows are fixed.
  int read(MenuRows& rows) const;
  /// Of the file behind a row, also in a sub-menu.
  static std::string path(const MenuRows& rows, int row, const std::string& extension) {
    return rows.folder + rows[row].text + "." + extension;
  }

 private:
  struct Walk;
  int addFixedRows(MenuRows& rows) const;
  void addContent(MenuRows& rows, Walk& walk) const;
  void addSubFolders(MenuRows& rows, Walk& walk) const;

  std::uint32_t style;
  std::string folder;
  std::string extension;
};

}  // namespace zum
