// Asks the user for a path. Used by everything that loads or saves without one.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "platform/file_dialogs.hpp"

namespace zum {

/// Made for one question and gone at once, while the answer may come much later. So the owner must
/// live until then, or cancel its questions.
class KvFileChooser {
 public:
  using Then = std::function<void(const std::string& path)>;

  /// Longest path, terminator included; a longer one is told of and counts as cancelled.
  static constexpr std::size_t kPathBytes = 256;
  /// The path that the forms with a title or a start folder hand over when nothing was chosen.
  static constexpr const char* kNothing = "EMPTY";

  /// `ownerObject` is whom the dialog is for.
  explicit KvFileChooser(void* ownerObject) : owner(ownerObject) {}

  // `then` is called when a path was chosen, `otherwise` when none was. The filters follow the
  // extension.
  void chooseLoad(const std::string& extension, Then then, std::function<void()> otherwise = {});
  void chooseSave(const std::string& extension, const std::string& startFolder, Then then);
  /// A null title is "Select Directory".
  void chooseFolder(const std::string& startPath, const char* title, Then then);

  // By the chooser's own filters; `then` is called in any case. The folder of what was chosen is
  // kept in a setting, and the next dialog starts there.
  void addFilter(const std::string& name, const std::string& extension);
  void load(const std::string& title, const char* folderSetting, const Then& then);
  void save(const std::string& title, const char* folderSetting, const Then& then);
  void folder(const std::string& startPath, const Then& then);

 private:
  void* owner;
  std::vector<FileFilter> filters;
};

}  // namespace zum
