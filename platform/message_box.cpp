#include "platform/message_box.hpp"

#include <cstdio>

namespace zum {

void showMessage(const char* caption, const char* text) {
  std::fprintf(stderr, "%s: %s\n", caption, text);
}

}  // namespace zum
