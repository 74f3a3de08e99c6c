// Files that are dragged from another program's window onto one of ours: version 5 of the protocol
// that X11 desktops agree on (XDND). x11_events.cpp hands it what concerns it.
#pragma once

#include <X11/Xlib.h>

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace zum {

/// [main] Nothing that a source says is believed: it may be gone, or never have been one.
class X11DropTarget {
 public:
  /// Tells sources that the window takes files.
  X11DropTarget(Display* connection, Window target);

  struct Drop {
    int x;  // pixels of the window
    int y;
    std::vector<std::string> files;  // paths, at least one
  };
  /// A message, or a selection that came. Where a guard lives. Nothing unless it is the end of a
  /// drop with files.
  std::optional<Drop> take(const XEvent& event);

 private:
  enum Name {
    aware,
    enter,
    position,
    status,
    leave,
    drop,
    finished,
    selection,
    typeList,
    copy,
    uriList,
    incremental,
    kNames
  };
  using Words = std::array<long, 4>;

  void begin(const XClientMessageEvent& message);
  bool offersFiles(const XClientMessageEvent& message) const;
  void follow(const XClientMessageEvent& message);
  void fetch(const XClientMessageEvent& message);
  std::optional<Drop> end(const XSelectionEvent& event);
  std::optional<std::string> readSelection();
  void answer(Name what, const Words& words) const;

  Display* display;
  Window window;
  std::array<Atom, kNames> atoms{};
  // The drag that is over the window.
  Window source = 0;  // 0 for none
  bool accepts = false;
  int x = 0;
  int y = 0;
  std::optional<Time> asked;  // for the selection, when it was dropped
};

}  // namespace zum
