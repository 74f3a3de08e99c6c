// A tick of the window takes no memory: neither one in which nothing changes, nor one with a scope
// and a knob that move. Counts by a malloc of its own, so it is built without checkers of memory.
#include <gtest/gtest.h>

#include <array>

#include "support/desk.hpp"
#include "support/pixel_picture.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/scope_view.hpp"

static long taken = 0;
// NOLINTNEXTLINE(bugprone-reserved-identifier): the C library's own name
extern "C" void* __libc_malloc(std::size_t bytes);
extern "C" void* malloc(std::size_t bytes) {
  ++taken;
  return __libc_malloc(bytes);
}

namespace zum::test {

TEST(Tick, TakesNoMemoryAtAnySize) {
  for (const double factor : {1.0, 2.0}) {
    Desk desk;
    desk.frame->setFactor(factor);
    const Held<CBitmap> strip = pixelPicture(30, 60, std::vector<std::uint32_t>(1800, 0xFF00FF00));
    float variable = 0.0F;
    desk.add<KvKnob>(CRect{0, 0, 30, 30}, 1, strip.get(), 30, 2, 1.0F)->bind(&variable, 1.0F, 0.0F);
    std::array<float, 139> ring{};
    std::int32_t newest = 0;
    desk.add<KvScopeView>(CRect{100, 0, 239, 33}, 2, KvBufferDraw::Style::filled)
        ->setRing(ring.data(), &newest, 139);
    long before = 0;
    for (int i = 0; i < 200; ++i) {
      if (i == 100) before = taken;  // the drawing library keeps what it took for the first ones
      if (i % 2 == 0) variable = 1.0F - variable;
      newest = (newest + 1) % 139;
      desk.frame->idle();
    }
    EXPECT_GT(before, 0);
    EXPECT_EQ(taken, before) << factor;
  }
}

}  // namespace zum::test
