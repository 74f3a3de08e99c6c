// An X server that belongs to this process alone, without a screen, a user who sits at it, and
// another program's window on it.
// Free of X's own headers, whose macros do not agree with those of the tests.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

struct _XDisplay;  // NOLINT(bugprone-reserved-identifier): X's own name of Display

namespace zum::test {

/// 1024 by 768, 24 bits deep. Lives as long as the program needs it; made in the main thread, as
/// the server ends with the thread that made it. DISPLAY names it.
class OwnDisplay {
 public:
  OwnDisplay() noexcept;  // no test can go on without it
  ~OwnDisplay() { stop(); }
  OwnDisplay(const OwnDisplay&) = delete;
  OwnDisplay& operator=(const OwnDisplay&) = delete;

  /// Before the end, as a crash would.
  void stop();

 private:
  int process = -1;
};

struct Screenshot {
  int width;
  int height;
  std::vector<std::uint32_t> words;  // 0xRRGGBB
  std::uint32_t at(int x, int y) const {
    return words.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                    static_cast<std::size_t>(x));
  }
};

/// Moves the mouse, types and looks, on a connection of its own. What it does has arrived at the
/// server when the call comes back.
class Robot {
 public:
  Robot();
  ~Robot() { disconnect(); }
  Robot(const Robot&) = delete;
  Robot& operator=(const Robot&) = delete;

  /// Pixels from the top left corner of a window, also outside of it; 0 is the screen.
  void moveTo(std::uintptr_t window, int x, int y);
  void press(unsigned button = 1) { pushButton(button, true); }
  void release(unsigned button = 1) { pushButton(button, false); }
  void click(unsigned button = 1);
  void keyDown(unsigned long keySymbol) { pushKey(keySymbol, true); }
  void keyUp(unsigned long keySymbol) { pushKey(keySymbol, false); }
  void type(unsigned long keySymbol);

  /// What a window that is on the screen shows.
  Screenshot screenshot(std::uintptr_t window);
  /// The window that has it.
  std::uintptr_t focus();

  void giveFocus(std::uintptr_t window);
  /// As the button does that a window manager puts on it.
  void close(std::uintptr_t window);
  /// A window of the screen that is to be seen, by its title; 0 for none.
  std::uintptr_t findWindow(const std::string& title);

  _XDisplay* connection() { return display; }
  /// Before the server is stopped; a robot can do no more then.
  void disconnect();

 private:
  void pushButton(unsigned button, bool down);
  void pushKey(unsigned long keySymbol, bool down);

  _XDisplay* display;
};

/// Of another program, a host's: on a connection of its own, with room for an editor.
class HostWindow {
 public:
  explicit HostWindow(int left = 100, int depth = 24);
  ~HostWindow() { end(); }
  HostWindow(const HostWindow&) = delete;
  HostWindow& operator=(const HostWindow&) = delete;

  /// The program ends.
  void end();
  /// Symbols of the keys whose presses and releases came here.
  std::vector<unsigned long> keys();
  /// Width and height of the window that lies in it; zeros for none.
  std::pair<int, int> innerSize() const;

  _XDisplay* display;
  std::uintptr_t window;
};

}  // namespace zum::test
