// The dialogs that ask a user for a file or a folder, as the window build supplies them. Nobody
// waits for a user: the answer comes by a call. Without dialogs everything is answered as
// cancelled.
#pragma once

#include <functional>
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
  void* owner = nullptr;    // the object that asks, and may cancel
};

/// The chosen path in the internal form, nothing when the user cancelled.
using FileAnswer = std::function<void(std::optional<std::string>)>;

class FileDialogs {
 public:
  FileDialogs() = default;
  FileDialogs(const FileDialogs&) = delete;
  FileDialogs& operator=(const FileDialogs&) = delete;
  virtual ~FileDialogs() = default;

  // [main] Each question is answered exactly once, on the main thread: at once, or later from a
  // poll. One dialog at a time: what is asked while one is open is answered as cancelled.
  virtual void load(const FileQuestion& question, FileAnswer answer) = 0;
  virtual void save(const FileQuestion& question, FileAnswer answer) = 0;
  virtual void folder(const FileQuestion& question, FileAnswer answer) = 0;
  /// [main] The owner goes: its dialog is closed and never answered.
  virtual void cancel(void* owner) = 0;
  /// [main] Every tick of a window that is open: what was closed meanwhile is answered.
  virtual void poll() {}
};

/// [main] Sets the dialogs of this process, null for none. They remain their owner's.
void setFileDialogs(FileDialogs* dialogs);
FileDialogs* fileDialogs();

// [main] The same questions to the dialogs of this process, if there are any.
using FileOperation = void (FileDialogs::*)(const FileQuestion&, FileAnswer);
void askForFile(FileOperation operation, const FileQuestion& question, FileAnswer answer);
void cancelFileQuestions(void* owner);

}  // namespace zum
