#include "toolkit/editor_base.hpp"

#include <cstdint>
#include <new>

#include "state/library_record.hpp"

namespace zum {

PictureTable& KvEditorBase::pictures() {
  static PictureTable table(1000, 59);
  return table;
}

bool KvEditorBase::open(void* parent, const CFontDesc* font, const CFrame::WindowOpener& opener) {
  if (isOpen()) return false;
  const Held<KvFrame> fresh(new KvFrame(bounds, this, factor()));
  fresh->setDefaultFont(font);
  fresh->walkByKeys();
  // The title is for a window of its own; inside of a host's nobody sees it.
  const char* const title = libraryRecord().product;
  if (!fresh->open(reinterpret_cast<std::uintptr_t>(parent), title, opener)) return false;
  pictures().open(pictureSource);
  try {
    WindowServices::get().attach(this, {fresh->nativeHandle(), opener, factor()});
  } catch (const std::bad_alloc&) {
    pictures().close();
    throw;
  }
  frame = fresh;
  return true;
}

void KvEditorBase::close() {
  if (!isOpen()) return;
  frame->shut();
  frame = {};
  pictures().close();
  WindowServices::get().detach(this);
}

void KvEditorBase::setFactor(double factor) {
  screen = Scale(factor);
  if (!isOpen()) return;
  holdFrame()->setFactor(factor);
  WindowServices::get().rescale(this, screen.factor());
}

void KvEditorBase::idle() {
  {
    const Held<KvFrame> shown = holdFrame();
    if (!shown) return;
    if (updateWanted.exchange(false)) shown->setDirty(true);
    if (redrawWanted.exchange(false)) shown->requestRedraw();
    shown->idle();
  }
  WindowServices::get().poll();  // last: an answer may close this window, and its effect
}

void KvEditorBase::redraw(const CRect& part) {
  if (frame) frame->invalidRect(screen.logical(part));
}

bool KvEditorBase::keyDown(const WindowKey& key) {
  const Held<KvFrame> shown = holdFrame();
  return shown ? shown->onKeyDown(key) : keyPressed(key);
}

bool KvEditorBase::keyUp(const WindowKey& key) {
  const Held<KvFrame> shown = holdFrame();
  return shown ? shown->onKeyUp(key) : keyReleased(key);
}

}  // namespace zum
