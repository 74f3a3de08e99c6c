#include "toolkit/view/frame.hpp"

#include <algorithm>
#include <array>

namespace zum {
namespace {

cairo_surface_t* makePicture(CPoint size) {
  return cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.x, size.y);
}

}  // namespace

CFrame::CFrame(const CRect& rect, double factor)
    : CViewContainer(rect),
      screen(factor),
      shownFrames(screen.factor()),
      picture(makePicture(screenSize())) {
  invalidate();
}

void CFrame::setFactor(double factor) {
  const Scale wanted(factor);
  if (wanted == screen) return;
  screen = wanted;
  shownFrames.move(screen.factor());
  const CPoint size = screenSize();
  picture.reset(makePicture(size));
  if (window) window->resize(size.x, size.y);
  shown.clear();
  invalidate();
}

bool CFrame::open(std::uintptr_t parent, const std::string& title, const WindowOpener& opener,
                  std::uintptr_t inFrontOf) {
  return open({.parent = parent, .title = title, .inFrontOf = inFrontOf}, opener);
}

bool CFrame::open(WindowRequest request, const WindowOpener& opener) {
  request.width = screenSize().x;
  request.height = screenSize().y;
  window = opener(request, *this);
  return window != nullptr;
}

void CFrame::idle() {
  pollWindow();
  paint();
}

void CFrame::paint() {
  if (gone) return;
  gatherDamage(pending);
  for (const CRect& part : pending.parts()) {
    const CRect onScreen = screen.outward(part).meet(screenRect());
    CDrawContext context(picture.get(), onScreen, screen);
    drawRect(context, context.clip());
    shown.add(onScreen);
  }
  pending.clear();
  if (window && !shown.isEmpty()) {
    std::array<cairo_rectangle_int_t, Damage::kRects> parts;
    const auto end =
        std::ranges::transform(shown.parts(), parts.begin(), [](const CRect& part) {
          return cairo_rectangle_int_t{part.left, part.top, part.width(), part.height()};
        }).out;
    window->show(picture.get(), {parts.begin(), end});
  }
  shown.clear();
}

// During a drag the dragged view counts as the one under the pointer.
void CFrame::followPointer(int buttons) {
  if (gone || captured() != nullptr) return;
  CView* const under = pointer ? getViewAt(*pointer, buttons) : nullptr;
  if (under == hovered.get()) return;
  const Held<CView> left = std::move(hovered);
  if (under != nullptr) under->remember();
  hovered = Held<CView>(under);
  CPoint where = pointer.value_or(CPoint{-1, -1});
  if (left) left->onMouseExited(where, buttons);
  if (under != nullptr) under->onMouseEntered(where, buttons);
}

void CFrame::windowPressed(int x, int y, int buttonWord) {
  if (gone) return;
  CPoint where = pointAt(x, y);
  pointer = where;
  followPointer(buttonWord);
  onMouseDown(where, buttonWord);
}

void CFrame::windowReleased(int x, int y, int buttonWord) {
  if (gone) return;
  CPoint where = pointAt(x, y);
  pointer = where;
  onMouseUp(where, buttonWord);
  followPointer(buttonWord);
}

void CFrame::windowMoved(int x, int y, int buttonWord) {
  if (gone) return;
  CPoint where = pointAt(x, y);
  pointer = where;
  onMouseMoved(where, buttonWord);
  followPointer(buttonWord);
}

void CFrame::windowLeft() {
  pointer.reset();
  followPointer(0);
}

void CFrame::windowScrolled(int x, int y, float distance, int buttonWord) {
  if (gone) return;
  CPoint where = pointAt(x, y);
  pointer = where;
  followPointer(buttonWord);
  onWheel(where, distance, buttonWord);
}

void CFrame::windowExposed(int left, int top, int right, int bottom) {
  shown.add(CRect{left, top, right, bottom}.meet(screenRect()));
}

}  // namespace zum
