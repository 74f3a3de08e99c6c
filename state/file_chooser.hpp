// Asks the user for a path. Used by everything that loads or saves without one.
#pragma once

#include <string>
#include <vector>

#include "platform/file_dialogs.hpp"

namespace zum {

class KvFileChooser {
 public:
  /// Longest path, terminator included; a longer one counts as cancelled.
  static constexpr std::size_t kPathBytes = 256;
  /// What the forms by text answer when nothing was chosen.
  static constexpr const char* kNothing = "EMPTY";

  /// `ownerObject` is whom the dialog is for.
  explicit KvFileChooser(void* ownerObject) : owner(ownerObject) {}

  // True when a file was chosen; otherwise the path stays as it was. The filters follow the
  // extension.
  bool chooseLoad(std::string& path, const std::string& extension);
  bool chooseSave(std::string& path, const std::string& extension, const std::string& startFolder);
  /// A null title is "Select Directory".
  bool chooseFolder(std::string& path, const char* title);

  // By the chooser's own filters. The folder of what was chosen is kept in a setting, and the next
  // dialog starts there.
  void addFilter(const std::string& name, const std::string& extension);
  std::string load(const std::string& title, const char* folderSetting);
  std::string save(const std::string& title, const char* folderSetting);
  std::string folder(const std::string& startPath);

 private:
  void* owner;
  std::vector<FileFilter> filters;
};

}  // namespace zum
