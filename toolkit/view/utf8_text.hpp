// Text that can be drawn: names come from files of any encoding, and one wrong byte would end all
// drawing of a context.
#pragma once

#include <string>
#include <string_view>

namespace zum {

/// The same text with a question mark in place of every byte that is no part of a UTF-8 character,
/// and of every control character.
std::string drawableText(std::string_view text);

/// Its bytes; a question mark for a number that is no character.
std::string utf8Character(char32_t code);
void dropLastCharacter(std::string& text);

}  // namespace zum
