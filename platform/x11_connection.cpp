#include "platform/x11_connection.hpp"

#include <atomic>
#include <cerrno>
#include <ctime>
#include <utility>

namespace zum {
namespace {

std::mutex turns;
// Read by handlers in other threads, about other connections.
std::atomic<Display*> guarded = nullptr;
std::atomic<XErrorHandler> previous = nullptr;
std::atomic<XIOErrorHandler> previousIo = nullptr;
int errors = 0;  // of the guarded connection, in the guard's thread

int onError(Display* display, XErrorEvent* event) {
  if (display != guarded) {
    const XErrorHandler next = previous;
    return next != nullptr ? next(display, event) : 0;
  }
  ++errors;
  return 0;
}

/// The server went. Cairo waits in a loop until it has done what it was sent: as much counts as
/// done from now on, whatever is sent still. The library takes the user's lock for the thread that
/// met the end, as that one is to leave the process; another one closes the window.
void onServerGone(Display* display, void* mark) {
  constexpr unsigned long kMore = 1UL << 30U;
  LastKnownRequestProcessed(display) = NextRequest(display) + kMore;
  *static_cast<bool*>(mark) = true;
  XUnlockDisplay(display);
}

sigset_t pipeSignal() {
  sigset_t set;
  sigemptyset(&set);
  sigaddset(&set, SIGPIPE);
  return set;
}

/// The window hears of it from the connection's own exit handler.
int onIoError(Display* display) {
  if (display == guarded) return 0;
  const XIOErrorHandler next = previousIo;
  return next != nullptr ? next(display) : 0;
}

}  // namespace

Display* connectToServer(bool& lost) {
  static const bool threads = XInitThreads() != 0;  // the host may run several
  Display* const display = threads ? XOpenDisplay(nullptr) : nullptr;
  if (display == nullptr) return nullptr;
  // Without it a lost connection ends the process.
  XSetIOErrorExitHandler(display, onServerGone, &lost);
  return display;
}

Window windowAbove(Display* display, Window inner) {
  Window root = 0;
  Window above = 0;
  Window* below = nullptr;
  unsigned count = 0;
  if (XQueryTree(display, inner, &root, &above, &below, &count) == 0) return 0;
  if (below != nullptr) XFree(below);
  return above == root ? 0 : above;
}

PipeSignalHeld::PipeSignalHeld() {
  sigset_t waiting;
  sigpending(&waiting);
  waited = sigismember(&waiting, SIGPIPE) == 1;
  const sigset_t held = pipeSignal();
  pthread_sigmask(SIG_BLOCK, &held, &before);
}

PipeSignalHeld::~PipeSignalHeld() {
  const sigset_t held = pipeSignal();
  const timespec atOnce{};
  while (!waited && sigtimedwait(&held, nullptr, &atOnce) < 0 && errno == EINTR) {
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

X11Guard::X11Guard(Display* ours) : turn(turns), display(ours) {
  errors = 0;
  guarded = ours;
  previous = XSetErrorHandler(onError);
  previousIo = XSetIOErrorHandler(onIoError);
}

X11Guard::~X11Guard() {
  XSetErrorHandler(previous);
  XSetIOErrorHandler(previousIo);
  guarded = nullptr;
}

bool X11Guard::failed() {
  XSync(display, False);
  return std::exchange(errors, 0) != 0;
}

}  // namespace zum
