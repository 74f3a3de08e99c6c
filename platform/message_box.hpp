// The one way to tell a user of a failure that must be seen, and to ask for a yes. The texts wait
// here for a window that shows them; no thread waits for the user. One box at a time: what comes
// while one waits or shows goes to standard error, and a question is answered with a no.
#pragma once

#include <functional>
#include <optional>
#include <string>

namespace zum {

using MessageAnswer = std::function<void(bool)>;

struct Message {
  std::string caption;
  std::string text;
  MessageAnswer answer;   // empty when it is only told
  void* owner = nullptr;  // who asks
};

// ---- for those who tell and ask

/// [any] Without a window it goes to standard error, and the latest one is kept for the next
/// window.
void showMessage(const char* caption, const char* text);
/// [main] OK or Cancel: true for OK, on the main thread, later or at once. Without a window nobody
/// can say so.
void askMessage(void* owner, const char* caption, const char* text, MessageAnswer answer);
/// [main] The owner goes: its questions are dropped and never answered.
void cancelMessages(void* owner);

// ---- for windows, on the main thread

/// One more window polls.
void attachMessages();
/// One less; it has closed its box. With the last one, what is still asked is answered with a no.
void detachMessages();
/// What to show now. The window calls the answer once, if there is one; that closes the box for
/// others, too. Answers of owners that went meanwhile do nothing.
std::optional<Message> nextMessage();
/// The box is closed: the next one may come.
void messageClosed();

}  // namespace zum
