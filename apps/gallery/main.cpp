// The program toolkit-gallery: shows the gallery until it is closed, and writes down what its
// controls report. Exit codes: 0 closed, 1 failed, 2 wrong usage.
#include <CLI/CLI.hpp>
#include <chrono>
#include <exception>
#include <iostream>
#include <string>
#include <thread>

#include "apps/gallery/gallery.hpp"
#include "platform/standard_streams.hpp"

namespace {

constexpr int kFailed = 1;
constexpr int kWrongUsage = 2;
constexpr int kTicksPerSecond = 30;
constexpr int kPictureTick = 3;  // by then everything is drawn
constexpr int kLongest = 86400;  // seconds

struct Options {
  std::string folder;
  std::string picture;
  int seconds = 0;  // 0: until the window is closed
};

int fail(const std::string& text, int exitCode) {
  std::cerr << "toolkit-gallery: " << text << '\n';
  return exitCode;
}

void tell(const std::string& name, float value) {
  std::cout << name << ' ' << value << '\n' << std::flush;
}

int show(const Options& options) {
  zum::Gallery gallery(tell, options.folder);
  if (!gallery.open()) {
    return fail("No display: start it on a desktop, or under xvfb-run.", kFailed);
  }
  auto next = std::chrono::steady_clock::now();
  for (int tick = 0; !gallery.isGone(); ++tick) {
    if (options.seconds > 0 && tick >= options.seconds * kTicksPerSecond) break;
    gallery.idle();
    if (tick == kPictureTick && !options.picture.empty() &&
        !gallery.writePicture(options.picture)) {
      return fail(
          "cannot write " + options.picture + "; name a file in a folder that you may write to",
          kFailed);
    }
    if (!std::cout) return fail("cannot write to standard output; check where it goes", kFailed);
    next += std::chrono::microseconds(1'000'000 / kTicksPerSecond);
    std::this_thread::sleep_until(next);
  }
  return 0;
}

int run(int argc, char** argv) {
  Options options;
  CLI::App app("Every control of the window toolkit; what they report goes to standard output.",
               "toolkit-gallery");
  app.add_option("--folder", options.folder, "Folder whose presets a menu lists")
      ->check(CLI::ExistingDirectory);
  app.add_option("--seconds", options.seconds, "Closes by itself after so long")
      ->check(CLI::Range(1, kLongest));
  app.add_option("--picture", options.picture, "Writes what the window shows to a PNG file");
  try {
    app.parse(argc, argv);
  } catch (const CLI::ParseError& error) {
    if (error.get_exit_code() == 0) return app.exit(error);  // --help
    return fail(std::string(error.what()) + "; run toolkit-gallery --help to see what it takes",
                kWrongUsage);
  }
  return show(options);
}

}  // namespace

int main(int argc, char** argv) {
  zum::openStandardStreams();
  try {
    return run(argc, argv);
  } catch (const std::exception& error) {
    return fail(std::string(error.what()) + "; this should not happen, please report it", kFailed);
  }
}
