// Line by line through a text file, with failures that tell the line; used by automation and plots.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>
#include <vector>

namespace zum {

class TextLines {
 public:
  /// Throws Failure.
  explicit TextLines(const std::filesystem::path& path);

  /// The next line, without its end of either kind; false at the end of the file. Throws Failure.
  bool next(std::string& line);
  /// `why` about the line just read, or about the file before the first one.
  [[noreturn]] void fail(const std::string& why) const;

 private:
  std::string name;
  std::ifstream file;
  long number = 0;
};

/// The pieces of `line` between any of `separators`; none of them is empty.
std::vector<std::string_view> words(std::string_view line, std::string_view separators);

}  // namespace zum
