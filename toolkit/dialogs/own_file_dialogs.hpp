// File dialogs that this program draws itself, where the system has none.
#pragma once

#include <functional>
#include <memory>

#include "toolkit/dialogs/file_window.hpp"

namespace zum {

/// [main]
class OwnFileDialogs final : public FileDialogs {
 public:
  /// Asked for each dialog.
  using Place = std::function<DialogPlace()>;

  explicit OwnFileDialogs(Place shownAt) : place(std::move(shownAt)) {}
  /// Closes a dialog that is open and answers it as cancelled.
  ~OwnFileDialogs() override;

  void load(const FileQuestion& question, FileAnswer answer) override {
    open(FileChoice::load, question, std::move(answer));
  }
  void save(const FileQuestion& question, FileAnswer answer) override {
    open(FileChoice::save, question, std::move(answer));
  }
  void folder(const FileQuestion& question, FileAnswer answer) override {
    open(FileChoice::folder, question, std::move(answer));
  }
  void cancel(void* owner) override;
  void poll() override;

  FileWindow* getWindow() const { return window.get(); }

 private:
  void open(FileChoice choice, const FileQuestion& question, FileAnswer answer);

  Place place;
  std::unique_ptr<FileWindow> window;  // null while none is open
  FileAnswer pending;
  void* asker = nullptr;
};

}  // namespace zum
