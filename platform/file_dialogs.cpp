#include "platform/file_dialogs.hpp"

namespace zum {
namespace {

FileDialogs* current = nullptr;

}  // namespace

void setFileDialogs(FileDialogs* dialogs) { current = dialogs; }
FileDialogs* fileDialogs() { return current; }

}  // namespace zum
