// Another program with a clipboard, with or without manners.
// Free of X's own headers, whose macros do not agree with those of the tests.
#pragma once

#include <string>
#include <vector>

struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): X's own name of Display

namespace zum::test {

/// On a connection of its own.
class SelectionPeer {
 public:
  SelectionPeer();
  ~SelectionPeer();
  SelectionPeer(const SelectionPeer&) = delete;
  SelectionPeer& operator=(const SelectionPeer&) = delete;

  /// Has the clipboard from now on.
  void own();
  /// Asks for it as a type; answered by takeAnswer().
  void ask(const std::string& type);
  /// Hands over what it is asked for, piece by piece as the other side takes it; hears answers.
  void poll();

  // How it answers.
  bool isSilent = false;
  bool refuses = false;
  std::string type = "UTF8_STRING";
  int format = 8;
  std::vector<std::string> pieces;  // one is handed over at once, several piece by piece
  bool breaksOff = false;           // ahead of the end of several

  bool isAnswered = false;
  std::string answer;  // bytes; of a refusal "refused"

 private:
  unsigned long atom(const std::string& name) const;
  void put(unsigned long requestor, unsigned long property, const std::string& bytes) const;

  _XDisplay* display;
  unsigned long window;
  unsigned long requestor = 0;
  unsigned long property = 0;
  std::size_t next = 0;
};

}  // namespace zum::test
