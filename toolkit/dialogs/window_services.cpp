#include "toolkit/dialogs/window_services.hpp"

#include <iostream>
#include <utility>

#include "platform/files.hpp"
#include "platform/zenity_dialogs.hpp"
#include "state/library_record.hpp"
#include "toolkit/dialogs/own_file_dialogs.hpp"

namespace zum {

WindowServices& WindowServices::get() {
  static WindowServices services;
  return services;
}

std::unique_ptr<FileDialogs> WindowServices::makeDialogs() {
  if (ZenityDialogs::isInstalled()) return std::make_unique<ZenityDialogs>();
  return std::make_unique<OwnFileDialogs>([this] { return place(); });
}

void WindowServices::attach(const void* window, const DialogPlace& shownAt) {
  std::unique_ptr<FileDialogs> fresh;
  if (fileDialogs() == nullptr) fresh = makeDialogs();
  windows.emplace_back(window, shownAt);
  attachMessages();  // from here on nothing fails
  if (fresh == nullptr) return;
  dialogs = std::move(fresh);
  setFileDialogs(dialogs.get());
}

void WindowServices::rescale(const void* window, double factor) {
  for (auto& [each, place] : windows) {
    if (each == window) place.factor = factor;
  }
}

// What is answered here may open a window again.
void WindowServices::detach(const void* window) {
  std::erase_if(windows, [window](const auto& each) { return each.first == window; });
  if (!windows.empty()) return detachMessages();
  box.reset();
  shared.reset();
  if (dialogs != nullptr) setFileDialogs(nullptr);
  const std::unique_ptr<FileDialogs> ended = std::move(dialogs);
  detachMessages();
}

void WindowServices::showFile(const std::string& internalPath) {
  const std::string path = toSystemPath(internalPath);
  if (!fileExists(internalPath)) {
    showMessage(libraryRecord().product, ("The file " + path + " is not there.").c_str());
  } else if (!desktop.open(internalPath)) {
    showMessage(libraryRecord().product, ("Open this file in your browser:\n" + path).c_str());
  }
}

Clipboard& WindowServices::clipboard() {
  if (shared == nullptr) shared = openClipboard();
  return *shared;
}

void WindowServices::poll() {
  desktop.poll();
  if (const auto polled = shared; polled != nullptr) polled->poll();  // also past the last window
  if (FileDialogs* const asked = fileDialogs(); asked != nullptr) asked->poll();
  if (!windows.empty()) pollMessages();
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
  box = std::make_unique<MessageWindow>(*message, place());
  if (box->isOpen()) return;
  box.reset();
  std::cerr << message->caption << ": " << message->text << '\n';
  messageClosed();
  if (message->answer) message->answer(false);
}

}  // namespace zum
