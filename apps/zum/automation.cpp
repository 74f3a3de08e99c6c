// Reading and following of automation curves.
#include "apps/zum/automation.hpp"

#include <cmath>
#include <cstdint>
#include <string>

#include "apps/zum/failure.hpp"
#include "apps/zum/text_file.hpp"
#include "platform/printable_text.hpp"
#include "preset_text/numbers_in_text.hpp"
#include "preset_text/parameter_names.hpp"

namespace zum {
namespace {

constexpr std::uint64_t kMostBytes = 64U << 20U;

}  // namespace

AutomationCurve::AutomationCurve(std::string_view text) {
  const std::size_t equals = text.find('=');
  if (equals == text.npos || isBlank(text.substr(0, equals)) || isBlank(text.substr(equals + 1))) {
    throw Failure("cannot read the curve \"" + std::string(text) + "\"; write NAME=FILE",
                  kExitWrongUsage);
  }
  parameter = findParameterTag(text.substr(0, equals));
  source = text.substr(equals + 1);
  TextLines lines = linesOf(source, kMostBytes);
  for (std::string line; lines.next(line);) {
    const auto numbers = words(std::string_view(line).substr(0, line.find('#')), " \t,;");
    if (numbers.size() % 2 != 0) lines.fail("a time or its value is missing; write pairs of both");
    for (std::size_t i = 0; i < numbers.size(); i += 2) {
      Point point{};
      if (!parseWhole(numbers[i], point.time) || !std::isfinite(point.time) || point.time < 0.0) {
        lines.fail("\"" + std::string(numbers[i]) + "\" is not a time; give seconds from 0 up");
      }
      if (!parseUnit(numbers[i + 1], point.value)) {
        lines.fail("\"" + std::string(numbers[i + 1]) + "\" is not a value; give one from 0 to 1");
      }
      if (!points.empty() && point.time <= points.back().time) {
        lines.fail("the time " + std::string(numbers[i]) +
                   " does not rise; put the points in order");
      }
      points.push_back(point);
    }
  }
  if (points.empty()) lines.fail("there are no points; write pairs of a time and a value");
}

float AutomationCurve::valueAt(double time) {
  while (next < points.size() && points[next].time <= time) ++next;
  if (next == 0) return static_cast<float>(points.front().value);
  if (next == points.size()) return static_cast<float>(points.back().value);
  const Point& from = points[next - 1];
  const Point& to = points[next];
  const double share = (time - from.time) / (to.time - from.time);
  return static_cast<float>(from.value + share * (to.value - from.value));
}

}  // namespace zum
