// Reading of text files.
#include "apps/zum/text_lines.hpp"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <system_error>

#include "apps/zum/failure.hpp"

namespace zum {

TextLines::TextLines(const std::filesystem::path& path) : name(path.string()), file(path) {
  std::error_code ignored;
  if (std::filesystem::is_directory(path, ignored)) {
    throw Failure("cannot read " + name + ": it is a folder; name one text file in it");
  }
  if (!file)
    throw Failure("cannot read " + name + ": " + std::strerror(errno) + "; check the name");
}

bool TextLines::next(std::string& line) {
  if (!std::getline(file, line)) {
    if (file.bad()) throw Failure("cannot read all of " + name + "; copy or make it again");
    return false;
  }
  ++number;
  if (!line.empty() && line.back() == '\r') line.pop_back();
  return true;
}

void TextLines::fail(const std::string& why) const {
  throw Failure(name + (number == 0 ? "" : ", line " + std::to_string(number)) + ": " + why);
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
