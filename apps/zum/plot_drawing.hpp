// The picture of a trace; used by the plot command.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include "apps/zum/trace.hpp"

namespace zum {

struct Plot {
  std::string title;
  double from;  // seconds
  double to;
};

/// Writes a PNG of one panel per column over a shared time axis. Throws Failure.
void drawPlot(const std::vector<TraceRow>& rows, const Plot& plot,
              const std::filesystem::path& output);

}  // namespace zum
