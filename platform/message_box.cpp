#include "platform/message_box.hpp"

#include <iostream>

namespace zum {

void showMessage(const char* caption, const char* text) {
  std::cerr << caption << ": " << text << std::endl;
}

}  // namespace zum
