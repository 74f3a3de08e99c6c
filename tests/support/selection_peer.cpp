#include "support/selection_peer.hpp"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

namespace zum::test {

SelectionPeer::SelectionPeer()
    : display(XOpenDisplay(nullptr)),
      window(XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0)) {}

SelectionPeer::~SelectionPeer() { XCloseDisplay(display); }

unsigned long SelectionPeer::atom(const std::string& name) const {
  return XInternAtom(display, name.c_str(), False);
}

void SelectionPeer::own() {
  XSetSelectionOwner(display, atom("CLIPBOARD"), window, CurrentTime);
  XSync(display, False);
}

void SelectionPeer::ask(const std::string& wanted) {
  isAnswered = false;
  answer.clear();
  XConvertSelection(display, atom("CLIPBOARD"), atom(wanted), atom("ANSWER"), window, CurrentTime);
  XSync(display, False);
}

void SelectionPeer::put(unsigned long to, unsigned long name, const std::string& bytes) const {
  XChangeProperty(display, to, name, atom(type), format, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(bytes.data()),
                  static_cast<int>(bytes.size()) / (format / 8));
}

void SelectionPeer::poll() {
  XSync(display, False);
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == SelectionNotify) {
      isAnswered = true;
      answer = "refused";
      if (event.xselection.property == 0) continue;
      Atom readType = 0;
      int readFormat = 0;
      unsigned long count = 0;
      unsigned long after = 0;
      unsigned char* data = nullptr;
      XGetWindowProperty(display, window, event.xselection.property, 0, 1L << 20, True,
                         AnyPropertyType, &readType, &readFormat, &count, &after, &data);
      answer = std::string(reinterpret_cast<const char*>(data), count);
      XFree(data);
    }
    if (event.type == SelectionRequest && !isSilent) {
      const XSelectionRequestEvent& request = event.xselectionrequest;
      requestor = request.requestor;
      property = request.property;
      next = 0;
      if (pieces.size() > 1) {
        XSelectInput(display, requestor, PropertyChangeMask);
        const long size = 1;
        XChangeProperty(display, requestor, property, atom("INCR"), 32, PropModeReplace,
                        reinterpret_cast<const unsigned char*>(&size), 1);
      } else if (!refuses) {
        put(requestor, property, pieces.empty() ? "" : pieces.front());
      }
      XEvent reply{};
      reply.xselection.type = SelectionNotify;
      reply.xselection.requestor = requestor;
      reply.xselection.selection = request.selection;
      reply.xselection.target = request.target;
      reply.xselection.property = refuses ? 0 : property;
      XSendEvent(display, requestor, False, NoEventMask, &reply);
    }
    if (event.type == PropertyNotify && event.xproperty.state == PropertyDelete &&
        event.xproperty.atom == property && pieces.size() > 1 && next <= pieces.size()) {
      if (next == pieces.size() && breaksOff) continue;
      put(requestor, property, next < pieces.size() ? pieces[next] : "");
      ++next;
    }
  }
  XSync(display, False);
}

}  // namespace zum::test
