#include "platform/message_box.hpp"

#include <iostream>

namespace zum {

void showMessage(const char* caption, const char* text) {
  std::cerr << caption << ": " << text << std::endl;
}

bool askMessage(const char* caption, const char* text) {
  showMessage(caption, text);
  return false;
}

}  // namespace zum
