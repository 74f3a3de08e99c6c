#include "platform/x11_drop.hpp"

#include <X11/Xatom.h>

#include <algorithm>
#include <iterator>
#include <memory>
#include <utility>

#include "platform/uri_list.hpp"

namespace zum {
namespace {

constexpr long kVersion = 5;
constexpr long kOldestVersion = 3;     // of a source
constexpr long kMostWords = 1L << 18;  // of a selection: a megabyte
constexpr long kMostTypes = 1024;      // of a source's list
constexpr int kVersionShift = 24;      // of the second word of an enter
constexpr long kHasTypeList = 1;
constexpr long kAccepted = 1;
constexpr long kWantsEachMove = 2;

/// A property, of any window. What has another format, or goes on behind `mostWords`, is empty.
struct Property {
  Property(Display* display, Window window, Atom name, long mostWords, int wantedFormat) {
    unsigned long after = 0;
    unsigned char* read = nullptr;
    int format = 0;
    XGetWindowProperty(display, window, name, 0, mostWords, False, AnyPropertyType, &type, &format,
                       &count, &after, &read);
    data.reset(read);
    isCut = after != 0;
    if (!data || format != wantedFormat) count = 0;
  }

  struct Release {
    void operator()(unsigned char* released) const { XFree(released); }
  };
  Atom type = 0;
  unsigned long count = 0;
  bool isCut = false;
  std::unique_ptr<unsigned char, Release> data;
};

}  // namespace

X11DropTarget::X11DropTarget(Display* connection, Window target)
    : display(connection), window(target) {
  constexpr const char* kAtomNames[] = {"XdndAware",      "XdndEnter",     "XdndPosition",
                                        "XdndStatus",     "XdndLeave",     "XdndDrop",
                                        "XdndFinished",   "XdndSelection", "XdndTypeList",
                                        "XdndActionCopy", "text/uri-list", "INCR"};
  static_assert(std::size(kAtomNames) == kNames);
  std::array<char*, kNames> names{};
  std::transform(std::begin(kAtomNames), std::end(kAtomNames), names.begin(),
                 [](const char* name) { return const_cast<char*>(name); });
  XInternAtoms(display, names.data(), kNames, False, atoms.data());
  XChangeProperty(display, window, atoms[aware], XA_ATOM, 32, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(&kVersion), 1);
}

std::optional<X11DropTarget::Drop> X11DropTarget::take(const XEvent& event) {
  if (event.type == SelectionNotify) return end(event.xselection);
  const XClientMessageEvent& message = event.xclient;
  if (event.type != ClientMessage || message.format != 32) return {};
  if (message.message_type == atoms[enter]) {
    begin(message);
    return {};
  }
  if (source == 0 || static_cast<Window>(message.data.l[0]) != source) return {};
  if (message.message_type == atoms[position]) follow(message);
  if (message.message_type == atoms[drop]) fetch(message);
  if (message.message_type == atoms[leave]) source = 0;
  return {};
}

/// Another drag that was left open is forgotten.
void X11DropTarget::begin(const XClientMessageEvent& message) {
  const long version = message.data.l[1] >> kVersionShift & 0xFF;
  source = version < kOldestVersion ? 0 : static_cast<Window>(message.data.l[0]);
  asked.reset();
  accepts = source != 0 && offersFiles(message);
}

/// Three types come with the message, more in a list.
bool X11DropTarget::offersFiles(const XClientMessageEvent& message) const {
  const auto isFiles = [this](unsigned long type) { return type == atoms[uriList]; };
  if ((message.data.l[1] & kHasTypeList) == 0) {
    return std::any_of(message.data.l + 2, message.data.l + 5,
                       [&](long type) { return isFiles(static_cast<unsigned long>(type)); });
  }
  const Property types(display, source, atoms[typeList], kMostTypes, 32);
  const auto* const first = reinterpret_cast<const unsigned long*>(types.data.get());
  return types.count > 0 && std::any_of(first, first + types.count, isFiles);
}

void X11DropTarget::follow(const XClientMessageEvent& message) {
  const auto place = static_cast<unsigned long>(message.data.l[2]);
  const auto half = [place](unsigned shift) { return static_cast<int>(place >> shift & 0xFFFFU); };
  Window ignored = 0;
  XTranslateCoordinates(display, DefaultRootWindow(display), window, half(16), half(0), &x, &y,
                        &ignored);
  const long taken = accepts ? kAccepted | kWantsEachMove : kWantsEachMove;
  answer(status, {taken, 0, 0, accepts ? static_cast<long>(atoms[copy]) : 0});
}

void X11DropTarget::fetch(const XClientMessageEvent& message) {
  if (!accepts) {
    answer(finished, {});
    source = 0;
    return;
  }
  asked = static_cast<Time>(message.data.l[2]);
  XConvertSelection(display, atoms[selection], atoms[uriList], atoms[selection], window, *asked);
  XFlush(display);
}

std::optional<X11DropTarget::Drop> X11DropTarget::end(const XSelectionEvent& event) {
  if (!asked || event.selection != atoms[selection] || event.time != *asked) return {};
  asked.reset();
  Drop dropped{x, y, {}};
  if (event.property == atoms[selection]) {
    if (const auto list = readSelection()) dropped.files = filesOfUriList(*list);
  }
  const bool done = !dropped.files.empty();
  answer(finished, {done ? kAccepted : 0, done ? static_cast<long>(atoms[copy]) : 0});
  source = 0;
  if (!done) return {};
  return dropped;
}

/// What is too long is refused, and so is what the source would send piece by piece.
std::optional<std::string> X11DropTarget::readSelection() {
  const Property list(display, window, atoms[selection], kMostWords, 8);
  if (list.type == atoms[incremental]) return {};  // stays: gone, it would ask for the first piece
  XDeleteProperty(display, window, atoms[selection]);
  if (list.count == 0 || list.isCut) return {};
  return std::string(reinterpret_cast<const char*>(list.data.get()), list.count);
}

void X11DropTarget::answer(Name what, const Words& words) const {
  XEvent event{};
  event.xclient.type = ClientMessage;
  event.xclient.window = source;
  event.xclient.message_type = atoms[what];
  event.xclient.format = 32;
  event.xclient.data.l[0] = static_cast<long>(window);
  std::copy(words.begin(), words.end(), event.xclient.data.l + 1);
  XSendEvent(display, source, False, NoEventMask, &event);
  XFlush(display);
}

}  // namespace zum
