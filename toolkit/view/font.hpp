// A face and a size, as views name them, and what lays out text in it.
#pragma once

#include <memory>
#include <optional>
#include <string>

#include "toolkit/view/base_object.hpp"

struct _PangoLayout;  // NOLINT(bugprone-reserved-identifier): Pango's own name

namespace zum {

/// [main]
class CFontDesc final : public CBaseObject {
 public:
  /// `face` is looked up among the system's fonts, and a near one taken where there is none of that
  /// name; letters that it lacks come from others. `size` in logical pixels, of an em.
  CFontDesc(std::string face, int size);

  const std::string& getName() const { return faceName; }
  int getSize() const { return pixels; }

  /// A single line in this face, at a size in pixels of the screen, with the text and the width
  /// that it was last given. Kept: looking a face up costs more than drawing a word with it.
  _PangoLayout* layoutAt(double size) const;
  /// From the middle of a line's height down to its baseline, in pixels of the screen, at the size
  /// of the last layout.
  double baselineBelowMiddle() const;

 private:
  struct Release {
    void operator()(_PangoLayout* layout) const;
  };

  ~CFontDesc() override = default;

  std::string faceName;
  int pixels;
  // Made when it is first drawn with: Pango shares its fonts within a thread, and a host may make
  // the effect in another one than its windows.
  mutable std::unique_ptr<_PangoLayout, Release> layout;
  mutable double laidOutSize = 0.0;
  mutable std::optional<double> baseline;  // at that size
};

/// Names come from files of any encoding: what is no UTF-8 shows as such.
void setLayoutText(_PangoLayout* layout, const std::string& bytes);

}  // namespace zum
