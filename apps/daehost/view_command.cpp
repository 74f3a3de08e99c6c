// `daehost view`: the plug-in's editor in a window of the host's.
#include <algorithm>
#include <array>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include "apps/daehost/commands.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/option_checks.hpp"
#include "platform/native_window.hpp"

namespace zum {
namespace {

constexpr auto kTick = std::chrono::milliseconds(33);
constexpr double kRate = 44100.0;  // Hz
constexpr std::int64_t kMostFrames = 16384;

struct ViewOptions : HostOptions {
  double seconds = 0.0;  // 0: until the window is closed
};

/// An empty window: all that happens in it happens in the plug-in's view.
class HostWindow final : public PassiveWindowEvents {
 public:
  HostWindow(int width, int height) : window(openNativeWindow({0, width, height, "ZUM"}, *this)) {
    if (window == nullptr) {
      throw Failure("no display; start it on a desktop, or under xvfb-run");
    }
  }
  std::uintptr_t handle() const { return window->handle(); }
  bool isGone() const { return gone; }
  void poll() { window->poll(); }

 private:
  void windowGone() override { gone = true; }

  bool gone = false;
  std::unique_ptr<NativeWindow> window;
};

/// Plays the silence up to frame `until`; after a halt, only the first part of it.
void playSilence(HostedProcess& process, std::array<std::vector<float>, 3>& channels,
                 std::int64_t until) {
  const std::int64_t due = until - process.position;
  const auto count = static_cast<std::int32_t>(std::clamp<std::int64_t>(due, 0, kMostFrames));
  for (std::vector<float>& channel : channels) channel.assign(static_cast<std::size_t>(count), 0);
  float* inputs[] = {channels[0].data(), channels[0].data()};
  float* outputs[] = {channels[1].data(), channels[2].data()};
  process.routines().render(process.get(), inputs, outputs, count);
  process.position = until;
}

void view(const ViewOptions& options) {
  const PlugInFile file(options.plugIn);
  HostedProcess process(file, options.type(), static_cast<float>(kRate), options.tempo);
  options.apply(process);
  ViewRect rect{};
  process.routines().viewRect(process.get(), &rect);
  HostWindow window(rect.right, rect.bottom);
  const ViewPort port{0, 0, window.handle()};
  holdSignals();
  process.routines().setViewPort(process.get(), &port);
  std::array<std::vector<float>, 3> channels;
  const auto start = std::chrono::steady_clock::now();
  while (!window.isGone()) {
    throwIfInterrupted();
    window.poll();
    const std::chrono::duration<double> shown = std::chrono::steady_clock::now() - start;
    playSilence(process, channels, static_cast<std::int64_t>(shown.count() * kRate));
    process.routines().viewIdle(process.get());
    if (options.seconds > 0.0 && shown.count() >= options.seconds) break;
    std::this_thread::sleep_for(kTick);
  }
  process.routines().setViewPort(process.get(), nullptr);
}

}  // namespace

void addViewCommand(CLI::App& app) {
  auto options = std::make_shared<ViewOptions>();
  CLI::App* const command = app.add_subcommand("view", "Show the plug-in's editor");
  addHostOptions(*command, *options);
  command->add_option("--seconds", options->seconds, "Close the window after so long")
      ->check(between(1, 86400));
  command->callback([options] { view(*options); });
}

}  // namespace zum
