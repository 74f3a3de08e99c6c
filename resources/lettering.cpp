#include "resources/lettering.hpp"

#include <cmath>
#include <vector>

#include "resources/shapes.hpp"

namespace zum::pictures {
namespace {

constexpr const char* kFamily = "Arial";
constexpr double kCapitals = 0.716;  // height of capitals, of the size

void choose(cairo_t* cr, const Type& type) {
  cairo_select_font_face(cr, kFamily, CAIRO_FONT_SLANT_NORMAL,
                         type.bold ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL);
  cairo_set_font_size(cr, type.size);
  cairo_font_options_t* const options = cairo_font_options_create();
  cairo_font_options_set_antialias(options, CAIRO_ANTIALIAS_GRAY);
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_FULL);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
  cairo_set_font_options(cr, options);
  cairo_font_options_destroy(options);
}

std::vector<std::string> characters(const std::string& utf8) {
  std::vector<std::string> all;
  for (const char c : utf8) {
    const bool continues = (static_cast<unsigned char>(c) & 0xC0U) == 0x80U;
    if (!continues || all.empty()) all.emplace_back();
    all.back() += c;
  }
  return all;
}

double advance(cairo_t* cr, const std::string& character) {
  cairo_text_extents_t extents{};
  cairo_text_extents(cr, character.c_str(), &extents);
  return extents.x_advance;
}

}  // namespace

double textWidth(cairo_t* cr, const std::string& utf8, const Type& type) {
  choose(cr, type);
  double width = -type.spacing;
  for (const auto& character : characters(utf8)) width += advance(cr, character) + type.spacing;
  return width;
}

void text(cairo_t* cr, double x, double baseline, Align align, const std::string& utf8,
          const Type& type, const Color& color) {
  const double width = textWidth(cr, utf8, type);
  if (align == Align::centre) x -= width / 2.0;
  if (align == Align::right) x -= width;
  setColor(cr, color);
  for (const auto& character : characters(utf8)) {
    const Point pen = onScreen(cr, {x, baseline});
    cairo_move_to(cr, pen.x, pen.y);
    cairo_show_text(cr, character.c_str());
    x += advance(cr, character) + type.spacing;
  }
  cairo_new_path(cr);  // the pen stays at the end of the word otherwise
}

void textIn(cairo_t* cr, const Rect& rect, const std::string& utf8, const Type& type,
            const Color& color) {
  const double factor = factorOf(cr);
  const auto edge = [cr](int y) { return onScreen(cr, {0.0, static_cast<double>(y)}).y; };
  const double height = (edge(rect.y + rect.h) - edge(rect.y)) * factor;
  const double capitals = std::round(type.size * kCapitals * factor);
  const double foot = std::floor((height - capitals) / 2.0) + capitals;
  text(cr, rect.x + rect.w / 2.0, edge(rect.y) + foot / factor, Align::centre, utf8, type, color);
}

}  // namespace zum::pictures
