#include "toolkit/dialogs/window_services.hpp"

#include <iostream>
#include <utility>

#include "platform/zenity_dialogs.hpp"
#include "toolkit/dialogs/own_file_dialogs.hpp"

namespace zum {
namespace {

std::unique_ptr<FileDialogs> makeDialogs(const DialogPlace& place) {
  if (ZenityDialogs::isInstalled()) return std::make_unique<ZenityDialogs>();
  return std::make_unique<OwnFileDialogs>(place);
}

}  // namespace

WindowServices& WindowServices::get() {
  static WindowServices services;
  return services;
}

void WindowServices::attach(const DialogPlace& shownAt) {
  attachMessages();
  if (windows++ > 0) return;
  place = shownAt;
  if (fileDialogs() != nullptr) return;
  dialogs = makeDialogs(place);
  setFileDialogs(dialogs.get());
}

// What is answered here may open a window again.
void WindowServices::detach() {
  if (--windows > 0) return detachMessages();
  box.reset();
  if (dialogs != nullptr) setFileDialogs(nullptr);
  const std::unique_ptr<FileDialogs> ended = std::move(dialogs);
  detachMessages();
}

void WindowServices::poll() {
  if (FileDialogs* const asked = fileDialogs(); asked != nullptr) asked->poll();
  if (windows > 0) pollMessages();
}

void WindowServices::pollMessages() {
  if (box == nullptr) return showNext();
  box->idle();
  if (!box->isDone()) return;
  const std::unique_ptr<MessageWindow> ended = std::move(box);
  const MessageAnswer answer = ended->getMessage().answer;
  messageClosed();
  if (answer) answer(ended->saidYes());
}

void WindowServices::showNext() {
  std::optional<Message> message = nextMessage();
  if (!message) return;
  box = std::make_unique<MessageWindow>(*message, place);
  if (box->isOpen()) return;
  box.reset();
  std::cerr << message->caption << ": " << message->text << std::endl;
  messageClosed();
  if (message->answer) message->answer(false);
}

}  // namespace zum
