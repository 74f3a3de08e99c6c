#include "toolkit/dialogs/own_file_dialogs.hpp"

#include <utility>

namespace zum {

OwnFileDialogs::~OwnFileDialogs() {
  window.reset();
  if (pending) std::exchange(pending, nullptr)(std::nullopt);
}

void OwnFileDialogs::open(FileChoice choice, const FileQuestion& question, FileAnswer answer) {
  if (window != nullptr) return answer(std::nullopt);
  auto opened = std::make_unique<FileWindow>(choice, question, place());
  if (!opened->isOpen()) return answer(std::nullopt);
  window = std::move(opened);
  pending = std::move(answer);
  asker = question.owner;
}

void OwnFileDialogs::cancel(void* owner) {
  if (window == nullptr || asker != owner) return;
  pending = nullptr;
  window.reset();
}

// The answer may open the next dialog, or end this object.
void OwnFileDialogs::poll() {
  if (window == nullptr) return;
  window->idle();
  if (!window->isDone()) return;
  const std::optional<std::string> chosen = window->getChosen();
  window.reset();
  const FileAnswer answer = std::exchange(pending, nullptr);
  answer(chosen);
}

}  // namespace zum
