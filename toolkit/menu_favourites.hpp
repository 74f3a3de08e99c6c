// The files that a user has marked, by folder and name below the root, as one text of the settings.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace zum {

/// [main]
class MenuFavourites {
 public:
  static constexpr std::size_t kMost = 64;
  static constexpr std::size_t kMostBytes = 1000;  // a text of the settings is no longer

  /// What cannot be a name is left out.
  explicit MenuFavourites(std::string_view text = {});
  /// The names with a slash behind each, which no name has.
  std::string text() const;

  bool isEmpty() const { return names.empty(); }
  bool has(std::string_view name) const;
  /// False where there is no room for one more.
  bool toggle(const std::string& name);

 private:
  bool tryAdd(std::string_view name);

  std::vector<std::string> names;
  std::size_t bytes = 0;  // of the text
};

}  // namespace zum
