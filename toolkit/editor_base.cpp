#include "toolkit/editor_base.hpp"

#include <cstdint>

namespace zum {
namespace {

WindowKey keyOf(const VstKeyCode& key) { return {key.character, key.virt, key.modifier}; }

}  // namespace

bool AEffGUIEditor::getRect(ERect** answer) {
  hostRect = {static_cast<std::int16_t>(rect.top), static_cast<std::int16_t>(rect.left),
              static_cast<std::int16_t>(rect.bottom), static_cast<std::int16_t>(rect.right)};
  *answer = &hostRect;
  return true;
}

// A host may close the editor from inside of what a control tells it: the frame lasts that long.
void AEffGUIEditor::idle() {
  const Held<KvFrame> shown = frame;
  if (shown) shown->idle();
}

bool AEffGUIEditor::openFrame(void* parent, const CFontDesc* font,
                              const CFrame::WindowOpener& opener) {
  frame = Held<KvFrame>(new KvFrame(rect, this));
  frame->setDefaultFont(font);
  if (frame->open(reinterpret_cast<std::uintptr_t>(parent), {}, opener)) return true;
  frame = {};
  return false;
}

void AEffGUIEditor::closeFrame() {
  if (frame) frame->shut();
  frame = {};
}

PictureTable& KvEditorBase::pictures() {
  static PictureTable table;
  return table;
}

bool KvEditorBase::open(void* parent, const CFontDesc* font, const CFrame::WindowOpener& opener) {
  if (isOpen()) return false;
  if (!openFrame(parent, font, opener)) return false;
  pictures().open(pictureSource);
  WindowServices::get().attach({getFrame()->nativeHandle(), opener});
  return true;
}

void KvEditorBase::close() {
  if (!isOpen()) return;
  closeFrame();
  pictures().close();
  WindowServices::get().detach();
}

void KvEditorBase::idle() {
  KvFrame* const shown = getFrame();
  if (shown == nullptr) return;
  if (updateWanted.exchange(false)) shown->setDirty(true);
  if (redrawWanted.exchange(false)) shown->requestRedraw();
  AEffGUIEditor::idle();
  WindowServices::get().poll();  // last: an answer may close this window, and its effect
}

bool KvEditorBase::onKeyDown(VstKeyCode& key) {
  return isOpen() ? getFrame()->onKeyDown(keyOf(key)) : keyPressed(keyOf(key));
}

bool KvEditorBase::onKeyUp(VstKeyCode& key) {
  return isOpen() ? getFrame()->onKeyUp(keyOf(key)) : keyReleased(keyOf(key));
}

}  // namespace zum
