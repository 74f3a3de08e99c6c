// Instances of the shipped file, each behind one of its faces, ready to play: for the benchmarks of
// what faces cost.
#pragma once

#include <dlfcn.h>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/urid/urid.h>
#include <travesty/audio_processor.h>
#include <travesty/component.h>
#include <travesty/factory.h>

#include <array>
#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "adaptor/clap/interface.hpp"
#include "adaptor/lv2/ports.hpp"
#include "core/parameter_text.hpp"
#include "tests/support/test_host.hpp"

namespace zum::bench {

inline constexpr std::uint32_t kFrames = 64;  // of a block
inline constexpr double kRate = 44100.0;
inline constexpr double kTempo = 120.0;

/// One instance behind a face, with what its host hands in for each block: time, and no events.
class Player {
 public:
  Player() = default;
  virtual ~Player() = default;
  Player(const Player&) = delete;
  Player& operator=(const Player&) = delete;

  /// One block; two channels each.
  virtual void play(float** inputs, float** outputs) = 0;
};

class Bare : public Player {
 public:
  Bare() { host.giveTime(kTempo); }
  void play(float** inputs, float** outputs) override { host.process(inputs, outputs, kFrames); }

 private:
  const test::PluginFile file{ZUM_PLUGIN};
  test::TestHost host{file, static_cast<float>(kRate)};
};

/// With a side-chain that nothing is connected to.
class Clap : public Player {
 public:
  Clap() {
    const auto* const entry = static_cast<const clap_plugin_entry_t*>(
        dlsym(dlopen(ZUM_PLUGIN, RTLD_NOW | RTLD_LOCAL), "clap_entry"));
    if (entry == nullptr || !entry->init(ZUM_PLUGIN)) throw std::runtime_error("no CLAP entry");
    const auto* const factory =
        static_cast<const clap_plugin_factory_t*>(entry->get_factory(CLAP_PLUGIN_FACTORY_ID));
    const char* const id = factory->get_plugin_descriptor(factory, 0)->id;
    plugin = factory->create_plugin(factory, &host, id);
    plugin->init(plugin);
    plugin->activate(plugin, kRate, kFrames, kFrames);
    plugin->start_processing(plugin);
    transport.flags = CLAP_TRANSPORT_HAS_TEMPO | CLAP_TRANSPORT_HAS_BEATS_TIMELINE;
    transport.tempo = kTempo;
  }
  ~Clap() override {
    plugin->stop_processing(plugin);
    plugin->deactivate(plugin);
    plugin->destroy(plugin);
  }

  void play(float** inputs, float** outputs) override {
    const clap_audio_buffer_t from[] = {{inputs, nullptr, 2, 0, 0},
                                        {silent.data(), nullptr, 2, 0, 0}};
    clap_audio_buffer_t to{outputs, nullptr, 2, 0, 0};
    const clap_process_t block{-1, kFrames, &transport, from, &to, 2, 1, &none, &anywhere};
    plugin->process(plugin, &block);
  }

 private:
  std::array<float, kFrames> silence{};
  std::array<float*, 2> silent{silence.data(), silence.data()};
  clap_event_transport_t transport{};
  const clap_host_t host{CLAP_VERSION,
                         nullptr,
                         "bench",
                         "",
                         "",
                         "1",
                         [](const clap_host_t*, const char*) -> const void* { return nullptr; },
                         [](const clap_host_t*) {},
                         [](const clap_host_t*) {},
                         [](const clap_host_t*) {}};
  const clap_input_events_t none{
      nullptr, [](const clap_input_events_t*) { return 0U; },
      [](const clap_input_events_t*, std::uint32_t) -> const clap_event_header_t* {
        return nullptr;
      }};
  const clap_output_events_t anywhere{
      nullptr, [](const clap_output_events_t*, const clap_event_header_t*) { return true; }};
  const clap_plugin_t* plugin = nullptr;
};

/// Of a VST3 host, which asks for one interface alone: the others are none that it lends.
inline constexpr v3_funknown kLent = {
    [](void*, const v3_tuid, void** out) -> v3_result { return *out = nullptr, V3_NO_INTERFACE; },
    [](void*) { return 1U; }, [](void*) { return 1U; }};
inline constexpr v3_param_changes_cpp kNoChanges = {
    kLent,
    {.get_param_count = [](void*) { return 0; },
     .get_param_data = [](void*, std::int32_t) -> v3_param_value_queue** { return nullptr; },
     .add_param_data = [](void*, v3_param_id*, std::int32_t*) -> v3_param_value_queue** {
       return nullptr;
     }}};
inline constexpr v3_event_list_cpp kNoEvents = {
    kLent,
    {.get_event_count = [](void*) { return 0U; },
     .get_event = [](void*, std::int32_t, v3_event*) -> v3_result { return V3_FALSE; },
     .add_event = [](void*, v3_event*) -> v3_result { return V3_FALSE; }}};

/// With a side-chain that is not active.
class Vst3 : public Player {
 public:
  Vst3() {
    const auto entry = reinterpret_cast<v3_plugin_factory_cpp** (*)()>(
        dlsym(dlopen(ZUM_PLUGIN, RTLD_NOW | RTLD_LOCAL), "GetPluginFactory"));
    if (entry == nullptr) throw std::runtime_error("no VST3 entry");
    auto** const factory = entry();
    v3_class_info info{};
    (*factory)->v1.get_class_info(factory, 0, &info);
    void* made = nullptr;
    (*factory)->v1.create_instance(factory, info.class_id, v3_component_iid, &made);
    component = static_cast<v3_component_cpp**>(made);
    (*component)->query_interface(component, v3_audio_processor_iid, &made);
    processor = static_cast<v3_audio_processor_cpp**>(made);
    (*component)->base.initialize(component, nullptr);
    v3_process_setup setup{V3_REALTIME, V3_SAMPLE_32, kFrames, kRate};
    (*processor)->proc.setup_processing(processor, &setup);
    (*component)->comp.set_active(component, 1);
    context.state = V3_PROCESS_CTX_TEMPO_VALID | V3_PROCESS_CTX_PROJECT_TIME_VALID;
    context.bpm = kTempo;
  }
  ~Vst3() override {
    (*component)->comp.set_active(component, 0);
    (*component)->base.terminate(component);
    (*processor)->unref(processor);
    (*component)->unref(component);
  }

  void play(float** inputs, float** outputs) override {
    v3_audio_bus_buffers from[] = {{2, 0, {inputs}}, {2, 0, {silent.data()}}};
    v3_audio_bus_buffers to{2, 0, {outputs}};
    v3_process_data block{V3_REALTIME, V3_SAMPLE_32, kFrames, 2,        1,       from,
                          &to,         none(),       none(),  events(), nullptr, &context};
    (*processor)->proc.process(processor, &block);
  }

 private:
  // The host's interfaces are tables behind two pointers.
  v3_param_changes** none() {
    // NOLINTNEXTLINE(bugprone-casting-through-void)
    return static_cast<v3_param_changes**>(static_cast<void*>(&changesTable));
  }
  v3_event_list** events() {
    // NOLINTNEXTLINE(bugprone-casting-through-void)
    return static_cast<v3_event_list**>(static_cast<void*>(&eventsTable));
  }

  std::array<float, kFrames> silence{};
  std::array<float*, 2> silent{silence.data(), silence.data()};
  const void* changesTable = &kNoChanges;
  const void* eventsTable = &kNoEvents;
  v3_process_context context{};
  v3_component_cpp** component = nullptr;
  v3_audio_processor_cpp** processor = nullptr;
};

/// No events, and silence in the side-chain that nothing is connected to.
class Lv2 : public Player {
 public:
  Lv2() {
    const auto entry = reinterpret_cast<LV2_Descriptor_Function>(
        dlsym(dlopen(ZUM_PLUGIN, RTLD_NOW | RTLD_LOCAL), "lv2_descriptor"));
    if (entry == nullptr) throw std::runtime_error("no LV2 entry");
    plugin = entry(0);
    const LV2_Feature* const features[] = {&mapFeature, nullptr};
    handle = plugin->instantiate(plugin, kRate, "", features);
    for (std::uint32_t i = 0; i < 2; ++i) {
      plugin->connect_port(handle, lv2::Port::sideLeft + i, silence.data());
    }
    plugin->connect_port(handle, lv2::Port::events, &events);
    test::TestHost fresh;
    for (std::uint32_t i = 0; i < kFaceParameters; ++i) {
      const int tag = faceTags()[i];
      controls[i] = lv2::portOfPlain(tag, plainOfRaw(*findRow(tag), fresh.client().value(tag).raw));
      plugin->connect_port(handle, lv2::Port::firstControl + i, &controls[i]);
    }
    plugin->activate(handle);
  }
  ~Lv2() override {
    plugin->deactivate(handle);
    plugin->cleanup(handle);
  }

  void play(float** inputs, float** outputs) override {
    for (std::uint32_t i = 0; i < 2; ++i) {
      plugin->connect_port(handle, lv2::Port::inLeft + i, inputs[i]);
      plugin->connect_port(handle, lv2::Port::outLeft + i, outputs[i]);
    }
    plugin->run(handle, kFrames);
  }

 private:
  static LV2_URID number(LV2_URID_Map_Handle /*handle*/, const char* word) {
    static std::map<std::string, LV2_URID> words;
    return words.try_emplace(word, words.size() + 1).first->second;
  }

  std::array<float, kFrames> silence{};
  std::array<float, kFaceParameters> controls{};
  LV2_URID_Map map{nullptr, number};
  const LV2_Feature mapFeature{LV2_URID__map, &map};
  LV2_Atom_Sequence events{{sizeof(LV2_Atom_Sequence_Body), number(nullptr, LV2_ATOM__Sequence)},
                           {0, 0}};
  const LV2_Descriptor* plugin = nullptr;
  LV2_Handle handle = nullptr;
};

}  // namespace zum::bench
