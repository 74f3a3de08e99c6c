// The window of an editor without its controls: the frame inside of a host's window, the pictures,
// the groups that are shown, and what other threads ask of the window.
#pragma once

#include <atomic>

#include "engine/realtime.hpp"
#include "state/group_mask.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/dialogs/window_services.hpp"
#include "toolkit/picture_table.hpp"

namespace zum {

/// [main] Open between open() and close(), any number of times. The mask outlives it, and with it
/// the pages that are shown.
class KvEditorBase : protected CEditorInterface {
 public:
  KvEditorBase(const CRect& windowRect, GroupMask& mask, const PictureSource& source)
      : bounds(windowRect), groupMask(mask), pictureSource(source) {}
  ~KvEditorBase() override { KvEditorBase::close(); }

  /// Opens the pictures and an empty frame; from now on dialogs and messages are shown.
  /// False when the system has no window to give; then it stays closed.
  virtual bool open(void* parent) { return open(parent, nullptr, openNativeWindow); }
  virtual void close();
  virtual void idle();
  bool isOpen() const { return static_cast<bool>(frame); }

  /// At factor 1.
  const CRect& windowRect() const { return bounds; }
  /// Pixels of the screen for one of those, 1 to 3; kept while the window is closed.
  virtual void setFactor(double factor);
  double factor() const { return screen.factor(); }
  /// Of the window, in pixels of the screen.
  CPoint screenSize() const { return screen.rounded(CPoint{bounds.right, bounds.bottom}); }
  /// A part of the window was lost, in pixels of the screen.
  void redraw(const CRect& part);
  /// [any] Everything is drawn again at the next idle.
  void requestFullRedraw() ZUM_REALTIME { redrawWanted.store(true); }
  /// [any] A state was replaced: every control shows its new value at the next idle.
  void update() ZUM_REALTIME { updateWanted.store(true); }
  /// A key that the host saw first. False when it is of no use here.
  bool keyDown(const WindowKey& key);
  bool keyUp(const WindowKey& key);

  CBitmap* getBitmap(int id) const { return pictures().get(id); }
  /// With one more holder.
  Held<CBitmap> holdBitmap(int id) const {
    CBitmap* const bitmap = getBitmap(id);
    if (bitmap != nullptr) bitmap->remember();
    return Held<CBitmap>(bitmap);
  }
  GroupMask& getGroupMask() { return groupMask; }

 protected:
  bool open(void* parent, const CFontDesc* font, const CFrame::WindowOpener& opener);
  KvFrame* getFrame() const { return frame.get(); }
  /// For a call in which a control may tell the host something: the host may close the editor
  /// there, and the frame lasts until the call is over.
  Held<KvFrame> holdFrame() const { return frame; }
  /// A key that no control wanted, from the window or from the host.
  bool keyPressed(const WindowKey& /*key*/) override { return false; }
  bool keyReleased(const WindowKey& /*key*/) override { return false; }

 private:
  static PictureTable& pictures();
  bool isBlocked() const override { return WindowServices::get().isMessageOpen(); }

  CRect bounds;
  Scale screen;
  Held<KvFrame> frame;
  GroupMask& groupMask;
  const PictureSource& pictureSource;
  std::atomic<bool> redrawWanted{false};
  std::atomic<bool> updateWanted{false};
};

}  // namespace zum
