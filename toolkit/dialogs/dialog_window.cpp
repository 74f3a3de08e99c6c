#include "toolkit/dialogs/dialog_window.hpp"

#include "toolkit/dialogs/dialog_look.hpp"

namespace zum {
namespace {

/// Stands behind everything.
class Panel final : public CView {
 public:
  using CView::CView;
  void drawRect(CDrawContext& context, const CRect& area) override {
    context.setFillColor(dialog_look::kPanel);
    context.drawRect(area, DrawStyle::filled);
  }

 private:
  ~Panel() override = default;
};

/// A word on a plain ground that is lighter while it is pressed.
class WordButton final : public KvButton {
 public:
  WordButton(const CRect& rect, CControlListener* told, int buttonTag, KvFrame& owner,
             const char* word)
      : KvButton(rect, told, buttonTag, owner, nullptr, 0.0F, ButtonMode::click), caption(word) {}

  void draw(CDrawContext& context) override {
    context.setFillColor(isPressed() ? dialog_look::kLit : dialog_look::kButton);
    context.setFrameColor(dialog_look::kEdge);
    context.drawRect(getViewSize(), DrawStyle::filledAndStroked);
    context.setFont(font);
    context.setFontColor(dialog_look::kText);
    context.drawString(caption, getViewSize(), false, TextAlign::centre);
  }

 private:
  ~WordButton() override = default;

  std::string caption;
};

}  // namespace

DialogWindow::DialogWindow(CPoint size, const DialogPlace& shownAt)
    : shownPlace(shownAt),
      font(new CFontDesc("Arial", 12)),
      frame(new KvFrame({0, 0, size.x, size.y}, this, shownAt.factor)) {
  frame->setDefaultFont(font.get());
  put(new Panel(frame->getViewSize()));
}

DialogWindow::~DialogWindow() { frame->shut(); }

void DialogWindow::open(const std::string& title) {
  frame->open(0, title, shownPlace.opener, shownPlace.inFrontOf);
}

KvButton* DialogWindow::addButton(const char* caption, int tag, int fromRight) {
  const CRect& all = frame->getViewSize();
  const int right = all.right - kMargin - fromRight * (kButtonWidth + kMargin);
  const int bottom = all.bottom - kMargin;
  return put(new WordButton({right - kButtonWidth, bottom - kButtonHeight, right, bottom}, this,
                            tag, *frame.get(), caption));
}

void DialogWindow::valueChanged(CControl& control) {
  if (control.getTag() == kOkTag) accept();
  if (control.getTag() == kCancelTag) finish();
}

bool DialogWindow::keyPressed(const WindowKey& key) {
  if (key.virt == keys::kReturn || key.virt == keys::kEnter) accept();
  if (key.virt == keys::kEscape) finish();
  return true;
}

}  // namespace zum
