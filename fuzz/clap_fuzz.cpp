// Any bytes as what a CLAP host does with an instance, without windows. Run by libFuzzer, or over
// the stored corpus by replay_main.cpp. Looks for reads and writes outside of what a host hands in,
// for texts without an end, for states that do not come back, and for sound that is no number.

#include <cmath>
#include <memory>
#include <string>

#include "fuzz/clap_parts.hpp"
#include "fuzz/memory_file.hpp"
#include "tests/hosts/clap_instance.hpp"
#include "tests/support/own_home.hpp"

namespace {

using namespace zum;
using Instance = test::ClapInstance;

const test::NoHome noHome;

void process(const Instance& one, Bytes& in) {
  fuzz::InEvents events(in);
  const fuzz::OutEvents heard{in.below(64)};
  const auto frames = in.below(130);
  const auto transport = in.take<clap_event_transport_t>();
  fuzz::Port sound(in, frames);
  fuzz::Port side(in, frames);
  fuzz::Port out(in, frames);
  const clap_audio_buffer_t inputs[] = {sound.buffer, side.buffer};
  clap_audio_buffer_t outputs[] = {in.below(2) == 0 ? out.buffer : sound.buffer};
  const unsigned way = in.below(16);
  const clap_process_t block{-1,
                             frames,
                             way % 2 == 0 ? &transport : nullptr,
                             inputs,
                             outputs,
                             way % 8 == 7 ? 0U : 1U + way % 4 / 2,
                             way == 8 ? 0U : 1U,
                             way == 9 ? nullptr : &events.list,
                             way == 10 ? nullptr : &heard.list};
  one.plugin->process(one.plugin, &block);
  if (way != 8) fuzz::demandNumbers(outputs[0], frames);
}

void askForTexts(const Instance& one, Bytes& in) {
  const auto& params = one.get<clap_plugin_params_t>(CLAP_EXT_PARAMS);
  const clap_id id = fuzz::anyId(in);
  auto value = in.take<double>();
  std::string text(in.below(40), '#');
  const auto room = static_cast<std::uint32_t>(text.size());
  if (params.value_to_text(one.plugin, id, value, text.data(), room)) {
    demand(text.find('\0') != text.npos);
  }
  for (char& byte : text) byte = in.take<char>();
  if (params.text_to_value(one.plugin, id, text.c_str(), &value)) demand(std::isfinite(value));
  clap_param_info_t info{};
  params.get_info(one.plugin, in.take<std::uint16_t>() % 80, &info);
  clap_remote_controls_page_t page{};
  one.get<clap_plugin_remote_controls_t>(CLAP_EXT_REMOTE_CONTROLS)
      .get(one.plugin, in.below(16), &page);
  one.plugin->get_extension(one.plugin, text.c_str());
}

void loadAny(const Instance& one, const std::string& start, Bytes& in) {
  std::string state = start;
  const unsigned way = in.below(8);
  if (way < 2) {
    state = in.text(2048);
  } else {
    for (unsigned i = 0; i < way; ++i) {
      const std::size_t at = 4 * (in.below(4096) % (state.size() / 4));
      const auto word = in.take<std::int32_t>();
      std::memcpy(&state[at], &word, sizeof word);
    }
  }
  const std::string before = one.save();
  if (!one.load(state, 1 + in.below(4096))) demand(one.save() == before);
  demand(one.load(one.save()));
}

void loadFile(const Instance& one, Bytes& in) {
  static const MemoryFile file;
  const std::size_t count = std::min<std::size_t>(in.left, in.below(2048));
  file.fill(in.at, count);
  const auto& presets = one.get<clap_plugin_preset_load_t>(CLAP_EXT_PRESET_LOAD);
  presets.from_location(one.plugin, in.below(9) / 8, file.path().c_str(), nullptr);
}

void callOnce(const Instance& one, const std::string& start, Bytes& in) {
  const clap_plugin_t* const plugin = one.plugin;
  const unsigned what = in.below(16);
  if (what < 6) process(one, in);
  if (what == 6) plugin->activate(plugin, in.below(2) == 0 ? 44100.0 : in.take<double>(), 1, 512);
  if (what == 7) plugin->deactivate(plugin);
  if (what == 8) plugin->start_processing(plugin), plugin->reset(plugin);
  if (what == 9) plugin->stop_processing(plugin), plugin->on_main_thread(plugin);
  if (what == 10 || what == 11) askForTexts(one, in);
  if (what == 12) {
    const fuzz::InEvents events(in);
    const fuzz::OutEvents heard{in.below(64)};
    one.get<clap_plugin_params_t>(CLAP_EXT_PARAMS).flush(plugin, &events.list, &heard.list);
  }
  if (what == 13 || what == 14) loadAny(one, start, in);
  if (what == 15) loadFile(one, in);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  static auto kept = std::make_unique<Instance>(clap_entry);
  static const std::string start = kept->save();
  Bytes in{data, size};
  if (in.take<std::uint8_t>() == 0xFF) kept = std::make_unique<Instance>(clap_entry);
  kept->plugin->deactivate(kept->plugin);
  demand(kept->load(start));
  kept->plugin->activate(kept->plugin, 44100.0, 1, 512);
  for (int calls = 0; in.left > 0 && calls < 100; ++calls) callOnce(*kept, start, in);
  return 0;
}
