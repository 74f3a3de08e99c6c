// Shows a file in the program that the user's desktop has for it.
#pragma once

#include <string>

#include "platform/child_program.hpp"

namespace zum {

/// [main]
class DesktopOpener {
 public:
  /// False where there is no desktop to ask. The program that comes up lives on by itself.
  bool open(const std::string& internalPath);
  /// To be called from time to time, until the desktop has been asked.
  void poll() {
    if (starter.isRunning()) starter.poll();
  }

 private:
  ChildProgram starter;
};

}  // namespace zum
