// Another program that the user drags files out of, with or without manners.
// Free of X's own headers, whose macros do not agree with those of the tests.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): X's own name of Display

namespace zum::test {

/// On a connection of its own. What it says has arrived at the server when the call comes back.
class DragSource {
 public:
  explicit DragSource(std::uintptr_t window);
  ~DragSource() { end(); }
  DragSource(const DragSource&) = delete;
  DragSource& operator=(const DragSource&) = delete;

  /// What the target says of itself; 0 for no target.
  long targetVersion();

  // The messages of a drag, in their order. Types beyond three go into a list.
  void enter(const std::vector<std::string>& types, long version = 5);
  void moveTo(int x, int y);  // pixels of the target
  void leave() { send("XdndLeave", {0, 0, 0, 0}); }
  void drop() { send("XdndDrop", {0, kTime, 0, 0}); }
  /// Any message, in the name of this window or of another one.
  void send(const char* message, std::vector<long> words, std::uintptr_t from = 0);
  /// A selection that nobody has asked for.
  void pushSelection(const std::string& bytes);

  /// Hands over what it is asked for; what came back, as "status 1" and "finished 0".
  std::string heard();
  /// The program ends.
  void end();

  std::string data;                        // that it hands over
  std::string dataType = "text/uri-list";  // as which it says so; empty refuses
  std::string listType = "ATOM";           // of the list of types
  std::uintptr_t window;

 private:
  static constexpr long kTime = 4242;

  unsigned long atom(const std::string& name);

  _XDisplay* display;
  std::uintptr_t target;
};

}  // namespace zum::test
