// Panels, axes and lines of the plot, drawn with cairo.
#include "apps/zum/plot_drawing.hpp"

#include <cairo.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <memory>
#include <string>

#include "apps/zum/failure.hpp"
#include "apps/zum/temporary_file.hpp"

namespace zum {
namespace {

// Pixels.
constexpr int kWidth = 1200;
constexpr int kHeight = 800;
constexpr double kLeft = 176.0;
constexpr double kRight = 1172.0;
constexpr double kTop = 68.0;
constexpr double kBottom = 752.0;
constexpr double kGap = 12.0;     // between panels
constexpr double kInset = 7.0;    // of a panel's scale in the panel
constexpr double kMergeBy = 2.0;  // columns per pixel; points that share one are one stroke

struct Colour {
  double red, green, blue;
};
constexpr Colour kBackground{0.075, 0.082, 0.098};
constexpr Colour kPanel{0.106, 0.116, 0.139};
constexpr Colour kGrid{0.185, 0.201, 0.236};
constexpr Colour kFaint{0.540, 0.576, 0.640};
constexpr Colour kBright{0.902, 0.918, 0.945};

struct Panel {
  TraceColumn column;
  const char *name, *unit;
  double share;  // of the height
  Colour colour;
};
constexpr std::array<Panel, 6> kPanels = {{
    {kSeqOut, "Sequencer", "0 to 1", 1.0, {0.984, 0.757, 0.369}},
    {kLfoOut, "LFO", "0 to 1", 1.0, {0.424, 0.784, 0.996}},
    {kEfOut, "Follower", "0 to 1", 1.0, {0.976, 0.541, 0.647}},
    {kCutoffHz, "Cutoff", "Hz", 1.9, {0.553, 0.902, 0.643}},
    {kResonance, "Resonance", "0 to 1", 0.8, {0.769, 0.655, 0.992}},
    {kMeter, "Meter", "0 to 1", 1.0, {0.702, 0.741, 0.808}},
}};

void setColour(cairo_t* cr, const Colour& c, double alpha = 1.0) {
  cairo_set_source_rgba(cr, c.red, c.green, c.blue, alpha);
}

enum class Align { left, centre, right };

void drawText(cairo_t* cr, double x, double y, const char* text, Align align = Align::left) {
  cairo_text_extents_t extents;
  cairo_text_extents(cr, text, &extents);
  const double shift = align == Align::left ? 0.0 : align == Align::centre ? 0.5 : 1.0;
  cairo_move_to(cr, x - shift * extents.x_advance, y);
  cairo_show_text(cr, text);
}

void setFont(cairo_t* cr, double size, bool bold = false) {
  cairo_select_font_face(cr, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                         bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, size);
}

// Lines of one pixel lie on whole pixels.
double sharp(double position) { return std::floor(position) + 0.5; }

void drawLine(cairo_t* cr, double x0, double y0, double x1, double y1) {
  cairo_move_to(cr, sharp(x0), sharp(y0));
  cairo_line_to(cr, sharp(x1), sharp(y1));
  cairo_stroke(cr);
}

// `value` with so many digits behind a point, whatever the locale says.
std::string fixed(double value, int decimals) {
  std::array<char, 64> text{};
  const auto end = std::to_chars(text.data(), text.data() + text.size(), value,
                                 std::chars_format::fixed, decimals);
  return {text.data(), end.ptr};
}

// The greatest of 1, 2 and 5 times a power of ten that is at most `limit`.
double roundedDown(double limit) {
  const double power = std::pow(10.0, std::floor(std::log10(limit) + 1e-9));
  const double digit = limit / power + 1e-9;
  return power * (digit >= 5.0 ? 5.0 : digit >= 2.0 ? 2.0 : 1.0);
}
double roundedUp(double limit) {
  const double below = roundedDown(limit);
  return below >= limit * (1.0 - 1e-9) ? below : roundedDown(below * 2.6);
}

// Values of a panel by height.
struct Scale {
  double top, bottom;  // pixels
  double low = 0.0;
  double high = 1.0;
  bool logarithmic = false;

  double y(double value) const {
    const double share = logarithmic ? std::log(std::max(value, low) / low) / std::log(high / low)
                                     : (value - low) / (high - low);
    return bottom - std::clamp(share, 0.0, 1.0) * (bottom - top);
  }
};

// Round frequencies round the trace, at least a decade. The cutoff starts from 0 and is there
// within moments: they are left out.
Scale cutoffScale(const std::vector<TraceRow>& rows, double top, double bottom) {
  std::vector<double> sorted;
  sorted.reserve(rows.size());
  for (const TraceRow& row : rows) sorted.push_back(row[kCutoffHz]);
  std::sort(sorted.begin(), sorted.end());
  const double low = roundedDown(std::clamp(sorted[sorted.size() / 50], 20.0, 2000.0));
  const double high = roundedUp(std::max(sorted.back(), low * 10.0));
  return {top, bottom, low, high, true};
}

class Drawing {
 public:
  Drawing(cairo_t* target, const std::vector<TraceRow>& points, const Plot& stretch)
      : cr(target), rows(points), plot(stretch) {}

  void drawAll() {
    setColour(cr, kBackground);
    cairo_paint(cr);
    cairo_set_line_width(cr, 1.0);
    setColour(cr, kBright);
    setFont(cr, 20.0, true);
    drawText(cr, 28.0, 43.0, plot.title.c_str());
    double shares = 0.0;
    for (const Panel& panel : kPanels) shares += panel.share;
    const double unit = (kBottom - kTop - kGap * (kPanels.size() - 1)) / shares;
    double top = kTop;
    for (const Panel& panel : kPanels) {
      const double bottom = top + panel.share * unit;
      drawPanel(panel, std::round(top), std::round(bottom));
      top = bottom + kGap;
    }
    drawTimes();
  }

 private:
  double x(double seconds) const {
    return kLeft + (seconds - plot.from) / (plot.to - plot.from) * (kRight - kLeft);
  }

  // Calls `each(seconds)` for round times.
  template <typename Each>
  void forRoundTimes(Each each) const {
    const double step = timeStep();
    const auto first = static_cast<int>(std::max(0.0, std::ceil(plot.from / step - 1e-9)));
    const auto last = static_cast<int>(std::floor(plot.to / step + 1e-9));
    for (int n = first; n <= last; ++n) each(n * step);
  }
  double timeStep() const { return roundedUp((plot.to - plot.from) / 12.0); }

  void drawPanel(const Panel& panel, double top, double bottom) {
    setColour(cr, kPanel);
    cairo_rectangle(cr, kLeft, top, kRight - kLeft, bottom - top);
    cairo_fill(cr);
    setColour(cr, kGrid);
    forRoundTimes([&](double seconds) { drawLine(cr, x(seconds), top, x(seconds), bottom - 1.0); });
    setColour(cr, panel.colour);
    setFont(cr, 15.0, true);
    drawText(cr, 28.0, (top + bottom) / 2.0 - 1.0, panel.name);
    setColour(cr, kFaint);
    setFont(cr, 12.0);
    drawText(cr, 28.0, (top + bottom) / 2.0 + 16.0, panel.unit);
    Scale scale{top + kInset, bottom - kInset};
    if (panel.column == kCutoffHz) {
      scale = cutoffScale(rows, scale.top, scale.bottom);
      drawFrequencies(scale);
    } else {
      for (const double value : {0.0, 0.5, 1.0}) {
        drawTick(scale, value, value == 0.5 ? "0.5" : value == 0.0 ? "0" : "1");
      }
    }
    cairo_save(cr);
    cairo_rectangle(cr, kLeft, top, kRight - kLeft, bottom - top);
    cairo_clip(cr);
    drawCurve(panel, scale);
    cairo_restore(cr);
  }

  void drawTick(const Scale& scale, double value, const char* label) {
    const double y = scale.y(value);
    setColour(cr, kGrid);
    drawLine(cr, kLeft, y, kRight - 1.0, y);
    setColour(cr, kFaint);
    drawText(cr, kLeft - 9.0, y + 4.0, label, Align::right);
  }

  void drawFrequencies(const Scale& scale) {
    double hz = scale.low;
    while (hz <= scale.high * (1.0 + 1e-9)) {
      const std::string label = hz < 999.0 ? fixed(hz, 0) : fixed(hz / 1000.0, 0) + "k";
      drawTick(scale, hz, label.c_str());
      hz = roundedUp(hz * 1.01);
    }
  }

  // A column of pixels gets its first value, its extremes and its last value.
  void drawCurve(const Panel& panel, const Scale& scale) {
    const auto columnOf = [this](const TraceRow& row) {
      return std::floor(x(row[kTime]) * kMergeBy);
    };
    for (auto row = rows.begin(); row != rows.end();) {
      const double column = columnOf(*row);
      auto end = row;
      auto lowest = row;
      auto highest = row;
      auto last = row;
      for (; end != rows.end() && columnOf(*end) == column; ++end) {
        if ((*end)[panel.column] < (*lowest)[panel.column]) lowest = end;
        if ((*end)[panel.column] > (*highest)[panel.column]) highest = end;
        last = end;
      }
      const auto [early, late] = std::minmax(lowest, highest);
      for (const auto& point : {row, early, late, last}) {
        cairo_line_to(cr, x((*point)[kTime]), scale.y((*point)[panel.column]));
      }
      row = end;
    }
    cairo_path_t* line = cairo_copy_path(cr);
    cairo_line_to(cr, x(rows.back()[kTime]), scale.bottom);
    cairo_line_to(cr, x(rows.front()[kTime]), scale.bottom);
    setColour(cr, panel.colour, 0.13);
    cairo_fill(cr);
    cairo_append_path(cr, line);
    cairo_path_destroy(line);
    cairo_set_line_width(cr, 1.4);
    cairo_set_line_join(cr, CAIRO_LINE_JOIN_ROUND);
    setColour(cr, panel.colour);
    cairo_stroke(cr);
    cairo_set_line_width(cr, 1.0);
  }

  void drawTimes() {
    const double step = timeStep();
    const int decimals = std::max(0, static_cast<int>(std::ceil(-std::log10(step) - 1e-9)));
    setColour(cr, kFaint);
    setFont(cr, 12.0);
    forRoundTimes([&](double seconds) {
      const std::string label = fixed(seconds, decimals) + " s";
      drawText(cr, x(seconds), kBottom + 22.0, label.c_str(), Align::centre);
    });
  }

  cairo_t* cr;
  const std::vector<TraceRow>& rows;
  const Plot& plot;
};

}  // namespace

void drawPlot(const std::vector<TraceRow>& rows, const Plot& plot,
              const std::filesystem::path& output) {
  TemporaryFile file(output);
  const std::unique_ptr<cairo_surface_t, decltype(&cairo_surface_destroy)> surface(
      cairo_image_surface_create(CAIRO_FORMAT_RGB24, kWidth, kHeight), &cairo_surface_destroy);
  const std::unique_ptr<cairo_t, decltype(&cairo_destroy)> cr(cairo_create(surface.get()),
                                                              &cairo_destroy);
  Drawing(cr.get(), rows, plot).drawAll();
  const auto write = [](void* sink, const unsigned char* data, unsigned count) {
    return static_cast<TemporaryFile*>(sink)->write(data, count) == count
               ? CAIRO_STATUS_SUCCESS
               : CAIRO_STATUS_WRITE_ERROR;
  };
  const cairo_status_t status = cairo_surface_write_to_png_stream(surface.get(), write, &file);
  if (status != CAIRO_STATUS_SUCCESS && file.writeError() == 0) {
    throw Failure("cannot draw " + output.string() + ": " + cairo_status_to_string(status) +
                  "; try a shorter stretch");
  }
  file.commit();
}

}  // namespace zum
