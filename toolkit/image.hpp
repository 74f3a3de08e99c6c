// A picture that only stands there.
#pragma once

#include "toolkit/base_control.hpp"

namespace zum {

/// [main] The bitmaps outlive it.
class KvImage final : public KvControl {
 public:
  /// Where only the second picture is given it serves as the first.
  KvImage(const CRect& rect, CControlListener* controlListener, int controlTag, KvFrame& owner,
          CBitmap* normalBitmap, CBitmap* alternateBitmap = nullptr)
      : KvControl(rect, controlListener, controlTag, owner),
        normal(normalBitmap != nullptr ? normalBitmap : alternateBitmap),
        alternate(alternateBitmap) {
    kind = kImage;
    setMouseEnabled(false);
  }

  void draw(CDrawContext& context) override {
    const CBitmap* const bitmap = useAlternate && alternate != nullptr ? alternate : normal;
    if (bitmap == nullptr) return;
    if (getTransparency()) {
      bitmap->drawTransparent(context, getViewSize(), {0, 0});
    } else {
      bitmap->draw(context, getViewSize(), {0, 0});
    }
  }
  MouseResult onMouseDown(CPoint& /*where*/, int /*buttons*/) override {
    return MouseResult::notHandled;
  }

  bool useAlternate = false;

 private:
  ~KvImage() override = default;

  CBitmap* normal;
  CBitmap* alternate;
};

}  // namespace zum
