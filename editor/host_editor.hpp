// A window of the toolkit as hosts drive it, in the records and numbers of their interface.
#pragma once

#include "core/effect_editor.hpp"
#include "toolkit/editor_base.hpp"

namespace zum {

/// [main] Each call that looks at the window takes its turn.
class AEffGUIEditor : public EffectEditor, public KvEditorBase {
 public:
  using KvEditorBase::KvEditorBase;

  bool open(void* parent) override {
    const std::lock_guard turn(windowTurn());
    return KvEditorBase::open(parent);
  }
  void close() override {
    const std::lock_guard turn(windowTurn());
    KvEditorBase::close();
  }
  void idle() override {
    const std::lock_guard turn(windowTurn());
    KvEditorBase::idle();
  }
  void setFactor(double factor) override {
    const std::lock_guard turn(windowTurn());
    KvEditorBase::setFactor(factor);
  }
  bool isOpen() override {
    const std::lock_guard turn(windowTurn());
    return KvEditorBase::isOpen();
  }
  bool getRect(ERect** answer) override {
    const std::lock_guard turn(windowTurn());
    const CPoint size = sizeForHost();
    hostRect = {0, 0, static_cast<std::int16_t>(size.y), static_cast<std::int16_t>(size.x)};
    *answer = &hostRect;
    return true;
  }
  void draw(ERect* rect) override {
    const std::lock_guard turn(windowTurn());
    redraw({rect->left, rect->top, rect->right, rect->bottom});
  }
  bool onKeyDown(VstKeyCode& key) override {
    const std::lock_guard turn(windowTurn());
    return keyDown(keyOf(key));
  }
  bool onKeyUp(VstKeyCode& key) override {
    const std::lock_guard turn(windowTurn());
    return keyUp(keyOf(key));
  }
  void requestFullRedraw() ZUM_REALTIME override { KvEditorBase::requestFullRedraw(); }
  void update() ZUM_REALTIME override { KvEditorBase::update(); }

 protected:
  /// Of the window as it is or will be, in pixels of the screen.
  virtual CPoint sizeForHost() { return screenSize(); }

 private:
  static WindowKey keyOf(const VstKeyCode& key) { return {key.character, key.virt, key.modifier}; }

  ERect hostRect{};  // the host reads it after the call
};

}  // namespace zum
