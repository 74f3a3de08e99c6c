#include "platform/desktop_opener.hpp"

#include "platform/files.hpp"

namespace zum {

// Starts it in a session of its own, so that it ends neither with the host nor with `setsid`.
bool DesktopOpener::open(const std::string& internalPath) {
  const std::string opener = findProgram("xdg-open");
  if (opener.empty()) return false;
  poll();
  return starter.start(findProgram("setsid"),
                       {"setsid", "--fork", opener, toSystemPath(internalPath)}, false);
}

}  // namespace zum
