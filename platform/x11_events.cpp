// What came from the X server, told in the words of WindowEvents.
#include <X11/Xutil.h>

#include <algorithm>
#include <utility>

#include "platform/x11_connection.hpp"
#include "platform/x11_window.hpp"

namespace zum {
namespace {

/// Joins an event to the one before it where the two say no more than one would.
bool join(XEvent& last, const XEvent& next) {
  if (last.type != next.type) return false;
  const bool sameMove = next.type == MotionNotify && last.xmotion.state == next.xmotion.state;
  if (sameMove || next.type == ConfigureNotify) {
    last = next;
    return true;
  }
  if (next.type != Expose) return false;
  XExposeEvent& all = last.xexpose;
  const XExposeEvent& more = next.xexpose;
  const int right = std::max(all.x + all.width, more.x + more.width);
  const int bottom = std::max(all.y + all.height, more.y + more.height);
  all.x = std::min(all.x, more.x);
  all.y = std::min(all.y, more.y);
  all.width = right - all.x;
  all.height = bottom - all.y;
  return true;
}

/// Where the server ends an event's way from `inner` up: at the first window that somebody listens
/// to such events at. 0 for none below the screen's own.
Window listenerFrom(Display* display, Window inner, long mask) {
  for (Window next = inner; next != 0;) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, next, &attributes) == 0) return 0;
    if ((attributes.all_event_masks & mask) != 0) return next;
    if ((attributes.do_not_propagate_mask & mask) != 0) return 0;
    next = windowAbove(display, next);
  }
  return 0;
}

}  // namespace

/// Takes everything that has come before telling any of it: a slow answer to a move does not keep
/// the caller here while the mouse goes on moving.
void X11Window::poll() {
  if (window == 0) return;
  fetch();
  const std::weak_ptr<bool> alive = life;
  while (!alive.expired() && !queue.empty()) {
    XEvent event = queue.front();
    queue.pop_front();
    tell(event);
  }
  if (alive.expired() || window == 0) return;
  if (lost) {
    tellGone();
  } else if (strayed && toldInside && pointerIsOutside()) {
    strayed = over = false;
    tellLeft();
  }
}

void X11Window::fetch() {
  if (lost) return;
  const X11Guard guard(display);
  while (XPending(display) > 0 && !lost) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == MappingNotify) XRefreshKeyboardMapping(&event.xmapping);
    if (event.xany.window != window) continue;  // the drawing library sends itself some
    if (queue.empty() || !join(queue.back(), event)) queue.push_back(event);
  }
}

void X11Window::tell(XEvent& event) {
  switch (event.type) {
    case Expose: {
      const XExposeEvent& lostPart = event.xexpose;
      events.windowExposed(lostPart.x, lostPart.y, lostPart.x + lostPart.width,
                           lostPart.y + lostPart.height);
      break;
    }
    case MotionNotify: tellMove(event.xmotion.x, event.xmotion.y, event.xmotion.state); break;
    case ButtonPress: tellPress(event.xbutton); break;
    case ButtonRelease: tellRelease(event.xbutton); break;
    case EnterNotify: enter(event.xcrossing); break;
    case LeaveNotify: leave(event.xcrossing); break;
    case KeyPress:
    case KeyRelease: tellKey(event); break;
    case FocusIn:
    case FocusOut: focusChanged(event.xfocus); break;
    case ReparentNotify:
      if (parent != 0) parent = event.xreparent.parent;
      notePlace();
      break;
    case MapNotify: notePlace(); break;
    case ConfigureNotify:
      notePlace();
      noteSize(event.xconfigure);
      break;
    case SelectionNotify: tellDrop(event); break;
    case ClientMessage: {
      const XClientMessageEvent& message = event.xclient;
      const bool close = parent == 0 && message.message_type == protocols && message.format == 32 &&
                         static_cast<Atom>(message.data.l[0]) == deleteWindow;
      if (close) {
        tellGone();
      } else {
        tellDrop(event);
      }
      break;
    }
    case DestroyNotify:
      window = 0;  // no more to be destroyed
      tellGone();
      break;
    default: break;
  }
}

void X11Window::tellPress(const XButtonEvent& event) {
  const int held = buttonWordOf(event.state);
  if (event.button == Button4 || event.button == Button5) {
    events.windowScrolled(event.x, event.y, event.button == Button4 ? 1.0F : -1.0F, held);
    return;
  }
  const int pressed = buttonOf(event.button);
  if (pressed == 0) return;
  const bool second = clicks.isSecond(event.button, event.x, event.y, event.time);
  toldInside = true;
  events.windowPressed(event.x, event.y, held | pressed | (second ? buttons::kDoubleClick : 0));
}

void X11Window::tellRelease(const XButtonEvent& event) {
  const int released = buttonOf(event.button);
  if (released == 0) return;
  const int word = buttonWordOf(event.state) & ~released;
  const std::weak_ptr<bool> alive = life;
  events.windowReleased(event.x, event.y, word);
  const int held = word & (buttons::kLeft | buttons::kMiddle | buttons::kRight);
  if (!alive.expired() && held == 0 && !over) tellLeft();
}

void X11Window::tellMove(int x, int y, unsigned state) {
  toldInside = true;
  events.windowMoved(x, y, buttonWordOf(state));
}

void X11Window::tellLeft() {
  if (std::exchange(toldInside, false)) events.windowLeft();
}

void X11Window::tellDrop(const XEvent& event) {
  if (!drops || handle() == 0) return;
  std::optional<X11DropTarget::Drop> drop;
  {
    const X11Guard guard(display);
    drop = drops->take(event);
  }
  if (drop) events.windowDropped(drop->x, drop->y, drop->files);
}

/// The events themselves tell it from the screen's corner or from a frame's, by who sent them.
void X11Window::notePlace() {
  if (parent != 0 || handle() == 0) return;
  const X11Guard guard(display);
  ScreenPlace corner;
  Window ignored = 0;
  if (XTranslateCoordinates(display, window, DefaultRootWindow(display), 0, 0, &corner.x, &corner.y,
                            &ignored) != 0) {
    toldPlace = corner;
  }
}

/// Of the server's window alone: what is shown in it is still as large as before.
void X11Window::noteSize(const XConfigureEvent& event) {
  if (handle() == 0 || event.serial < resizedAt) return;
  if (event.width == width && event.height == height) return;
  width = event.width;
  height = event.height;
  events.windowResized(width, height);
}

/// Tells the last event. Nothing of the window stays on the screen.
void X11Window::tellGone() {
  queue.clear();
  focused = false;
  if (window != 0 && !lost) {
    const X11Guard guard(display);
    XDestroyWindow(display, window);
    XFlush(display);
  }
  window = 0;
  events.windowGone();
}

void X11Window::enter(const XCrossingEvent& event) {
  if (event.mode == NotifyGrab) return;
  over = true;
  strayed = false;
  tellMove(event.x, event.y, event.state);
}

void X11Window::leave(const XCrossingEvent& event) {
  if (event.detail == NotifyInferior) return;
  if (event.mode == NotifyGrab) {  // the pointer may still be over us
    strayed = true;
    return;
  }
  over = false;
  if (event.mode == NotifyUngrab || (event.state & kHeldButtons) == 0) tellLeft();
}

void X11Window::focusChanged(const XFocusChangeEvent& event) {
  // A grab of the keyboard is over soon. With the pointer over us keys come here although the focus
  // is at a window around ours: that is no focus of ours.
  const bool grab = event.mode == NotifyGrab || event.mode == NotifyUngrab;
  const bool pointer = event.detail == NotifyPointer || event.detail == NotifyPointerRoot ||
                       event.detail == NotifyDetailNone;
  if (!grab && !pointer) focused = event.type == FocusIn;
}

void X11Window::tellKey(XEvent& event) {
  KeySym symbol = NoSymbol;
  {
    const X11Guard guard(display);  // the first key asks the server for its layout
    char text[8];
    XLookupString(&event.xkey, text, sizeof text, &symbol, nullptr);
  }
  const WindowKey key = windowKeyOf(symbol, event.xkey.state);
  // In a window inside of a host's nobody writes text: every key goes on at once, dead or not.
  if (parent == 0 && event.type == KeyPress) {
    if (const auto text = composer.press(symbol)) return tellText(*text, key);
  }
  if (key.character != 0 || key.virt != 0) {
    const std::weak_ptr<bool> alive = life;
    const bool wanted =
        event.type == KeyPress ? events.windowKeyPressed(key) : events.windowKeyReleased(key);
    if (wanted || alive.expired()) return;
  }
  // The host gets the key, unless it was the host that sent it: the two would pass it to and fro.
  // It may listen at a window around the one that it gave us, and its toolkit knows only that one
  // by name.
  if (handle() == 0 || parent == 0 || event.xkey.send_event != 0) return;
  const X11Guard guard(display);
  const long mask = event.type == KeyPress ? KeyPressMask : KeyReleaseMask;
  const Window listener = listenerFrom(display, parent, mask);
  if (listener == 0) return;
  event.xkey.window = listener;
  XSendEvent(display, listener, False, mask, &event);
  XFlush(display);
}

void X11Window::tellText(const std::u32string& text, WindowKey key) {
  const std::weak_ptr<bool> alive = life;
  for (const char32_t character : text) {
    if (alive.expired()) return;
    key.character = static_cast<std::int32_t>(character);
    key.virt = 0;
    events.windowKeyPressed(key);
  }
}

bool X11Window::pointerIsOutside() const {
  const X11Guard guard(display);
  Window ignored = 0;
  int rootX = 0;
  int rootY = 0;
  int x = -1;
  int y = -1;
  unsigned state = 0;
  XQueryPointer(display, window, &ignored, &ignored, &rootX, &rootY, &x, &y, &state);
  return x < 0 || y < 0 || x >= width || y >= height;
}

}  // namespace zum
