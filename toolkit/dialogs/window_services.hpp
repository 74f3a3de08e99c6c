// What all windows of a process share: the dialogs that ask for files, the box with a message, and
// the way to the desktop. There from the first window that opens to the last one that closes.
#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "platform/clipboard.hpp"
#include "platform/desktop_opener.hpp"
#include "platform/file_dialogs.hpp"
#include "toolkit/dialogs/message_window.hpp"

namespace zum {

/// [main]
class WindowServices {
 public:
  static WindowServices& get();

  /// A window opened. Dialogs come up in front of the newest one.
  void attach(const void* window, const DialogPlace& place);
  /// Its dialogs come up at this factor from now on.
  void rescale(const void* window, double factor);
  /// It closed. With the last one everything that is open is closed, and answered as cancelled.
  void detach(const void* window);
  /// Every tick of every window. What is answered here may close windows.
  void poll();

  /// In the desktop's own program; a message tells when there is none.
  void showFile(const std::string& internalPath);

  /// Of the system, from the first use on. The text that was given goes with the last window.
  Clipboard& clipboard();
  /// Another one in its place, in tests.
  void setClipboard(std::unique_ptr<Clipboard> other) { shared = std::move(other); }

  /// Windows take no input meanwhile.
  bool isMessageOpen() const { return box != nullptr; }
  MessageWindow* getMessageWindow() const { return box.get(); }

 private:
  /// Of the newest window.
  DialogPlace place() const { return windows.empty() ? DialogPlace{} : windows.back().second; }
  std::unique_ptr<FileDialogs> makeDialogs();
  void pollMessages();
  void showNext();

  std::vector<std::pair<const void*, DialogPlace>> windows;
  std::unique_ptr<FileDialogs> dialogs;  // null where the process has others
  std::unique_ptr<MessageWindow> box;
  DesktopOpener desktop;
  std::shared_ptr<Clipboard> shared;  // null until it is used
};

}  // namespace zum
