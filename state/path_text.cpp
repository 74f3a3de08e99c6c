#include "state/path_text.hpp"

#include <algorithm>

#include "platform/files.hpp"

namespace zum {

bool ensureTrailingBackslash(std::string& path) {
  if (path.empty() || path.back() == '\\') return false;
  path += '\\';
  return true;
}

void cutToFolder(std::string& path) {
  const std::size_t last = path.rfind('\\');
  path.resize(last == std::string::npos ? 0 : last + 1);
}

std::string_view lastComponent(std::string_view path) {
  const std::size_t last = path.find_last_of("\\/");
  return last == std::string_view::npos ? path : path.substr(last + 1);
}

std::string_view baseName(std::string_view path) {
  const std::string_view name = lastComponent(path);
  return name.substr(0, name.rfind('.'));
}

std::string_view folderName(std::string_view path) {
  const std::size_t end = path.find_last_of("\\:");
  if (end == std::string_view::npos) return {};
  const std::string_view above = path.substr(0, end);
  const std::size_t start = above.find_last_of("\\:");
  return start == std::string_view::npos ? above : above.substr(start + 1);
}

void sortNames(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end(), namesRise);
}

}  // namespace zum
