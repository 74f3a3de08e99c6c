// How large the window is shown, and who may say so.

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

/// What the window has, or will have when it opens, or when a hand comes to rest.
Scale KvUniClientEditor::scaleToBe() {
  return resting.coming().value_or(isOpen() ? Scale(factor())
                                            : wholeScale(kPlainSize, factorWanted.get()));
}

CPoint KvUniClientEditor::sizeForHost() { return scaleToBe().rounded(kPlainSize); }

/// False where the host keeps its window as it is. It may close ours inside of its answer.
bool KvUniClientEditor::showAt(const Scale& scale) {
  const WindowSize wanted = sizeAt(scale);
  if (!effect.sizeWindow(wanted.width, wanted.height)) return false;
  resting.forget();
  setFactor(scale.factor());
  return true;
}

bool KvUniClientEditor::setHostScale(double scale) {
  const std::lock_guard turn(windowTurn());
  if (!factorWanted.hear(scale)) return false;
  if (isOpen()) showAt(wholeScale(kPlainSize, factorWanted.get()));
  return true;
}

WindowSize KvUniClientEditor::fitting(const WindowSize& offered) {
  return sizeAt(scaleInside(kPlainSize, {offered.width, offered.height}));
}

void KvUniClientEditor::takeSize(const WindowSize& given) {
  const std::lock_guard turn(windowTurn());
  const Scale scale = scaleInside(kPlainSize, {given.width, given.height});
  if (scale == scaleToBe()) return;
  factorWanted.choose(scale.factor());
  if (isOpen()) resting.want(scale);
}

void KvUniClientEditor::chooseFactor(double wanted) {
  const std::lock_guard turn(windowTurn());
  const Scale scale = wholeScale(kPlainSize, wanted);
  factorWanted.choose(scale.factor());
  factorWanted.keep();
  if (isOpen()) showAt(scale);
}

}  // namespace zum
