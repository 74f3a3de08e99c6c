// The dialogs that ask a user for a file or a folder, as the window build supplies them. Without
// one, everything is answered as cancelled.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace zum {

struct FileFilter {
  std::string name;
  std::string extension;  // without a dot
};

struct FileQuestion {
  std::string title;
  std::vector<FileFilter> filters;
  std::string startFolder;  // internal form; empty for wherever the user was last
  void* owner = nullptr;    // the object that asks, so that a window can tell which is in front
};

class FileDialogs {
 public:
  FileDialogs() = default;
  FileDialogs(const FileDialogs&) = delete;
  FileDialogs& operator=(const FileDialogs&) = delete;
  virtual ~FileDialogs() = default;

  // [main] The chosen path in the internal form, nothing when the user cancelled.
  virtual std::optional<std::string> load(const FileQuestion& question) = 0;
  virtual std::optional<std::string> save(const FileQuestion& question) = 0;
  virtual std::optional<std::string> folder(const FileQuestion& question) = 0;
};

/// [main] Of this process; null for none. They stay with their owner.
void setFileDialogs(FileDialogs* dialogs);
FileDialogs* fileDialogs();

}  // namespace zum
