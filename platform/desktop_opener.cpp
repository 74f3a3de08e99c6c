#include "platform/desktop_opener.hpp"

#include "platform/files.hpp"

namespace zum {

// In a session of its own: what is shown does not end with the host, nor with the starter.
bool DesktopOpener::open(const std::string& internalPath) {
  const std::string opener = findProgram("xdg-open");
  if (opener.empty()) return false;
  poll();
  return starter.start(findProgram("setsid"),
                       {"setsid", "--fork", opener, toSystemPath(internalPath)}, false);
}

}  // namespace zum
