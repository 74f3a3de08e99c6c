// Line by line through a text, of a file or of memory, with failures that tell the line. Lines and
// texts have a limit: a device could go on for ever.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zum {

class TextLines {
 public:
  static constexpr std::size_t kMostLineBytes = 16384;

  /// Fills the room, as far as there is something; 0 at the end.
  using Read = std::function<std::size_t(char* to, std::size_t room)>;

  /// Failures tell the name. `next` throws one where the lines go on behind `mostBytes`.
  TextLines(std::string calledSo, Read source, std::uint64_t mostBytes)
      : textName(std::move(calledSo)), read(std::move(source)), most(mostBytes) {}
  // A piece of its own buffer is what it goes on with.
  TextLines(const TextLines&) = delete;
  TextLines& operator=(const TextLines&) = delete;

  /// The next line, without its end of either kind; false at the end of the file. Throws Failure.
  bool next(std::string& line);
  /// `why` about the line just read, or about the file before the first one.
  [[noreturn]] void fail(const std::string& why) const;
  const std::string& name() const { return textName; }

 private:
  const std::string textName;
  const Read read;
  std::uint64_t most;
  std::uint64_t taken = 0;  // bytes of the lines so far
  std::array<char, 65536> buffer{};
  std::string_view ahead;  // what is left of the buffer
  long number = 0;
};

/// The pieces of `line` between any of `separators`; none of them is empty.
std::vector<std::string_view> words(std::string_view line, std::string_view separators);

}  // namespace zum
