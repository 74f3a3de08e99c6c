#include "apps/zum/play/play_window.hpp"

#include <cairo.h>

#include <memory>
#include <utility>

#include "apps/zum/failure.hpp"
#include "editor/uni_client_editor.hpp"
#include "platform/desktop_scale.hpp"
#include "state/library_record.hpp"
#include "toolkit/view/window_fit.hpp"

namespace zum {
namespace {

// In pixels of its own, as all frames.
CRect frameRect(HostSide& host) {
  const auto [width, height] = host.plainWindowSize();
  return {0, 0, std::max(width, Strip::size().x), height + Strip::size().y};
}

double factorOf(HostSide& host, const HostSide::Size& size) {
  return static_cast<double>(size.width) / host.plainWindowSize().width;
}

/// As its user chose it, but no larger than the screen.
double firstFactor(HostSide& host) {
  const CRect plain = frameRect(host);
  const auto [width, height] = host.plainWindowSize();
  if (const auto room = desktopRoom()) {
    const Scale most = scaleInside({plain.right, plain.bottom}, {room->width, room->height});
    const CPoint size = most.rounded(CPoint{width, height});
    host.limitWindow({size.x, size.y});
  }
  return factorOf(host, host.windowSize());
}

KvUniClientEditor* editorOf(HostSide& host) {
  return dynamic_cast<KvUniClientEditor*>(host.client().getEditor());
}

VstKeyCode hostKeyOf(const WindowKey& key) { return {key.character, key.virt, key.modifier}; }

}  // namespace

PlayWindow::PlayWindow(HostSide& host, StripOwner& owner, std::optional<ScreenPlace> place)
    : effect(host),
      frame(new KvFrame(frameRect(host), this, firstFactor(host))),
      strip(*frame.get(), {0, host.plainWindowSize().height}, owner) {
  const CRect& plain = frame->getViewSize();
  const CPoint most = Scale(Scale::kMost).rounded(CPoint{plain.right, plain.bottom});
  const WindowRequest request{.title = libraryRecord().product,
                              .place = place,
                              .takesFiles = true,
                              .sizes = SizeRange{plain.right, plain.bottom, most.x, most.y}};
  if (!frame->open(request, openNativeWindow) || !effect.openWindow(frame->nativeHandle(), this)) {
    frame->shut();
    throw Failure("no display; start it on a desktop, or under xvfb-run");
  }
}

PlayWindow::~PlayWindow() {
  frame->shut();
  effect.closeWindow();  // ahead of the window that it lies in
}

void PlayWindow::idle() {
  if (isGone()) return;
  strip.poll();
  frame->idle();
  if (const auto scale = resting.tick()) showAt(*scale);
  effect.idleWindow();
}

bool PlayWindow::writePicture(const std::filesystem::path& path) const {
  const CPoint size = frame->screenSize();
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> all(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, size.x, size.y), cairo_surface_destroy);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> drawing(cairo_create(all.get()),
                                                                   cairo_destroy);
  const auto lay = [&](const CFrame& part) {
    cairo_set_source_surface(drawing.get(), part.drawnPicture(), 0.0, 0.0);
    cairo_paint(drawing.get());
  };
  lay(*frame.get());
  const KvUniClientEditor* const editor = editorOf(effect);
  if (editor != nullptr && editor->shownFrame() != nullptr) lay(*editor->shownFrame());
  return cairo_surface_write_to_png(all.get(), path.c_str()) == CAIRO_STATUS_SUCCESS;
}

// A system that gives the same size again insists on it, as of a window that fills the screen.
void PlayWindow::windowResized(int width, int height) {
  if (std::exchange(lastGiven, {width, height}) == CPoint{width, height}) return;
  const CRect& plain = frame->getViewSize();
  resting.want(scaleInside({plain.width(), plain.height()}, {width, height}));
}

bool PlayWindow::resize(const HostSide::Size& wanted) {
  resting.forget();
  frame->setFactor(factorOf(effect, wanted));
  return true;
}

void PlayWindow::showAt(const Scale& scale) {
  const auto [width, height] = effect.plainWindowSize();
  const CPoint size = scale.rounded(CPoint{width, height});
  frame->setFactor(scale.factor());
  frame->fitWindow();
  effect.resizeWindow({size.x, size.y});
}

// The keys that the effect does not want come here from its window; those of this window, as with
// the pointer on the strip, go there.
bool PlayWindow::keyPressed(const WindowKey& key) {
  VstKeyCode code = hostKeyOf(key);
  AEffEditor* const editor = effect.client().getEditor();
  return strip.pressKey(key) || (editor != nullptr && editor->onKeyDown(code));
}

bool PlayWindow::keyReleased(const WindowKey& key) {
  strip.releaseKey(key);
  VstKeyCode code = hostKeyOf(key);
  AEffEditor* const editor = effect.client().getEditor();
  return editor != nullptr && editor->onKeyUp(code);
}

bool PlayWindow::isBlocked() const { return WindowServices::get().isMessageOpen(); }

}  // namespace zum
