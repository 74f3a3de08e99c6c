// The effect's editor in a window of the second host, on a real screen.
#include <gtest/gtest.h>
#include <unistd.h>

#include "adaptor/wrapper_process.hpp"
#include "platform/native_window.hpp"
#include "support/own_display.hpp"
#include "support/own_home.hpp"

namespace zum::test {
namespace {

const OwnHome ownHome;

/// The host's window, in which nothing of its own happens.
struct HostWindow final : PassiveWindowEvents {
  HostWindow() : window(openNativeWindow({0, 600, 600, "host"}, *this)) {}
  std::unique_ptr<NativeWindow> window;
};

HostRoutines silentHost() {
  return {.context = nullptr,
          .tempo = [](void*) { return 120.0; },
          .isRunning = [](void*) { return 0; },
          .meter = [](void*, std::int32_t* over, std::int32_t* under) { *over = *under = 4; },
          .realTimeSample = [](void*) { return std::int64_t{0}; },
          .timelineSample = [](void*) { return std::int64_t{0}; },
          .samplesToTicks = [](void*, std::int64_t samples) { return samples; },
          .controlChanged = [](void*, std::int32_t, std::int32_t) {},
          .touched = [](void*, std::int32_t) {},
          .released = [](void*, std::int32_t) {}};
}

TEST(AdaptorView, LiesWhereThePortSaysAndComesBack) {
  const OwnDisplay server;
  Robot robot;
  const HostRoutines routines = silentHost();
  KvRTASWrapperProcess process(routines, 44100.0F, true);
  ASSERT_EQ(process.EffectInit(), kNoError);
  ViewRect rect{9, 9, 9, 9};
  process.GetViewRect(rect);
  EXPECT_EQ(rect.top, 0);
  EXPECT_EQ(rect.bottom, 470);
  EXPECT_EQ(rect.right, 508);
  const auto view = process.MakeCustomView();
  auto host = std::make_unique<HostWindow>();
  const auto move = [&](int x, int y, int toY) {
    robot.moveTo(host->window->handle(), x, y);
    robot.press();
    robot.moveTo(host->window->handle(), x, toY);
    robot.release();
    for (int i = 0; i < 3; ++i) {
      process.ViewIdle();
      usleep(20'000);
    }
    return process.getEffect()->getParameter(3);
  };
  // Cutoff stands at 251, 180 of the editor.
  const struct {
    ViewPort port;
    int x, y;
  } ports[] = {{{0, 0, 0}, 0, 0}, {{-20, -30, 0}, 20, 30}, {{5, -30, 0}, 0, 0}};
  for (auto [port, x, y] : ports) {
    port.nativeWindow = host->window->handle();
    process.SetViewPort(&port);
    view->drawContents(nullptr);
    process.ViewIdle();
    process.getEffect()->setParameter(3, 0.2F);
    EXPECT_NEAR(move(x + 251, y + 180, y + 130), 0.4F, 0.001F) << x;
    process.SetViewPort(nullptr);
    process.ViewIdle();
    EXPECT_NEAR(move(x + 251, y + 180, y + 130), 0.4F, 0.001F) << x;
  }
  const ViewPort nowhere{INT32_MIN, INT32_MIN, 12345};
  process.SetViewPort(&nowhere);
  process.ViewIdle();
  const ViewPort port{0, 0, host->window->handle()};
  process.SetViewPort(&port);
  {
    KvRTASWrapperProcess ending(routines, 44100.0F, false);
    ASSERT_EQ(ending.EffectInit(), kNoError);
    ending.SetViewPort(&port);
    ending.ViewIdle();
  }  // with its view open
  process.ViewIdle();
  host.reset();  // before the view
  process.ViewIdle();
  process.SetViewPort(nullptr);
}

}  // namespace
}  // namespace zum::test
