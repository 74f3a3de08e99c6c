#include "platform/clipboard_x11.hpp"

#include <X11/Xatom.h>

#include <algorithm>
#include <iterator>
#include <utility>

namespace zum {
namespace {

constexpr std::chrono::seconds kPatience{2};
constexpr std::chrono::seconds kMostPatience{10};
constexpr int kQuestions = 8;  // until a property is used again

}  // namespace

std::unique_ptr<Clipboard> openClipboard() {
  auto system = std::make_unique<X11Clipboard>();
  if (system->isOpen()) return system;
  return std::make_unique<OwnClipboard>();
}

X11Clipboard::X11Clipboard() : display(connectToServer(lost)) {
  if (display == nullptr) return;
  X11Guard guard(display);
  constexpr const char* kAtomNames[] = {
      "CLIPBOARD", "TARGETS", "TIMESTAMP", "UTF8_STRING", "text/plain;charset=utf-8", "INCR"};
  static_assert(std::size(kAtomNames) == kNames);
  std::array<char*, kNames> names{};
  std::transform(std::begin(kAtomNames), std::end(kAtomNames), names.begin(),
                 [](const char* name) { return const_cast<char*>(name); });
  XInternAtoms(display, names.data(), kNames, False, atoms.data());
  window = XCreateSimpleWindow(display, DefaultRootWindow(display), -1, -1, 1, 1, 0, 0, 0);
  XSelectInput(display, window, PropertyChangeMask);
  guard.failed();
}

X11Clipboard::~X11Clipboard() {
  if (display == nullptr) return;
  X11Guard guard(display);
  if (!lost) XDestroyWindow(display, window);
  XCloseDisplay(display);
}

bool X11Clipboard::give(std::string given) {
  if (!isOpen() || given.size() > kMostBytes) return false;
  X11Guard guard(display);
  text = std::move(given);
  XSetSelectionOwner(display, atoms[clipboard], window, CurrentTime);
  isOwner = XGetSelectionOwner(display, atoms[clipboard]) == window;
  return !guard.failed() && isOwner && !lost;
}

void X11Clipboard::ask(const void* owner, Answer answer) {
  asked.add(owner, std::move(answer));
  received.clear();
  state = State::done;
  isWhole = isOwner;
  if (isOwner) received = text;
  if (isOwner || !isOpen()) return;
  X11Guard guard(display);
  question = (question + 1) % kQuestions;
  const std::string name = "ZUM_CLIPBOARD_" + std::to_string(question);
  property = XInternAtom(display, name.c_str(), False);
  XDeleteProperty(display, window, property);
  XConvertSelection(display, atoms[clipboard], atoms[utf8], property, window, CurrentTime);
  guard.failed();
  state = State::converting;
  silentUntil = Clock::now() + kPatience;
  latest = Clock::now() + kMostPatience;
}

// Answers come when the guard is gone: who hears them may call the host.
void X11Clipboard::poll() {
  if (isOpen()) {
    X11Guard guard(display);
    bool any = false;
    while (!lost && XPending(display) > 0) {
      XEvent event;
      XNextEvent(display, &event);
      handle(event);
      any = true;
    }
    if (any && !lost) guard.failed();
  }
  const bool isWaiting = state == State::converting || state == State::receiving;
  const auto now = Clock::now();
  if (isWaiting && (!isOpen() || now > silentUntil || now > latest)) end(false);
  asked.answerEarlier();
  if (state != State::done || asked.hasEarlier()) return;
  state = State::idle;
  const std::string whole = std::exchange(received, {});
  asked.answerFirst(isWhole ? std::optional(whole) : std::nullopt);
}

void X11Clipboard::handle(const XEvent& event) {
  switch (event.type) {
    case SelectionRequest: return answerRequest(event.xselectionrequest);
    case SelectionClear:
      if (event.xselectionclear.selection != atoms[clipboard]) return;
      // It may tell of a text that was copied here before, and the latest one is still there.
      isOwner = XGetSelectionOwner(display, atoms[clipboard]) == window;
      if (!isOwner) text.clear();
      return;
    case SelectionNotify:
      if (state == State::converting && event.xselection.selection == atoms[clipboard]) {
        takeFirst(event.xselection);
      }
      return;
    case PropertyNotify:
      if (state == State::receiving && event.xproperty.atom == property &&
          event.xproperty.state == PropertyNewValue) {
        takePiece();
      }
      return;
    default: return;
  }
}

// ---- for others

void X11Clipboard::answerRequest(const XSelectionRequestEvent& request) const {
  // An old client names none.
  const Atom to = request.property != 0 ? request.property : request.target;
  XEvent event{};
  event.xselection.type = SelectionNotify;
  event.xselection.requestor = request.requestor;
  event.xselection.selection = request.selection;
  event.xselection.target = request.target;
  event.xselection.time = request.time;
  const bool isHanded = isOwner && request.selection == atoms[clipboard] && hand(request, to);
  event.xselection.property = isHanded ? to : 0;
  XSendEvent(display, request.requestor, False, NoEventMask, &event);
}

// Piece by piece is for texts that no request of the server's has room for.
bool X11Clipboard::hand(const XSelectionRequestEvent& request, Atom to) const {
  if (request.target == atoms[targets]) {
    const std::array<Atom, 4> list = {atoms[targets], atoms[timestamp], atoms[utf8],
                                      atoms[plainUtf8]};
    XChangeProperty(display, request.requestor, to, XA_ATOM, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(list.data()), list.size());
    return true;
  }
  if (request.target == atoms[timestamp]) {
    const long when = CurrentTime;
    XChangeProperty(display, request.requestor, to, XA_INTEGER, 32, PropModeReplace,
                    reinterpret_cast<const unsigned char*>(&when), 1);
    return true;
  }
  constexpr long kHeaderWords = 16;
  const long words = std::max(XExtendedMaxRequestSize(display), XMaxRequestSize(display));
  const bool hasRoom = text.size() < static_cast<std::size_t>(words - kHeaderWords) * 4;
  if ((request.target != atoms[utf8] && request.target != atoms[plainUtf8]) || !hasRoom) {
    return false;
  }
  XChangeProperty(display, request.requestor, to, request.target, 8, PropModeReplace,
                  reinterpret_cast<const unsigned char*>(text.data()),
                  static_cast<int>(text.size()));
  return true;
}

// ---- from others

X11Clipboard::Piece X11Clipboard::readProperty() const {
  constexpr long kMostWords = static_cast<long>(kMostBytes) / 4 + 1;
  Piece piece;
  int format = 0;
  unsigned long count = 0;
  unsigned long after = 0;
  unsigned char* data = nullptr;
  if (XGetWindowProperty(display, window, property, 0, kMostWords, False, AnyPropertyType,
                         &piece.type, &format, &count, &after, &data) != Success) {
    return piece;
  }
  const std::unique_ptr<unsigned char, int (*)(void*)> release(data, XFree);
  piece.isText = format == 8 && after == 0;
  if (piece.isText && data != nullptr) {
    piece.bytes.assign(reinterpret_cast<const char*>(data), count);
  }
  XDeleteProperty(display, window, property);
  return piece;
}

void X11Clipboard::takeFirst(const XSelectionEvent& event) {
  if (event.property != property) {
    if (event.property == 0 && event.target == atoms[utf8]) end(false);
    return;  // else of a question that was given up
  }
  Piece piece = readProperty();
  silentUntil = Clock::now() + kPatience;
  if (piece.type == atoms[incremental]) {
    state = State::receiving;
    return;
  }
  received = std::move(piece.bytes);
  end(piece.isText && received.size() <= kMostBytes);
}

// The end is a piece without a byte.
void X11Clipboard::takePiece() {
  const Piece piece = readProperty();
  silentUntil = Clock::now() + kPatience;
  if (!piece.isText || received.size() + piece.bytes.size() > kMostBytes) return end(false);
  if (piece.bytes.empty()) return end(true);
  received += piece.bytes;
}

void X11Clipboard::end(bool whole) {
  isWhole = whole;
  state = State::done;
}

}  // namespace zum
