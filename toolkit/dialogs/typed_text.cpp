#include "toolkit/dialogs/typed_text.hpp"

#include <glib.h>

#include <array>
#include <cstddef>

namespace zum {

bool typeInto(std::string& text, const WindowKey& key) {
  constexpr std::uint8_t kCommands = keys::kControlBit | keys::kAltBit | keys::kCommandBit;
  if (key.virt == keys::kBack) {
    const char* const last = g_utf8_find_prev_char(text.data(), text.data() + text.size());
    text.resize(last != nullptr ? static_cast<std::size_t>(last - text.data()) : 0);
    return true;
  }
  const auto code = static_cast<gunichar>(key.character);
  if (g_unichar_validate(code) == FALSE || g_unichar_iscntrl(code) != FALSE ||
      (key.modifier & kCommands) != 0) {
    return false;
  }
  std::array<char, 6> bytes{};
  text.append(bytes.data(), static_cast<std::size_t>(g_unichar_to_utf8(code, bytes.data())));
  return true;
}

}  // namespace zum
