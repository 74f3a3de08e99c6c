// The box with a message: a text, and OK, or OK and Cancel for a question.
#pragma once

#include "platform/message_box.hpp"
#include "toolkit/dialogs/dialog_window.hpp"

namespace zum {

/// [main]
class MessageWindow final : public DialogWindow {
 public:
  MessageWindow(Message shown, const DialogPlace& place);

  const Message& getMessage() const { return message; }
  /// A window that was closed said no.
  bool saidYes() const { return yes; }

 private:
  void accept() override {
    yes = true;
    finish();
  }

  Message message;
  bool yes = false;
};

}  // namespace zum
