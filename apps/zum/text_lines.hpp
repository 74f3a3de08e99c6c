// Line by line through a text file, with failures that tell the line; used by automation, plots and
// texts of presets. Lines and files have a limit: a device could go on for ever.
#pragma once

#include <array>
#include <cstdint>
#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

#include "apps/zum/input_file.hpp"

namespace zum {

class TextLines {
 public:
  static constexpr std::size_t kMostLineBytes = 16384;

  /// Throws Failure, here and where the lines go on behind `mostBytes`.
  TextLines(const std::filesystem::path& path, std::uint64_t mostBytes);

  /// The next line, without its end of either kind; false at the end of the file. Throws Failure.
  bool next(std::string& line);
  /// `why` about the line just read, or about the file before the first one.
  [[noreturn]] void fail(const std::string& why) const;

 private:
  std::string name;
  InputFile file;
  std::uint64_t most;
  std::uint64_t taken = 0;  // bytes of the lines so far
  std::array<char, 65536> buffer{};
  std::string_view ahead;  // what is left of the buffer
  long number = 0;
};

/// The pieces of `line` between any of `separators`; none of them is empty.
std::vector<std::string_view> words(std::string_view line, std::string_view separators);

}  // namespace zum
