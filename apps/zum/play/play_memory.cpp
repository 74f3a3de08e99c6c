#include "apps/zum/play/play_memory.hpp"

#include <cmath>
#include <system_error>

#include "apps/zum/audio_input.hpp"
#include "apps/zum/failure.hpp"
#include "apps/zum/preset_document.hpp"
#include "apps/zum/preset_input.hpp"
#include "state/settings.hpp"

namespace zum {
namespace {

// names of the settings
constexpr const char* kApi = "play api";
constexpr const char* kDevice = "play device";
constexpr const char* kLoop = "play loop";      // in the system's form, as is the preset
constexpr const char* kPreset = "play preset";  // its file
constexpr const char* kTempo = "play tempo";    // thousandths of a beat per minute
constexpr const char* kLeft = "play left";      // of the window on the screen, pixels
constexpr const char* kTop = "play top";

constexpr double kTempoScale = 1000.0;

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

bool isPreset(const std::filesystem::path& path) {
  PresetDocument document;
  return !path.empty() && readPresetFile(path, document).empty();
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
  if (options.preset.empty() && options.program.empty()) {
    const std::filesystem::path preset = fileIn(kPreset);
    if (isPreset(preset)) options.preset = preset;
  }
  if (!options.tempo) {
    if (const auto tempo = readSettingInt(kTempo)) options.tempo = *tempo / kTempoScale;
  }
}

std::optional<ScreenPlace> recallPlace() {
  const auto left = readSettingInt(kLeft);
  const auto top = readSettingInt(kTop);
  return left && top ? std::optional(ScreenPlace{.x = *left, .y = *top}) : std::nullopt;
}

void remember(const PlaySession& session, const std::optional<ScreenPlace>& place) {
  if (const auto [api, device] = session.deviceInUse(); !device.empty()) {
    writeSettingString(kApi, api);
    writeSettingString(kDevice, device);
  }
  std::error_code ignored;
  const auto loop = session.loop();
  writeSettingString(kLoop, loop.empty() ? "" : std::filesystem::absolute(loop, ignored).string());
  writeSettingString(kPreset, session.presetFile().string());
  writeSettingInt(kTempo, static_cast<std::int32_t>(std::lround(session.tempo() * kTempoScale)));
  if (!place) return;
  writeSettingInt(kLeft, place->x);
  writeSettingInt(kTop, place->y);
}

}  // namespace zum
