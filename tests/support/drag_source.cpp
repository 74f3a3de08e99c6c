#include "support/drag_source.hpp"

#include <X11/Xatom.h>
#include <X11/Xlib.h>

#include <algorithm>
#include <utility>

namespace zum::test {

DragSource::DragSource(std::uintptr_t over) : display(XOpenDisplay(nullptr)), target(over) {
  window = XCreateSimpleWindow(display, DefaultRootWindow(display), 0, 0, 1, 1, 0, 0, 0);
  XSetSelectionOwner(display, atom("XdndSelection"), window, CurrentTime);
  XSync(display, False);
}

void DragSource::end() {
  if (display != nullptr) XCloseDisplay(std::exchange(display, nullptr));
}

unsigned long DragSource::atom(const std::string& name) {
  return XInternAtom(display, name.c_str(), False);
}

long DragSource::targetVersion() {
  Atom type = 0;
  int format = 0;
  unsigned long count = 0;
  unsigned long after = 0;
  unsigned char* data8 = nullptr;
  XGetWindowProperty(display, target, atom("XdndAware"), 0, 1, False, XA_ATOM, &type, &format,
                     &count, &after, &data8);
  const long version = count == 1 ? *reinterpret_cast<long*>(data8) : 0;
  if (data8 != nullptr) XFree(data8);
  return version;
}

void DragSource::enter(const std::vector<std::string>& types, long version) {
  std::vector<unsigned long> atoms(types.size());
  std::transform(types.begin(), types.end(), atoms.begin(),
                 [this](const std::string& type) { return atom(type); });
  const bool isLong = atoms.size() > 3;
  if (isLong) {
    const bool isList = listType == "ATOM";  // or the same memory as bytes
    XChangeProperty(display, window, atom("XdndTypeList"), atom(listType), isList ? 32 : 8,
                    PropModeReplace, reinterpret_cast<const unsigned char*>(atoms.data()),
                    static_cast<int>(isList ? atoms.size() : atoms.size() * sizeof(long)));
  }
  atoms.resize(3);
  std::vector<long> words{version << 24 | (isLong ? 1 : 0)};
  for (const unsigned long each : atoms) words.push_back(isLong ? 0 : static_cast<long>(each));
  send("XdndEnter", words);
}

void DragSource::moveTo(int x, int y) {
  Window ignored = 0;
  XTranslateCoordinates(display, target, DefaultRootWindow(display), x, y, &x, &y, &ignored);
  send("XdndPosition",
       {0, static_cast<long>(x) << 16 | y, kTime, static_cast<long>(atom("XdndActionMove"))});
}

void DragSource::send(const char* message, std::vector<long> words, std::uintptr_t from) {
  words.resize(4);
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = target;
  event.xclient.message_type = atom(message);
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(from != 0 ? from : window);
  std::copy(words.begin(), words.end(), event.xclient.data.l + 1);
  XSendEvent(display, target, False, NoEventMask, &event);
  XSync(display, False);
}

void DragSource::pushSelection(const std::string& bytes) {
  const Atom selection = atom("XdndSelection");
  XChangeProperty(display, target, selection, atom("text/uri-list"), 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(bytes.data()),
                  static_cast<int>(bytes.size()));
  XEvent event{};
  event.xselection = {SelectionNotify,       0,         True, display, target, selection,
                      atom("text/uri-list"), selection, kTime};
  XSendEvent(display, target, False, NoEventMask, &event);
  XSync(display, False);
}

std::string DragSource::heard() {
  std::string text;
  XSync(display, False);
  while (XPending(display) > 0) {
    XEvent event;
    XNextEvent(display, &event);
    if (event.type == SelectionRequest) {
      const XSelectionRequestEvent& request = event.xselectionrequest;
      if (!dataType.empty()) {
        XChangeProperty(display, request.requestor, request.property, atom(dataType), 8,
                        PropModeReplace, reinterpret_cast<const unsigned char*>(data.data()),
                        static_cast<int>(data.size()));
      }
      XEvent answer{};
      answer.xselection = {SelectionNotify,
                           0,
                           True,
                           display,
                           request.requestor,
                           request.selection,
                           request.target,
                           dataType.empty() ? None : request.property,
                           request.time};
      XSendEvent(display, request.requestor, False, NoEventMask, &answer);
      XSync(display, False);
    } else if (event.type == ClientMessage) {
      char* const name = XGetAtomName(display, event.xclient.message_type);
      text += (text.empty() ? "" : " ") + std::string(name).substr(4) + ' ' +
              std::to_string(event.xclient.data.l[1] & 1);
      XFree(name);
    }
  }
  return text;
}

}  // namespace zum::test
