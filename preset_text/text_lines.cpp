#include "preset_text/text_lines.hpp"

#include <algorithm>

#include "preset_text/failure.hpp"

namespace zum {

bool TextLines::next(std::string& line) {
  line.clear();
  ++number;
  for (bool ended = false; !ended;) {
    if (ahead.empty()) ahead = {buffer.data(), read(buffer.data(), buffer.size())};
    if (ahead.empty()) {
      if (!line.empty()) break;
      --number;
      return false;
    }
    const std::size_t end = ahead.find('\n');
    ended = end != ahead.npos;
    const std::string_view piece = ahead.substr(0, end);
    line += piece;
    ahead.remove_prefix(piece.size() + (ended ? 1 : 0));
    taken += piece.size() + (ended ? 1 : 0);
    if (line.size() > kMostLineBytes) {
      fail("the line has more than " + std::to_string(kMostLineBytes) +
           " bytes; break it into several");
    }
    if (taken > most) {
      fail("the file has more than " + std::to_string(most >> 20U) +
           " MB; take out what does not belong to it");
    }
  }
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

void TextLines::fail(const std::string& why) const {
  throw Failure(textName + (number == 0 ? "" : ", line " + std::to_string(number)) + ": " + why);
}

std::vector<std::string_view> words(std::string_view line, std::string_view separators) {
  std::vector<std::string_view> found;
  for (std::size_t at = 0; (at = line.find_first_not_of(separators, at)) != line.npos;) {
    const std::size_t end = std::min(line.find_first_of(separators, at), line.size());
    found.push_back(line.substr(at, end - at));
    at = end;
  }
  return found;
}

}  // namespace zum
