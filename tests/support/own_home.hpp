// A place for settings and content that belongs to this process alone, so that no program of a
// tester's own leaves its marks in somebody's settings, or finds presets there.
#pragma once

#include "tests/support/temporary_folder.hpp"

namespace zum::test {

/// Lives as long as the program needs it; made before the first effect is.
struct OwnHome {
  OwnHome() noexcept { useHome(folder); }
  TemporaryFolder folder;
};

/// No settings and no content at all: an instance costs little, and depends on its input alone.
struct NoHome {
  NoHome() noexcept { useHome("/dev/null"); }
};

/// Another user's, as long as it lives.
struct OtherHome {
  OtherHome() { useHome(folder); }
  ~OtherHome() { useHome(before); }
  OtherHome(const OtherHome&) = delete;
  OtherHome& operator=(const OtherHome&) = delete;

  const std::filesystem::path before =
      std::filesystem::path(std::getenv("XDG_CONFIG_HOME")).parent_path();
  const TemporaryFolder folder;
};

}  // namespace zum::test
