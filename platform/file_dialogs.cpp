#include "platform/file_dialogs.hpp"

#include <utility>

namespace zum {
namespace {

FileDialogs* current = nullptr;

}  // namespace

void setFileDialogs(FileDialogs* dialogs) { current = dialogs; }
FileDialogs* fileDialogs() { return current; }

void askForFile(FileOperation operation, const FileQuestion& question, FileAnswer answer) {
  if (current == nullptr) return answer(std::nullopt);
  (current->*operation)(question, std::move(answer));
}

void cancelFileQuestions(void* owner) {
  if (current != nullptr) current->cancel(owner);
}

}  // namespace zum
