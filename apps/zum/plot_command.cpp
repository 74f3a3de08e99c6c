// `zum plot TRACE OUT`: the picture of what a render's control passes came to.
#include <algorithm>
#include <filesystem>
#include <limits>
#include <memory>
#include <string>

#include "apps/zum/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/plot_drawing.hpp"
#include "apps/zum/temporary_file.hpp"
#include "apps/zum/trace.hpp"

namespace zum {
namespace {

constexpr int kLatestTime = 1000000;  // seconds

struct PlotOptions {
  std::filesystem::path trace;
  std::filesystem::path output;
  double from = 0.0;
  double to = std::numeric_limits<double>::infinity();
  std::string title;
};

void plot(const PlotOptions& options) {
  if (!(options.from < options.to)) {
    throw Failure("the stretch ends before it begins; give --to a later time than --from",
                  kExitWrongUsage);
  }
  refuseToOverwrite(options.output, "picture", {options.trace});
  const auto rows = readTrace(options.trace, options.from, options.to);
  // The last pass holds as long as the one before it.
  const double end = 2.0 * rows.back()[kTime] - rows[rows.size() - 2][kTime];
  drawPlot(rows,
           {.title = options.title.empty() ? options.trace.stem().string() : options.title,
            .from = options.from,
            .to = std::min(options.to, end)},
           options.output);
}

}  // namespace

void addPlotCommand(CLI::App& app) {
  auto options = std::make_shared<PlotOptions>();
  CLI::App* command = app.add_subcommand("plot", "Draw the trace of a render");
  command->add_option("TRACE", options->trace, "Table that zum render --trace wrote")
      ->required()
      ->check(notEmpty());
  command->add_option("OUT", options->output, "PNG picture to write")
      ->required()
      ->check(notEmpty());
  command->add_option("--from", options->from, "First second to draw")
      ->check(between(0, kLatestTime));
  command->add_option("--to", options->to, "Last second to draw; without it, the end")
      ->check(between(0, kLatestTime));
  command->add_option("--title", options->title, "Line at the top; without it, the trace's name");
  command->callback([options] { plot(*options); });
}

}  // namespace zum
