#include "toolkit/dialogs/message_window.hpp"

#include <utility>

#include "toolkit/dialogs/wrapped_text.hpp"

namespace zum {
namespace {

constexpr int kWidth = 400;      // pixels
constexpr int kTextMargin = 18;  // of the text, pixels
constexpr int kBelow = 54;       // for the buttons, pixels

std::vector<std::string> linesOf(const Message& message, double factor) {
  const Held<CFontDesc> font(new CFontDesc("Arial", 12));
  return wrapText(message.text, *font.get(), kWidth - 2 * kTextMargin, Scale(factor));
}

int heightOf(const Message& message, double factor) {
  const auto count = static_cast<int>(linesOf(message, factor).size());
  return kTextMargin + count * WrappedText::kLineHeight + kBelow;
}

}  // namespace

MessageWindow::MessageWindow(Message shown, const DialogPlace& place)
    : DialogWindow({kWidth, heightOf(shown, place.factor)}, place), message(std::move(shown)) {
  const CRect all = getFrame().getViewSize();
  put(new WrappedText({kTextMargin, kTextMargin, all.right - kTextMargin, all.bottom - kBelow},
                      linesOf(message, place.factor), getFont()));
  const bool isQuestion = static_cast<bool>(message.answer);
  if (isQuestion) addButton("Cancel", kCancelTag, 0);
  addButton("OK", kOkTag, isQuestion ? 1 : 0);
  open(message.caption);
}

}  // namespace zum
