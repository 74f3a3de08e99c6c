// Parameters that move in time along curves from text files; used by the render command.
#pragma once

#include <filesystem>
#include <string_view>
#include <vector>

namespace zum {

class AutomationCurve {
 public:
  /// Reads "NAME=FILE". The file holds pairs of a time in seconds, rising, and a value from 0 to 1,
  /// between blanks, commas or semicolons; # starts a comment. Throws Failure.
  explicit AutomationCurve(std::string_view text);

  int tag() const { return parameter; }
  const std::filesystem::path& file() const { return source; }
  /// The value at `time`: linear between the points, constant before and after them. Times must not
  /// fall between calls.
  float valueAt(double time);

 private:
  struct Point {
    double time;
    double value;
  };
  int parameter;
  std::filesystem::path source;
  std::vector<Point> points;
  std::size_t next = 0;  // first point after the last time asked for
};

}  // namespace zum
