// `zum edit`: the effect's window without a host, while a thread plays through the effect.
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <system_error>
#include <thread>

#include "apps/zum/commands.hpp"
#include "apps/zum/effect_host.hpp"
#include "apps/zum/effect_view.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/interruption.hpp"
#include "apps/zum/option_checks.hpp"
#include "apps/zum/player.hpp"
#include "apps/zum/preset_input.hpp"
#include "apps/zum/sound_loop.hpp"
#include "apps/zum/temporary_file.hpp"
#include "editor/create_editor.hpp"
#include "engine/clock.hpp"
#include "toolkit/control_frame.hpp"

namespace zum {
namespace {

using Clock = std::chrono::steady_clock;

constexpr auto kTick = std::chrono::microseconds(1'000'000 / 30);
constexpr auto kPictureTime = std::chrono::seconds(1);  // by then traces and meters have moved
constexpr int kLongest = 86400;                         // seconds
// Beats per minute; the effect would quietly run at another tempo outside of them.
constexpr auto kLowestTempo = static_cast<int>(KvSystemInfo::kLowestTempo);
constexpr auto kHighestTempo = static_cast<int>(KvSystemInfo::kHighestTempo);

struct EditOptions {
  std::filesystem::path loop;
  std::filesystem::path preset;
  double tempo = 120.0;
  double seconds = 0.0;  // 0: until the window is closed
  std::filesystem::path picture;
};

class Window {
 public:
  explicit Window(EffectHost& effectHost) : host(effectHost) {
    if (!host.openEditor()) {
      throw Failure("no display; start it on a desktop, or under xvfb-run");
    }
  }
  ~Window() { host.closeEditor(); }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  void idle() { host.idleEditor(); }
  bool isGone() const { return frame().isGone(); }
  /// Writes the window as it was drawn last.
  void writePicture(TemporaryFile& file, const std::filesystem::path& name) const {
    // The frame wants a name to write to, and the file does not have its own yet.
    if (!frame().writePicture("/proc/self/fd/" + std::to_string(file.descriptor()))) {
      throw Failure("cannot write " + name.string() + "; free space or choose another folder");
    }
    file.commit();
  }

 private:
  const KvFrame& frame() const { return *EffectView(host.client()).window(); }

  EffectHost& host;
};

void edit(const EditOptions& options) {
  refuseToOverwrite(options.picture, "picture", {options.loop, options.preset});
  SoundLoop loop = options.loop.empty() ? SoundLoop() : SoundLoop(options.loop);
  holdSignals();
  std::optional<TemporaryFile> picture;
  if (!options.picture.empty()) picture.emplace(options.picture);
  EffectHost host(loop.sampleRate(), Player::kBlock, options.tempo, true, createEditor);
  EffectView view(host.client());
  if (!options.preset.empty()) loadPresetFile(options.preset, view);
  Window window(host);
  const Player player(host, loop);
  const auto start = Clock::now();
  for (auto next = start; !window.isGone(); std::this_thread::sleep_until(next)) {
    throwIfInterrupted();
    window.idle();
    const std::chrono::duration<double> shown = Clock::now() - start;
    if (picture && shown >= kPictureTime) {
      window.writePicture(*picture, options.picture);
      picture.reset();
    }
    if (options.seconds > 0.0 && shown.count() >= options.seconds) break;
    next = std::max(next + kTick, Clock::now());  // missed ticks are not made up for
  }
  if (picture) window.writePicture(*picture, options.picture);  // it was closed early
}

}  // namespace

void addEditCommand(CLI::App& app) {
  auto options = std::make_shared<EditOptions>();
  CLI::App* command = app.add_subcommand(
      "edit",
      "Open the effect's window and let it filter silence or a loop in real time; there is no "
      "sound output");
  command->add_option("--loop", options->loop, "Music file to filter again and again")
      ->type_name("FILE")
      ->check(notEmpty());
  command
      ->add_option("--preset", options->preset,
                   "Preset to start from, in place of your default one")
      ->type_name("FILE.kvz")
      ->check(notEmpty());
  command
      ->add_option("--tempo", options->tempo,
                   "Tempo of the transport, which always runs, in beats per minute")
      ->check(between(kLowestTempo, kHighestTempo))
      ->capture_default_str();
  command->add_option("--seconds", options->seconds, "Close the window after so long")
      ->check(between(1, kLongest));
  command
      ->add_option("--picture", options->picture,
                   "Picture of the window to write, when it has been open for a second")
      ->type_name("FILE.png")
      ->check(notEmpty());
  command->callback([options] { edit(*options); });
}

}  // namespace zum
