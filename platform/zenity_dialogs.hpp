// File dialogs by the program `zenity`, which runs as a child and shows its own window, so that no
// second window kit is loaded into a host. A window that is open polls it.
#pragma once

#include <string>
#include <vector>

#include "platform/child_program.hpp"
#include "platform/file_dialogs.hpp"

namespace zum {

class ZenityDialogs final : public FileDialogs {
 public:
  ZenityDialogs() = default;
  /// Closes a dialog that is open and answers it as cancelled.
  ~ZenityDialogs() override;

  /// Looks for it, without running it.
  static bool isInstalled();

  void load(const FileQuestion& question, FileAnswer answer) override;
  void save(const FileQuestion& question, FileAnswer answer) override;
  void folder(const FileQuestion& question, FileAnswer answer) override;
  void cancel(void* owner) override;

  void poll() override;
  bool isOpen() const { return static_cast<bool>(pending); }

 private:
  void open(const FileQuestion& question, std::vector<std::string> options, FileAnswer answer);

  ChildProgram program;
  FileAnswer pending;  // of the open dialog
  void* asker = nullptr;
};

}  // namespace zum
