// A connection to the X server that keeps its errors to itself, and the way from a window up to the
// screen.
#pragma once

#include <X11/Xlib.h>

#include <csignal>
#include <mutex>

namespace zum {

/// Null where there is no server. `lost` is set when the server goes, and lives as long as the
/// connection: nothing can be said to it from then on.
Display* connectToServer(bool& lost);

/// The window that `inner` lies in; 0 for the screen, and for a window that is gone.
Window windowAbove(Display* display, Window inner);

/// What is written to a server that went raises SIGPIPE, which ends a host that does not expect it.
/// While one lives the thread holds the signal back, and none that came meanwhile is left over.
class PipeSignalHeld {
 public:
  PipeSignalHeld();
  PipeSignalHeld(const PipeSignalHeld&) = delete;
  PipeSignalHeld& operator=(const PipeSignalHeld&) = delete;
  ~PipeSignalHeld();

 private:
  sigset_t before{};    // what the thread held back
  bool waited = false;  // one did already
};

/// The error handlers belong to the whole process, to the host that is: ours are in place only
/// while one of these lives, and hand on what comes from any other connection. Errors of a
/// connection arrive only in calls on that connection, so none comes later. One at a time, also
/// over threads, so that every one puts back what it found; no host call while one lives.
class X11Guard {
 public:
  explicit X11Guard(Display* display);
  X11Guard(const X11Guard&) = delete;
  X11Guard& operator=(const X11Guard&) = delete;
  ~X11Guard();

  /// Waits for the server to have done everything, and says whether an error came since the last
  /// time.
  bool failed();

 private:
  std::lock_guard<std::mutex> turn;
  const PipeSignalHeld pipe;
  Display* display;
};

}  // namespace zum
