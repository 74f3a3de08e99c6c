// No settings and no content: what is looked for depends on the input alone, and an instance costs
// little.
#pragma once

#include <cstdlib>

namespace zum {

struct NoHome {
  NoHome() noexcept {
    for (const char* variable : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_DATA_DIRS"}) {
      setenv(variable, "/dev/null", 1);
    }
  }
};

}  // namespace zum
