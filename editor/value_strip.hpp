// What a control stands at, in real units, over the status strip while it is in use.
#pragma once

#include <functional>
#include <string>

#include "toolkit/base_control.hpp"

namespace zum {

/// "CUTOFF LFO +40 %", or "CUTOFF 438 -> 612 Hz".
struct Reading {
  std::string name;  // empty: nothing is to be read
  std::string by;    // of an amount: the modulator
  CColor byColor{};
  std::string value;
  std::string moved;  // where the modulators have it; empty where none moves it
  bool operator==(const Reading&) const = default;
};

/// [main] Asks at each tick. Draws nothing while there is nothing to be read.
class ValueStrip final : public KvControl {
 public:
  ValueStrip(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
             std::function<Reading()> askedFor)
      : KvControl(rect, controlListener, controlTag, owner), source(std::move(askedFor)) {
    setMouseEnabled(false);
  }

  const Reading& reading() const { return shown; }

  void draw(CDrawContext& context) override;
  MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) override {
    return MouseResult::notHandled;
  }
  void idleStep(int flag) override;

 private:
  ~ValueStrip() override = default;

  std::function<Reading()> source;
  Reading shown;
};

}  // namespace zum
