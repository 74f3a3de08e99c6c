// A view with a value. It tells a listener what the user does to it, and nothing of what a program
// does.
#pragma once

#include "toolkit/view/view.hpp"

namespace zum {

class CControl;

/// [main]
class CControlListener {
 public:
  CControlListener() = default;
  CControlListener(const CControlListener&) = delete;
  CControlListener& operator=(const CControlListener&) = delete;
  virtual ~CControlListener() = default;

  virtual void valueChanged(CControl& control) = 0;
  // At the begin and the end of each gesture of the user's.
  virtual void controlBeginEdit(CControl& /*control*/) {}
  virtual void controlEndEdit(CControl& /*control*/) {}
};

/// [main] Values of 0 to 1 unless other ends are set.
class CControl : public CView {
 public:
  /// The listener outlives the control; null for none. `tag` tells it which control speaks.
  CControl(const CRect& rect, CControlListener* controlListener, int controlTag)
      : CView(rect), listener(controlListener), tag(controlTag) {}

  /// Held inside the ends; a value that is no number is the lower end.
  virtual void setValue(float newValue) {
    currentValue = newValue > lowest ? (newValue < highest ? newValue : highest) : lowest;
  }
  float getValue() const { return currentValue; }
  /// The ends leave the value as it is.
  void setMin(float end) { lowest = end; }
  float getMin() const { return lowest; }
  void setMax(float end) { highest = end; }
  float getMax() const { return highest; }
  void setOldValue(float drawn) { oldValue = drawn; }
  float getOldValue() const { return oldValue; }
  void setDefaultValue(float position) { defaultValue = position; }
  float getDefaultValue() const { return defaultValue; }
  virtual void setTag(int controlTag) { tag = controlTag; }
  int getTag() const { return tag; }

  virtual void setListener(CControlListener* controlListener) { listener = controlListener; }
  CControlListener* getListener() const { return listener; }
  /// Calls the listener.
  void report() {
    if (listener != nullptr) listener->valueChanged(*this);
  }
  void beginEdit() {
    if (listener != nullptr) listener->controlBeginEdit(*this);
  }
  void endEdit() {
    if (listener != nullptr) listener->controlEndEdit(*this);
  }

 protected:
  ~CControl() override = default;

 private:
  CControlListener* listener;
  int tag;
  float currentValue = 0.0F;
  float oldValue = 0.0F;  // as drawn last
  float defaultValue = 0.5F;
  float lowest = 0.0F;
  float highest = 1.0F;
};

}  // namespace zum
