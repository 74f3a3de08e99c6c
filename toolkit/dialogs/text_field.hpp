// One line of text that a user types.
#pragma once

#include <string>

#include "platform/input.hpp"
#include "toolkit/base_control.hpp"
#include "toolkit/dialogs/dialog_look.hpp"

namespace zum {

/// [main] Whoever owns it hands it the keys. The text is UTF-8.
class TextField : public KvControl {
 public:
  using KvControl::KvControl;

  const std::string& getText() const { return text; }
  void setText(std::string fresh);
  /// Adds a character, or takes the last one away. False for any other key.
  bool type(const WindowKey& key);

  struct Look {
    CColor ground = dialog_look::kField;
    CColor edge = dialog_look::kEdge;
    CColor text = dialog_look::kText;
    CColor selection = dialog_look::kButton;
    CColor wrong = dialog_look::kButton;  // the ground of what cannot be used
  };
  Look look;
  int fontSize = 0;  // pixels, 0 for the font's own
  bool hasCursor = true;
  bool isSelected = false;  // as a whole: the first letter replaces it
  bool isWrong = false;

  void draw(CDrawContext& context) override;

 protected:
  ~TextField() override = default;

 private:
  std::string text;
};

}  // namespace zum
