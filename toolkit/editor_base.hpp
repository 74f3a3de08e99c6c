// An editor as hosts drive it, without its controls: the frame inside of the host's window, the
// pictures, the groups that are shown, and what other threads ask of the window.
#pragma once

#include <atomic>

#include "core/effect_editor.hpp"
#include "core/group_mask.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/dialogs/window_services.hpp"
#include "toolkit/picture_table.hpp"

namespace zum {

/// [main] Open between open() and close() of a subclass, any number of times.
class AEffGUIEditor : public EffectEditor, protected CEditorInterface {
 public:
  explicit AEffGUIEditor(const CRect& windowRect) : bounds(windowRect) {}
  ~AEffGUIEditor() override { closeFrame(); }

  bool getRect(ERect** answer) override;
  bool isOpen() override { return static_cast<bool>(frame); }
  void idle() override;
  void draw(ERect* rect) override;

 protected:
  /// False when the system has no window to give; then it stays closed.
  bool openFrame(void* parent, const CFontDesc* font, const CFrame::WindowOpener& opener);
  void closeFrame();
  KvFrame* getFrame() const { return frame.get(); }
  /// For a call in which a control may tell the host something: the host may close the editor
  /// there, and the frame lasts until the call is over.
  Held<KvFrame> holdFrame() const { return frame; }

 private:
  CRect bounds;
  ERect hostRect{};
  Held<KvFrame> frame;
};

/// [main] The mask outlives it, and with it the pages that are shown.
class KvEditorBase : public AEffGUIEditor {
 public:
  KvEditorBase(const CRect& windowRect, GroupMask& mask, PictureTable::Source source)
      : AEffGUIEditor(windowRect), groupMask(mask), pictureSource(std::move(source)) {}
  ~KvEditorBase() override { KvEditorBase::close(); }

  /// Loads the pictures and opens an empty frame; from now on dialogs and messages are shown.
  bool open(void* parent) override { return open(parent, nullptr, openNativeWindow); }
  void close() override;
  void idle() override;
  void requestFullRedraw() ZUM_REALTIME override { redrawWanted.store(true); }
  void update() ZUM_REALTIME override { updateWanted.store(true); }
  bool onKeyDown(VstKeyCode& key) override;
  bool onKeyUp(VstKeyCode& key) override;

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
  /// A key that no control wanted, from the window or from the host.
  bool keyPressed(const WindowKey& /*key*/) override { return false; }
  bool keyReleased(const WindowKey& /*key*/) override { return false; }

 private:
  static PictureTable& pictures();
  bool isBlocked() const override { return WindowServices::get().isMessageOpen(); }

  GroupMask& groupMask;
  PictureTable::Source pictureSource;
  std::atomic<bool> redrawWanted{false};
  std::atomic<bool> updateWanted{false};
};

}  // namespace zum
