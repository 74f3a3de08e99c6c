#include "platform/x11_compose.hpp"

#include <glib.h>
#include <xkbcommon/xkbcommon-compose.h>
#include <xkbcommon/xkbcommon-keysyms.h>

#include <array>
#include <cstdint>
#include <cstdlib>

namespace zum {
namespace {

const char* localeOfUser() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const char* const value = std::getenv(name);
    if (value != nullptr && *value != '\0') return value;
  }
  return "C";
}

/// Null on a system without tables.
xkb_compose_state* readTable() {
  xkb_context* const context = xkb_context_new(XKB_CONTEXT_NO_DEFAULT_INCLUDES);
  if (context == nullptr) return nullptr;
  xkb_context_set_log_level(context, XKB_LOG_LEVEL_CRITICAL);  // no words on the host's terminal
  xkb_compose_state* state = nullptr;
  // The library knows only tables in UTF-8, of which "C" is a large one.
  for (const char* locale : {localeOfUser(), "C"}) {
    xkb_compose_table* const table =
        xkb_compose_table_new_from_locale(context, locale, XKB_COMPOSE_COMPILE_NO_FLAGS);
    if (table == nullptr) continue;
    state = xkb_compose_state_new(table, XKB_COMPOSE_STATE_NO_FLAGS);
    xkb_compose_table_unref(table);
    break;
  }
  xkb_context_unref(context);
  return state;
}

}  // namespace

void KeyComposer::Release::operator()(xkb_compose_state* released) const {
  xkb_compose_state_unref(released);
}

std::optional<std::u32string> KeyComposer::press(KeySym symbol) {
  if (!isRead) state.reset(readTable());
  isRead = true;
  if (!state) return std::nullopt;
  const auto key = static_cast<xkb_keysym_t>(symbol);
  if (xkb_compose_state_feed(state.get(), key) == XKB_COMPOSE_FEED_IGNORED) return std::nullopt;
  switch (xkb_compose_state_get_status(state.get())) {
    case XKB_COMPOSE_COMPOSING: return U"";
    case XKB_COMPOSE_COMPOSED: break;
    case XKB_COMPOSE_NOTHING: return std::nullopt;
    case XKB_COMPOSE_CANCELLED:  // a letter is not lost; Escape and its like end the sequence alone
      if (xkb_keysym_to_utf32(key) < ' ' || key == XKB_KEY_Delete) return U"";
      return std::nullopt;
  }
  std::array<char, 256> bytes{};
  xkb_compose_state_get_utf8(state.get(), bytes.data(), bytes.size());
  std::u32string text;
  for (const char* next = bytes.data(); *next != '\0'; next = g_utf8_next_char(next)) {
    text += static_cast<char32_t>(g_utf8_get_char(next));
  }
  return text;
}

}  // namespace zum
