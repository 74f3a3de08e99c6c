// One line of text that a user types.
#pragma once

#include <string>

#include "platform/input.hpp"
#include "toolkit/base_control.hpp"

namespace zum {

/// [main] Whoever owns it hands it the keys. The text is UTF-8.
class TextField final : public KvControl {
 public:
  using KvControl::KvControl;

  const std::string& getText() const { return text; }
  void setText(std::string fresh);
  /// Adds a character, or takes the last one away. False for any other key.
  bool type(const WindowKey& key);

  bool hasCursor = true;

  void draw(CDrawContext& context) override;

 private:
  ~TextField() override = default;

  std::string text;
};

}  // namespace zum
