// A user who answers questions for files at once.
#pragma once

#include <optional>
#include <string>

#include "platform/file_dialogs.hpp"

namespace zum::test {

/// Answers at once with what a test has chosen.
struct Chooser final : FileDialogs {
  Chooser() { setFileDialogs(this); }
  ~Chooser() override { setFileDialogs(nullptr); }
  void load(const FileQuestion& /*question*/, FileAnswer answer) override { answer(chosen); }
  void save(const FileQuestion& /*question*/, FileAnswer answer) override { answer(chosen); }
  void folder(const FileQuestion& /*question*/, FileAnswer answer) override { answer(chosen); }
  void cancel(void* /*owner*/) override {}
  std::optional<std::string> chosen;
};

}  // namespace zum::test
