#include "apps/zum/play/play_memory.hpp"

#include <cmath>
#include <fstream>
#include <system_error>
#include <vector>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/temporary_file.hpp"
#include "platform/registry_store.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

// names of the settings
constexpr const char* kApi = "play api";
constexpr const char* kDevice = "play device";
constexpr const char* kLoop = "play loop";        // in the system's form
constexpr const char* kTempo = "play tempo";      // thousandths of a beat per minute
constexpr const char* kWindowLeft = "play left";  // of the window on the screen, pixels
constexpr const char* kWindowTop = "play top";

constexpr double kTempoScale = 1000.0;
constexpr std::size_t kMostSoundBytes = std::size_t{1} << 20U;  // no state has more

std::filesystem::path fileIn(const char* name) {
  const std::filesystem::path path = readSettingString(name).value_or("");
  std::error_code ignored;
  return std::filesystem::is_regular_file(path, ignored) ? path : std::filesystem::path();
}

bool isLoop(const std::filesystem::path& path) {
  try {
    return !path.empty() && (AudioInput(path).rewind(), true);
  } catch (const Failure&) {
    return false;
  }
}

/// The sound as it was left, beside the settings: the bytes of a preset file.
std::filesystem::path soundFile() {
  const std::filesystem::path settings = RegistryStore::file();
  return settings.empty() ? settings : settings.parent_path() / "play.kvz";
}

std::vector<std::byte> readSound() {
  std::ifstream file(soundFile(), std::ios::binary);
  std::vector<std::byte> bytes(kMostSoundBytes);
  file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
  bytes.resize(static_cast<std::size_t>(file.gcount()));
  return bytes;
}

void writeSound(const std::vector<std::byte>& sound) {
  const std::filesystem::path path = soundFile();
  if (path.empty() || sound.empty()) return;
  try {
    TemporaryFile file(path);
    file.write(sound.data(), sound.size());
    file.keep();
  } catch (const Failure&) {
    // the next run starts with the sound before
  }
}

}  // namespace

void recall(PlaySession::Options& options) {
  DeviceWish& device = options.device;
  device.isFirm = !device.api.empty() || !device.device.empty();
  if (!device.isFirm) {
    device.api = readSettingString(kApi).value_or("");
    device.device = readSettingString(kDevice).value_or("");
  }
  if (options.loop.empty() && !device.input) {
    const std::filesystem::path loop = fileIn(kLoop);
    if (isLoop(loop)) options.loop = loop;
  }
  if (options.preset.empty() && options.program.empty()) options.sound = readSound();
  if (!options.tempo) {
    if (const auto tempo = readSettingInt(kTempo)) options.tempo = *tempo / kTempoScale;
  }
}

std::optional<ScreenPlace> recallPlace() {
  const auto left = readSettingInt(kWindowLeft);
  const auto top = readSettingInt(kWindowTop);
  return left && top ? std::optional(ScreenPlace{.x = *left, .y = *top}) : std::nullopt;
}

void remember(PlaySession& session, const std::optional<ScreenPlace>& place) {
  if (const auto [api, device] = session.deviceInUse(); !device.empty()) {
    writeSettingString(kApi, api);
    writeSettingString(kDevice, device);
  }
  std::error_code ignored;
  const auto loop = session.loop();
  if (!loop.empty()) writeSettingString(kLoop, std::filesystem::absolute(loop, ignored).string());
  writeSound(session.host().saveState());
  writeSettingInt(kTempo, static_cast<std::int32_t>(std::lround(session.tempo() * kTempoScale)));
  if (!place) return;
  writeSettingInt(kWindowLeft, place->x);
  writeSettingInt(kWindowTop, place->y);
}

}  // namespace zum
