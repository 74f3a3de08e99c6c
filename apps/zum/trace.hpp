// A table in a text file of what the control passes of a render came to: the render command writes
// it, the plot command reads it.
#pragma once

#include <array>
#include <filesystem>
#include <string>
#include <vector>

#include "apps/zum/effect_view.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {

/// Columns of a trace: the time in seconds, then the results of a pass.
enum TraceColumn { kTime, kSeqOut, kLfoOut, kEfOut, kCutoffHz, kResonance, kMeter, kTraceColumns };

using TraceRow = std::array<double, kTraceColumns>;

class TraceWriter {
 public:
  explicit TraceWriter(const std::filesystem::path& path);

  void add(double seconds, const ControlPassResults& results);
  /// Gives the file its name; without this call there is no file. Throws Failure.
  void finish();

 private:
  TemporaryFile temporary;
  std::string pending;
};

/// The rows from `from` to `to` seconds, and one more on either side. Throws Failure for what is no
/// trace, and for one without two rows there.
std::vector<TraceRow> readTrace(const std::filesystem::path& path, double from, double to);

}  // namespace zum
