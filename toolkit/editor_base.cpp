#include "toolkit/editor_base.hpp"

#include <cstdint>

#include "state/library_record.hpp"

namespace zum {
namespace {

WindowKey keyOf(const VstKeyCode& key) { return {key.character, key.virt, key.modifier}; }

}  // namespace

bool AEffGUIEditor::getRect(ERect** answer) {
  hostRect = {static_cast<std::int16_t>(bounds.top), static_cast<std::int16_t>(bounds.left),
              static_cast<std::int16_t>(bounds.bottom), static_cast<std::int16_t>(bounds.right)};
  *answer = &hostRect;
  return true;
}

void AEffGUIEditor::idle() {
  const Held<KvFrame> shown = holdFrame();
  if (shown) shown->idle();
}

void AEffGUIEditor::draw(ERect* rect) {
  if (frame) frame->invalidRect({rect->left, rect->top, rect->right, rect->bottom});
}

bool AEffGUIEditor::openFrame(void* parent, const CFontDesc* font,
                              const CFrame::WindowOpener& opener) {
  frame = Held<KvFrame>(new KvFrame(bounds, this));
  frame->setDefaultFont(font);
  // The title is for a window of its own; inside of a host's nobody sees it.
  const char* const title = libraryRecord().product;
  if (frame->open(reinterpret_cast<std::uintptr_t>(parent), title, opener)) return true;
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
  WindowServices::get().attach(this, {getFrame()->nativeHandle(), opener});
  return true;
}

void KvEditorBase::close() {
  if (!isOpen()) return;
  closeFrame();
  pictures().close();
  WindowServices::get().detach(this);
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
  const Held<KvFrame> shown = holdFrame();
  return shown ? shown->onKeyDown(keyOf(key)) : keyPressed(keyOf(key));
}

bool KvEditorBase::onKeyUp(VstKeyCode& key) {
  const Held<KvFrame> shown = holdFrame();
  return shown ? shown->onKeyUp(keyOf(key)) : keyReleased(keyOf(key));
}

}  // namespace zum
