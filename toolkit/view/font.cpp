#include "toolkit/view/font.hpp"

#include <pango/pangocairo.h>

#include <utility>

namespace zum {
namespace {

// Letters stand as far apart as they are wide, on whole pixels: pairs that are drawn together or
// joined would blur at these sizes.
constexpr const char* kFeatures = "kern=0, liga=0, clig=0";

PangoLayout* makeLayout() {
  PangoContext* const context = pango_font_map_create_context(pango_cairo_font_map_get_default());
  cairo_font_options_t* const options = cairo_font_options_create();
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_ON);
  pango_cairo_context_set_font_options(context, options);
  cairo_font_options_destroy(options);
  PangoLayout* const layout = pango_layout_new(context);
  g_object_unref(context);
  pango_layout_set_single_paragraph_mode(layout, TRUE);
  PangoAttrList* const attributes = pango_attr_list_new();
  pango_attr_list_insert(attributes, pango_attr_font_features_new(kFeatures));
  pango_layout_set_attributes(layout, attributes);
  pango_attr_list_unref(attributes);
  return layout;
}

}  // namespace

void CFontDesc::Release::operator()(PangoLayout* released) const { g_object_unref(released); }

CFontDesc::CFontDesc(std::string face, int size) : faceName(std::move(face)), pixels(size) {}

PangoLayout* CFontDesc::layoutAt(double size) const {
  if (!layout) layout.reset(makeLayout());
  if (size != laidOutSize) {
    PangoFontDescription* const description = pango_font_description_new();
    pango_font_description_set_family(description, faceName.c_str());
    pango_font_description_set_absolute_size(description, PANGO_SCALE * size);
    pango_layout_set_font_description(layout.get(), description);
    pango_font_description_free(description);
    laidOutSize = size;
    baseline.reset();
  }
  return layout.get();
}

double CFontDesc::baselineBelowMiddle() const {
  if (!baseline) {
    PangoFontMetrics* const metrics =
        pango_context_get_metrics(pango_layout_get_context(layout.get()),
                                  pango_layout_get_font_description(layout.get()), nullptr);
    baseline = pango_units_to_double(pango_font_metrics_get_ascent(metrics) -
                                     pango_font_metrics_get_descent(metrics)) /
               2.0;
    pango_font_metrics_unref(metrics);
  }
  return *baseline;
}

void setLayoutText(PangoLayout* layout, const std::string& bytes) {
  if (bytes == pango_layout_get_text(layout)) return;  // what is laid out is kept
  if (g_utf8_validate_len(bytes.data(), bytes.size(), nullptr) != FALSE) {
    pango_layout_set_text(layout, bytes.data(), static_cast<int>(bytes.size()));
    return;
  }
  char* const valid = g_utf8_make_valid(bytes.data(), static_cast<gssize>(bytes.size()));
  pango_layout_set_text(layout, valid, -1);
  g_free(valid);
}

}  // namespace zum
