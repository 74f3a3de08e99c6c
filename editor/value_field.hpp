// The small field in which a user types the value of a knob.
#pragma once

#include <functional>
#include <optional>
#include <string>

#include "toolkit/dialogs/text_field.hpp"

namespace zum {

/// [main] Takes all input while it is open. Return takes the value over if it is one, Escape and a
/// press elsewhere leave it.
class ValueField final : public TextField {
 public:
  using Reader = std::function<std::optional<float>(const std::string& text)>;

  static constexpr int kWidth = 76;  // pixels
  static constexpr int kHeight = 19;

  ValueField(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner);

  /// Below the control, with its value, which the first letter replaces.
  void ask(KvControl& control, const std::string& value, Reader whatItSays);

  /// Whose value is typed; null while it is closed.
  KvControl* getTarget() const { return target.get(); }

  bool onKeyDown(const WindowKey& key) override;
  MouseResult onMouseDown(CPoint& where, int buttons) override;
  void closePopup() override;
  void idleStep(int flag) override;

 private:
  ~ValueField() override = default;
  void takeOver();

  Held<KvControl> target;
  Reader reader;
};

}  // namespace zum
