#include "platform/message_box.hpp"

#include <algorithm>
#include <iostream>
#include <memory>
#include <mutex>
#include <string_view>
#include <utility>

#include "platform/printable_text.hpp"

namespace zum {
namespace {

/// The asker's side of an open box. The answer leaves when it is given or cancelled.
struct Box {
  MessageAnswer answer;
  void* owner;
};

struct MessageBoard {
  std::mutex guard;
  int windows = 0;
  std::optional<Message> pending;
  std::shared_ptr<Box> open;  // null while none shows

  bool isFree() const { return windows > 0 && !pending && open == nullptr; }
};

MessageBoard board;

// What names hold may act on a terminal; line ends are those of the text.
void tell(const std::string& caption, const std::string& text) {
  std::string shown = caption + ": ";
  for (std::size_t at = 0; at < text.size();) {
    const std::size_t end = std::min(text.find_first_of("\n\t", at), text.size());
    shown += printable(std::string_view(text).substr(at, end - at));
    if (end < text.size()) shown += text[end];
    at = end + 1;
  }
  std::cerr << shown << '\n';
}

// Closed before the call, so that what the asker has to say next is seen.
void reply(const std::shared_ptr<Box>& box, bool yes) {
  MessageAnswer answer;
  {
    const std::lock_guard lock(board.guard);
    answer = std::exchange(box->answer, nullptr);
    if (board.open == box) board.open.reset();
  }
  if (answer) answer(yes);
}

}  // namespace

void showMessage(const char* caption, const char* text) {
  {
    const std::lock_guard lock(board.guard);
    const bool isSeen = board.isFree();
    if (isSeen || board.windows == 0) board.pending = Message{caption, text, {}, nullptr};
    if (isSeen) return;
  }
  tell(caption, text);
}

void askMessage(void* owner, const char* caption, const char* text, MessageAnswer answer) {
  {
    const std::lock_guard lock(board.guard);
    if (board.isFree()) {
      board.pending = Message{caption, text, std::move(answer), owner};
      return;
    }
  }
  tell(caption, text);
  answer(false);
}

void cancelMessages(void* owner) {
  MessageAnswer dropped;  // what it holds ends outside of the lock
  const std::lock_guard lock(board.guard);
  if (board.pending && board.pending->answer && board.pending->owner == owner) {
    dropped = std::move(board.pending->answer);
    board.pending.reset();
  }
  if (board.open != nullptr && board.open->owner == owner) dropped.swap(board.open->answer);
}

void attachMessages() {
  const std::lock_guard lock(board.guard);
  ++board.windows;
}

void detachMessages() {
  std::optional<Message> unseen;
  MessageAnswer unanswered;
  {
    const std::lock_guard lock(board.guard);
    if (board.windows == 0 || --board.windows > 0) return;
    if (board.open != nullptr) unanswered = std::exchange(board.open->answer, nullptr);
    board.open.reset();
    unseen = board.pending;
    if (unseen && unseen->answer) {
      unanswered = std::move(unseen->answer);
      board.pending.reset();
    }
  }
  if (unseen) tell(unseen->caption, unseen->text);
  if (unanswered) unanswered(false);
}

std::optional<Message> nextMessage() {
  const std::lock_guard lock(board.guard);
  if (board.open != nullptr || !board.pending) return std::nullopt;
  Message message = *std::move(board.pending);
  board.pending.reset();
  board.open = std::make_shared<Box>(Box{std::exchange(message.answer, nullptr), message.owner});
  if (board.open->answer) {
    message.answer = [box = board.open](bool yes) { reply(box, yes); };
  }
  return message;
}

void messageClosed() {
  const std::lock_guard lock(board.guard);
  board.open.reset();
}

}  // namespace zum
