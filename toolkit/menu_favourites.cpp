#include "toolkit/menu_favourites.hpp"

#include <algorithm>

namespace zum {
namespace {

constexpr char kEnd = '/';

}  // namespace

MenuFavourites::MenuFavourites(std::string_view text) {
  while (!text.empty()) {
    const std::size_t end = text.find(kEnd);
    tryAdd(text.substr(0, end));
    text.remove_prefix(end != std::string_view::npos ? end + 1 : text.size());
  }
}

bool MenuFavourites::tryAdd(std::string_view name) {
  const bool isName = !name.empty() && name.find(kEnd) == std::string_view::npos;
  if (!isName || has(name) || names.size() >= kMost || bytes + name.size() + 1 > kMostBytes) {
    return false;
  }
  names.emplace_back(name);
  bytes += name.size() + 1;
  return true;
}

std::string MenuFavourites::text() const {
  std::string all;
  for (const std::string& name : names) all += name + kEnd;
  return all;
}

bool MenuFavourites::has(std::string_view name) const {
  return std::ranges::find(names, name) != names.end();
}

bool MenuFavourites::toggle(const std::string& name) {
  if (std::erase(names, name) == 0) return tryAdd(name);
  bytes -= name.size() + 1;
  return true;
}

}  // namespace zum
