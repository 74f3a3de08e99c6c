// The choice of a file or a folder, where the system has no dialog of its own for it.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "platform/file_dialogs.hpp"
#include "toolkit/dialogs/dialog_window.hpp"
#include "toolkit/dialogs/file_list.hpp"
#include "toolkit/dialogs/text_field.hpp"

namespace zum {

enum class FileChoice : std::uint8_t { load, save, folder };

/// [main]
class FileWindow final : public DialogWindow {
 public:
  FileWindow(FileChoice what, const FileQuestion& question, const DialogPlace& place);

  /// In the internal form; nothing until the user has chosen.
  const std::optional<std::string>& getChosen() const { return chosen; }
  FileList& getList() const { return *list; }

 private:
  void accept() override;
  void acceptName();
  void choose(std::string path);
  /// Stays where it is when the folder cannot be read.
  void enter(const std::string& path);
  void enterSelected();
  std::string pathOf(const std::string& name) const;
  void ask(const std::string& path);

  void valueChanged(CControl& control) override;
  bool keyPressed(const WindowKey& key) override;

  FileChoice choice;
  FileQuestion asked;
  std::string folder;
  std::string toReplace;  // a second OK overwrites it
  std::optional<std::string> chosen;
  TextField* path;
  FileList* list;
  TextField* name = nullptr;  // of a file to save
  KvButton* ok;
  KvButton* replace;
};

}  // namespace zum
