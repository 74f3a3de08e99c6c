// Dead keys and the Compose key: what several keys in a row write.
#pragma once

#include <X11/X.h>

#include <memory>
#include <optional>
#include <string>

struct xkb_compose_state;

namespace zum {

/// [main] By the table of the user's language, which the environment names. The process' locale,
/// from which an input method of X takes its letters, is the host's: it knows letters beyond ASCII
/// only if the host has set it.
class KeyComposer {
 public:
  /// For every press. Nothing for a key that stands for itself; no characters for one that waits
  /// for the next.
  std::optional<std::u32string> press(KeySym symbol);

 private:
  struct Release {
    void operator()(xkb_compose_state* released) const;
  };

  std::unique_ptr<xkb_compose_state, Release> state;  // read when a first key comes
  bool isRead = false;
};

}  // namespace zum
