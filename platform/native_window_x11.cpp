#include <X11/XKBlib.h>
#include <X11/Xatom.h>
#include <X11/Xutil.h>
#include <X11/cursorfont.h>
#include <cairo-xlib.h>

#include <algorithm>

#include "platform/x11_connection.hpp"
#include "platform/x11_window.hpp"

namespace zum {
namespace {

constexpr long kEvents = ExposureMask | StructureNotifyMask | FocusChangeMask | KeyPressMask |
                         KeyReleaseMask | ButtonPressMask | ButtonReleaseMask | PointerMotionMask |
                         EnterWindowMask | LeaveWindowMask;

// Sent at once: more than a dragged knob at factor 2 takes. Shared memory for as much stays with
// the window.
constexpr int kBandPixels = 1 << 17;

int bandRows(int width) { return std::max(kBandPixels / std::max(width, 1), 1); }

// The window with a frame that `inner` lies in: the manager marks those with its state. 0 without a
// manager.
Window managedWindow(Display* display, Window inner) {
  const Atom state = XInternAtom(display, "WM_STATE", False);
  for (Window next = inner; next != 0;) {
    Atom type = 0;
    int format = 0;
    unsigned long count = 0;
    unsigned long left = 0;
    unsigned char* data = nullptr;
    XGetWindowProperty(display, next, state, 0, 0, False, AnyPropertyType, &type, &format, &count,
                       &left, &data);
    if (data != nullptr) XFree(data);
    if (type != 0) return next;
    next = windowAbove(display, next);
  }
  return 0;
}

}  // namespace

std::unique_ptr<NativeWindow> openNativeWindow(const WindowRequest& request, WindowEvents& events) {
  auto window = std::make_unique<X11Window>(request, events);
  if (window->handle() == 0) return nullptr;
  window->setCursor(WindowCursor::arrow);
  return window;
}

X11Window::X11Window(const WindowRequest& request, WindowEvents& told)
    : events(told),
      parent(request.parent),
      width(request.width),
      height(request.height),
      sizes(request.sizes),
      focusBefore(request.parent) {
  display = connectToServer(lost);  // last: where the memory ends above, nobody closes it
  if (display == nullptr) return;
  X11Guard guard(display);
  if (!create(request, guard) || guard.failed()) window = 0;
}

bool X11Window::create(const WindowRequest& request, X11Guard& guard) {
  Window above = DefaultRootWindow(display);
  Screen* screen = DefaultScreenOfDisplay(display);
  if (parent != 0) {
    XWindowAttributes attributes{};
    if (XGetWindowAttributes(display, parent, &attributes) == 0) return false;
    above = parent;
    screen = attributes.screen;
  }
  // The visual is the screen's own, whatever the parent's: in one with alpha our pixels would be
  // transparent. A window with another visual than its parent's needs border and colours of its
  // own.
  Visual* visual = DefaultVisualOfScreen(screen);
  colours = XCreateColormap(display, RootWindowOfScreen(screen), visual, AllocNone);
  XSetWindowAttributes attributes{};
  // No flicker before the first picture; but a user may make a window wider than that.
  const unsigned long background = sizes ? CWBackPixel : CWBackPixmap;
  attributes.background_pixmap = None;
  attributes.background_pixel = BlackPixelOfScreen(screen);
  attributes.border_pixel = 0;
  attributes.colormap = colours;
  attributes.event_mask = kEvents;
  const ScreenPlace corner = placeFor(request);
  window =
      XCreateWindow(display, above, corner.x, corner.y, static_cast<unsigned>(width),
                    static_cast<unsigned>(height), 0, DefaultDepthOfScreen(screen), InputOutput,
                    visual, background | CWBorderPixel | CWColormap | CWEventMask, &attributes);
  describe(request);
  if (parent == 0 && request.takesFiles) drops.emplace(display, window);
  if (parent == 0 && request.inFrontOf != 0) {
    if (guard.failed()) return false;
    describeDialog(request.inFrontOf);
    guard.failed();  // that window may be gone: the dialog comes up all the same
  }
  surface = cairo_xlib_surface_create(display, window, visual, width, height);
  XkbSetDetectableAutoRepeat(display, True, nullptr);  // no releases between the presses
  XMapWindow(display, window);
  return true;
}

/// What window managers want to know.
void X11Window::describe(const WindowRequest& request) {
  char name[] = "zum";
  char group[] = "ZUM";
  XClassHint classes{name, group};
  XSetClassHint(display, window, &classes);
  if (parent != 0) return;
  XStoreName(display, window, request.title.c_str());
  XChangeProperty(display, window, XInternAtom(display, "_NET_WM_NAME", False),
                  XInternAtom(display, "UTF8_STRING", False), 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(request.title.data()),
                  static_cast<int>(request.title.size()));
  describeSize(request.place);
  XWMHints hints{};
  hints.flags = InputHint | StateHint;
  hints.input = True;
  hints.initial_state = NormalState;
  XSetWMHints(display, window, &hints);
  protocols = XInternAtom(display, "WM_PROTOCOLS", False);
  deleteWindow = XInternAtom(display, "WM_DELETE_WINDOW", False);
  XSetWMProtocols(display, window, &deleteWindow, 1);
}

void X11Window::describeSize(const std::optional<ScreenPlace>& corner) {
  const SizeRange ends = sizes.value_or(SizeRange{width, height, width, height});
  XSizeHints hints{};
  hints.flags = PMinSize | PMaxSize;
  hints.min_width = ends.leastWidth;
  hints.min_height = ends.leastHeight;
  hints.max_width = ends.mostWidth;
  hints.max_height = ends.mostHeight;
  if (sizes) {
    hints.flags |= PAspect;
    hints.min_aspect.x = hints.max_aspect.x = ends.leastWidth;
    hints.min_aspect.y = hints.max_aspect.y = ends.leastHeight;
  }
  if (corner) {
    // The place is of our own corner: counted from the frame's, the window would wander by a frame
    // each time it comes up where it was.
    hints.flags |= USPosition | PWinGravity;
    hints.win_gravity = StaticGravity;
  }
  XSetWMNormalHints(display, window, &hints);
}

/// The screen may have become smaller since the place was noted.
ScreenPlace X11Window::placeFor(const WindowRequest& request) const {
  if (parent != 0 || !request.place) return {};
  const int screen = DefaultScreen(display);
  return {std::clamp(request.place->x, 0, std::max(DisplayWidth(display, screen) - width, 0)),
          std::clamp(request.place->y, 0, std::max(DisplayHeight(display, screen) - height, 0))};
}

/// Kept above its program's window, and shown near it.
void X11Window::describeDialog(Window inFrontOf) {
  Atom dialog = XInternAtom(display, "_NET_WM_WINDOW_TYPE_DIALOG", False);
  XChangeProperty(display, window, XInternAtom(display, "_NET_WM_WINDOW_TYPE", False), XA_ATOM, 32,
                  PropModeReplace, reinterpret_cast<const unsigned char*>(&dialog), 1);
  const Window owner = managedWindow(display, inFrontOf);
  if (owner != 0) XSetTransientForHint(display, window, owner);
}

X11Window::~X11Window() {
  if (display == nullptr) return;
  X11Guard guard(display);
  if (handle() != 0) giveFocusBack(guard);
  if (surface != nullptr) closeSurface();
  if (!lost) {
    if (window != 0) XDestroyWindow(display, window);
    for (const Cursor cursor : cursors) {
      if (cursor != 0) XFreeCursor(display, cursor);
    }
    if (colours != 0) XFreeColormap(display, colours);
  }
  XCloseDisplay(display);
}

/// Cairo keeps a record of what it has sent until the server has it, and looks through these
/// records only before it sends more: without that they would leak here.
void X11Window::closeSurface() {
  if (!lost) XSync(display, False);
  cairo_surface_destroy(cairo_surface_create_similar_image(surface, CAIRO_FORMAT_RGB24, width,
                                                           std::min(height, bandRows(width))));
  cairo_surface_destroy(surface);
}

void X11Window::resize(int toWidth, int toHeight) {
  const bool isThere = toWidth == width && toHeight == height;
  width = toWidth;
  height = toHeight;
  if (handle() == 0) return;
  const X11Guard guard(display);
  cairo_xlib_surface_set_size(surface, width, height);
  if (isThere) return;
  if (parent == 0) describeSize(toldPlace);
  resizedAt = NextRequest(display);
  XResizeWindow(display, window, static_cast<unsigned>(width), static_cast<unsigned>(height));
  XFlush(display);
}

/// In bands, so that not all of a picture lies in memory a second time.
void X11Window::show(cairo_surface_t* picture, std::span<const cairo_rectangle_int_t> parts) {
  if (handle() == 0) return;
  const X11Guard guard(display);
  cairo_t* context = cairo_create(surface);
  cairo_set_operator(context, CAIRO_OPERATOR_SOURCE);
  cairo_set_source_surface(context, picture, 0, 0);
  int sent = 0;  // pixels that the server may not have taken yet
  for (const auto& [x, y, wide, high] : parts) {
    for (int row = 0; row < high && !lost; row += bandRows(wide)) {
      const int rows = std::min(bandRows(wide), high - row);
      if (sent > 0 && sent + wide * rows > kBandPixels) {
        XSync(display, False);  // else the next band takes memory of its own
        sent = 0;
      }
      sent += wide * rows;
      cairo_rectangle(context, x, y + row, wide, rows);
      cairo_fill(context);
    }
  }
  cairo_destroy(context);
  cairo_surface_flush(surface);
  XFlush(display);
}

int X11Window::currentButtons() const {
  if (handle() == 0) return 0;
  const X11Guard guard(display);
  Window ignored = 0;
  int x = 0;
  int y = 0;
  unsigned state = 0;
  XQueryPointer(display, window, &ignored, &ignored, &x, &y, &x, &y, &state);
  return buttonWordOf(state);
}

/// A window of its own gets the focus from the window manager.
void X11Window::takeFocus() {
  if (handle() == 0 || parent == 0) return;
  X11Guard guard(display);
  Window holder = 0;
  int revert = 0;
  XGetInputFocus(display, &holder, &revert);
  XWindowAttributes attributes{};
  if (holder == window || XGetWindowAttributes(display, window, &attributes) == 0 ||
      attributes.map_state != IsViewable) {
    return;
  }
  guard.failed();
  XSetInputFocus(display, window, RevertToParent, CurrentTime);
  if (guard.failed() || lost) return;
  focusBefore = holder;
  focused = true;
}

/// Only while we have the focus: somebody else may have taken it since.
void X11Window::giveFocusBack(X11Guard& guard) {
  Window holder = 0;
  int revert = 0;
  XGetInputFocus(display, &holder, &revert);
  if (holder != window || parent == 0) return;
  for (const Window next : {focusBefore, parent}) {
    XSetInputFocus(display, next, RevertToParent, CurrentTime);
    if (!guard.failed()) return;
  }
}

void X11Window::setCursor(WindowCursor cursor) {
  if (handle() == 0 || cursor == shownCursor) return;
  constexpr std::array<unsigned, 3> kShapes = {XC_left_ptr, XC_watch, XC_sb_h_double_arrow};
  const auto index = static_cast<std::size_t>(cursor);
  const X11Guard guard(display);
  if (cursors[index] == 0) cursors[index] = XCreateFontCursor(display, kShapes[index]);
  XDefineCursor(display, window, cursors[index]);
  XFlush(display);
  shownCursor = cursor;
}

}  // namespace zum
