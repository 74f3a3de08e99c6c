// Keeps the X errors of one of our connections to ourselves while we talk to the server.
#pragma once

#include <X11/Xlib.h>

#include <mutex>

namespace zum {

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
  Display* display;
};

}  // namespace zum
