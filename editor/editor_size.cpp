// How large the window is shown, and who may say so.

#include <cmath>

#include "editor/layout.hpp"
#include "editor/uni_client_editor.hpp"
#include "toolkit/view/window_fit.hpp"

namespace zum {
namespace {

constexpr CPoint kPlainSize{layout::kWindow.right, layout::kWindow.bottom};

WindowSize sizeAt(const Scale& scale) {
  const CPoint size = scale.rounded(kPlainSize);
  return {size.x, size.y};
}

}  // namespace

Scale KvUniClientEditor::firstScale() {
  const Scale wanted = wholeScale(kPlainSize, factorWanted.get());
  if (!firstRoom) return wanted;
  const Scale most = scaleInside(kPlainSize, {firstRoom->width, firstRoom->height});
  return wanted.factor() < most.factor() ? wanted : most;
}

/// What the window has, or will have when it opens, or when a hand comes to rest.
Scale KvUniClientEditor::scaleToBe() {
  return resting.coming().value_or(isOpen() ? Scale(factor()) : firstScale());
}

CPoint KvUniClientEditor::sizeForHost() { return scaleToBe().rounded(kPlainSize); }

/// False where the host keeps its window as it is. It may give another size inside of its answer,
/// as for want of room, or close our window.
bool KvUniClientEditor::showAt(const Scale& scale) {
  resting.forget();
  const WindowSize wanted = sizeAt(scale);
  isAskingForRoom = true;
  const bool agrees = ownsWindow || effect.sizeWindow(wanted.width, wanted.height);
  isAskingForRoom = false;
  if (!agrees || !isOpen()) return agrees;
  const Scale given = resting.coming().value_or(scale);
  resting.forget();
  if (given == Scale(factor())) return true;
  holdFrame()->letGo();  // a drag is measured in pixels of its size; the host may close the window
  if (isOpen()) setFactor(given.factor());
  return true;
}

bool KvUniClientEditor::setHostScale(double scale) {
  const std::lock_guard turn(windowTurn());
  if (!std::isfinite(scale) || scale <= 0.0) return false;
  factorWanted.hear(wholeScale(kPlainSize, scale).factor());
  if (isOpen()) showAt(wholeScale(kPlainSize, factorWanted.get()));
  return true;
}

WindowSize KvUniClientEditor::fitting(const WindowSize& offered) {
  return sizeAt(scaleInside(kPlainSize, {offered.width, offered.height}));
}

// What is smaller than any window of ours comes from a host that is about to lay it out.
void KvUniClientEditor::takeSize(const WindowSize& given) {
  const std::lock_guard turn(windowTurn());
  if (given.width < kPlainSize.x / 2 || given.height < kPlainSize.y / 2) return;
  const Scale scale = scaleInside(kPlainSize, {given.width, given.height});
  if (scale == scaleToBe()) return;
  if (!isAskingForRoom) factorWanted.choose(scale.factor());
  if (isOpen()) resting.want(scale);
}

void KvUniClientEditor::chooseFactor(double wanted) {
  const std::lock_guard turn(windowTurn());
  const Scale scale = wholeScale(kPlainSize, wanted);
  factorWanted.choose(scale.factor());
  factorWanted.keep();
  if (isOpen()) isRefused = !showAt(scale);
}

}  // namespace zum
