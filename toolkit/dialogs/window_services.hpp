// What all windows of a process share: the dialogs that ask for files, and the box with a message.
// There from the first window that opens to the last one that closes.
#pragma once

#include <memory>

#include "platform/file_dialogs.hpp"
#include "toolkit/dialogs/message_window.hpp"

namespace zum {

/// [main]
class WindowServices {
 public:
  static WindowServices& get();

  /// A window opened. Dialogs come up in front of the first one.
  void attach(const DialogPlace& place);
  /// It closed. With the last one everything that is open is closed, and answered as cancelled.
  void detach();
  /// Every tick of every window. What is answered here may close windows.
  void poll();

  /// Windows take no input meanwhile.
  bool isMessageOpen() const { return box != nullptr; }
  MessageWindow* getMessageWindow() const { return box.get(); }

 private:
  void pollMessages();
  void showNext();

  int windows = 0;
  DialogPlace place;
  std::unique_ptr<FileDialogs> dialogs;  // null where the process has others
  std::unique_ptr<MessageWindow> box;
};

}  // namespace zum
