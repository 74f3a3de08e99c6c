// A user who answers questions for files.
#pragma once

#include <optional>
#include <string>
#include <utility>

#include "platform/file_dialogs.hpp"

namespace zum::test {

/// Answers at once with what a test has chosen, or waits to be asked to.
struct Chooser final : FileDialogs {
  Chooser() { setFileDialogs(this); }
  ~Chooser() override { setFileDialogs(nullptr); }
  void load(const FileQuestion& question, FileAnswer answer) override {
    asked = question;
    pending = std::move(answer);
    if (!waits) choose(chosen);
  }
  void save(const FileQuestion& question, FileAnswer answer) override {
    load(question, std::move(answer));
  }
  void folder(const FileQuestion& question, FileAnswer answer) override {
    load(question, std::move(answer));
  }
  void cancel(void* owner) override {
    ++cancelled;
    if (asked.owner == owner) pending = nullptr;
  }
  /// What a question that waits is answered with.
  void choose(const std::optional<std::string>& path) { std::exchange(pending, nullptr)(path); }

  std::optional<std::string> chosen;  // none cancels
  bool waits = false;
  FileQuestion asked;  // the last one
  FileAnswer pending;
  int cancelled = 0;
};

}  // namespace zum::test
