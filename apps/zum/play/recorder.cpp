#include "apps/zum/play/recorder.hpp"

#include <array>
#include <chrono>
#include <system_error>

#include "apps/zum/audio_output.hpp"
#include "apps/zum/failure.hpp"

namespace zum {
namespace {

constexpr std::size_t kRecordedPart = 4096;
constexpr std::size_t kBehindSeconds = 8;  // a disk may stand still so long
constexpr auto kRecorderPause = std::chrono::milliseconds(20);
// The end of a file takes some room, too, in most formats: what is left is not used up.
constexpr std::uintmax_t kReserve = 1U << 20U;  // bytes

bool isAlmostFull(const std::filesystem::path& folder) {
  std::error_code failed;
  const std::filesystem::space_info space = std::filesystem::space(folder, failed);
  return !failed && space.available < kReserve;
}

}  // namespace

Recorder::Recorder(const std::filesystem::path& path, int rate)
    : ring(static_cast<std::size_t>(rate) * kBehindSeconds),
      name(path),
      output(std::make_unique<AudioOutput>(path, rate)),
      thread([this](const std::stop_token& end) { run(end); }) {}

Recorder::~Recorder() = default;

void Recorder::write(const float* left, const float* right, int count) ZUM_REALTIME {
  if (!running.load(std::memory_order_relaxed)) return;
  const auto frames = static_cast<std::size_t>(count);
  const std::size_t taken = ring.write(left, right, frames);
  if (taken < frames) {
    lost.fetch_add(static_cast<std::int64_t>(frames - taken), std::memory_order_relaxed);
  }
}

void Recorder::run(const std::stop_token& end) {
  std::array<float, kRecordedPart> left{};
  std::array<float, kRecordedPart> right{};
  const std::filesystem::path folder = std::filesystem::absolute(name).parent_path();
  sf_count_t room = output->mostFrames();
  try {
    for (;;) {
      const bool ends = end.stop_requested();  // ahead of the last frames
      while (const std::size_t got = ring.read(left.data(), right.data(), kRecordedPart)) {
        if (static_cast<sf_count_t>(got) > room) {
          trouble = endedEarly("its format holds no more; record a .caf, .rf64 or .w64 file");
          break;
        }
        output->write(left.data(), right.data(), static_cast<int>(got));
        room -= static_cast<sf_count_t>(got);
      }
      if (isAlmostFull(folder)) trouble = endedEarly("the disk is full; free space");
      if (ends || !trouble.empty()) break;
      std::this_thread::sleep_for(kRecorderPause);
    }
    output->keep();
  } catch (const std::exception& error) {
    keepWhatFits(error.what());
  }
  running.store(false);
}

void Recorder::keepWhatFits(const std::string& why) {
  try {
    output->keepWhatFits();
    trouble = endedEarly(why);
  } catch (const std::exception& error) {
    trouble = error.what();
  }
}

std::string Recorder::endedEarly(const std::string& why) const {
  return "the recording " + name.string() + " ended early: " + why;
}

void Recorder::finish() {
  thread.request_stop();
  thread.join();
}

std::string Recorder::problem() const { return running.load() ? "" : trouble; }

}  // namespace zum
