// A face and a size, as views name them.
#pragma once

#include <string>
#include <utility>

#include "toolkit/view/base_object.hpp"

namespace zum {

class CFontDesc final : public CBaseObject {
 public:
  /// `face` is looked up among the system's fonts, and a near one taken where there is none of that
  /// name. `size` in pixels, of an em.
  CFontDesc(std::string face, int size) : faceName(std::move(face)), pixels(size) {}

  const std::string& getName() const { return faceName; }
  int getSize() const { return pixels; }

 private:
  ~CFontDesc() override = default;

  std::string faceName;
  int pixels;
};

}  // namespace zum
