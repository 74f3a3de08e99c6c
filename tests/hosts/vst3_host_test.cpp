// The VST3 bundle in a host that knows nothing of it but the published C headers. Run twice, as the
// plug-in file is: as it is, and with realtime_check preloaded, which watches every block.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <functional>
#include <map>
#include <memory>
#include <numeric>
#include <set>
#include <string>
#include <thread>
#include <vector>

#include <travesty/audio_processor.h>
#include <travesty/component.h>
#include <travesty/edit_controller.h>
#include <travesty/factory.h>
#include <travesty/host.h>
#include <travesty/unit.h>
#include <travesty/view.h>

#include "core/tags.hpp"
#include "tests/support/own_display.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/temporary_folder.hpp"
#include "tests/support/test_host.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

constexpr v3_tuid kClass = {0xB1, 0xE7, 0x51, 0x3C, 0x98, 0x8D, 0xD3, 0x1E,
                            0x65, 0xC2, 0x24, 0x24, 0xFE, 0xB9, 0x13, 0x27};
constexpr v3_param_id kProgram = 1000;
constexpr v3_param_id kMidi = 2000;

// ---- what a host lends: each an object of one interface, whose first word is the table

/// Nobody counts them: they live as long as the test says.
constexpr v3_funknown kLent = {
    [](void*, const v3_tuid, void** out) -> v3_result { return *out = nullptr, V3_NO_INTERFACE; },
    [](void*) -> std::uint32_t { return 1; }, [](void*) -> std::uint32_t { return 1; }};

template <class Object>
Object& mine(void* self) {
  return *static_cast<Object*>(self);
}

/// Gives and takes `piece` bytes at a time.
struct Stream {
  const void* table = &kTable;
  std::vector<std::byte> bytes;
  std::size_t piece = 1U << 20U;
  std::size_t at = 0;

  v3_bstream** face() { return reinterpret_cast<v3_bstream**>(this); }

  struct Table {
    v3_funknown unknown;
    v3_bstream stream;
  };
  static const Table kTable;
};
const Stream::Table Stream::kTable = {
    kLent,
    {.read = [](void* self, void* to, std::int32_t count, std::int32_t* read) -> v3_result {
       auto& stream = mine<Stream>(self);
       const auto wanted = static_cast<std::size_t>(count);
       const std::size_t n = std::min({wanted, stream.piece, stream.bytes.size() - stream.at});
       if (n > 0) std::memcpy(to, stream.bytes.data() + stream.at, n);
       stream.at += n;
       *read = static_cast<std::int32_t>(n);
       return V3_OK;
     },
     .write = [](void* self, void* from, std::int32_t count, std::int32_t* written) -> v3_result {
       auto& stream = mine<Stream>(self);
       const std::size_t n = std::min(static_cast<std::size_t>(count), stream.piece);
       const auto* const bytes = static_cast<const std::byte*>(from);
       stream.bytes.insert(stream.bytes.end(), bytes, bytes + n);
       *written = static_cast<std::int32_t>(n);
       return V3_OK;
     },
     .seek = [](void*, std::int64_t, std::int32_t, std::int64_t*) -> v3_result {
       return V3_NOT_IMPLEMENTED;
     },
     .tell = [](void*, std::int64_t*) -> v3_result { return V3_NOT_IMPLEMENTED; }}};

struct Point {
  v3_param_id id;
  std::int32_t frame;
  double value;
};

struct Queue {
  const void* table = &kTable;
  v3_param_id id = 0;
  std::vector<Point> points = {};

  static const v3_param_value_queue_cpp kTable;
};
const v3_param_value_queue_cpp Queue::kTable = {
    kLent,
    {.get_param_id = [](void* self) { return mine<Queue>(self).id; },
     .get_point_count =
         [](void* self) { return static_cast<std::int32_t>(mine<Queue>(self).points.size()); },
     .get_point = [](void* self, std::int32_t i, std::int32_t* frame, double* value) -> v3_result {
       const Point& point = mine<Queue>(self).points.at(static_cast<std::size_t>(i));
       *frame = point.frame, *value = point.value;
       return V3_OK;
     },
     .add_point = [](void* self, std::int32_t frame, double value, std::int32_t*) -> v3_result {
       auto& queue = mine<Queue>(self);
       if (queue.points.size() == queue.points.capacity()) return V3_FALSE;
       queue.points.push_back({queue.id, frame, value});
       return V3_OK;
     }}};

struct Changes {
  const void* table = &kTable;
  std::vector<Queue> queues;

  explicit Changes(const std::vector<Point>& points = {}) {
    for (const Point& point : points) {
      auto queue = std::ranges::find(queues, point.id, &Queue::id);
      if (queue == queues.end()) {
        queues.push_back({.id = point.id});
        queue = queues.end() - 1;
      }
      queue->points.push_back(point);
    }
  }
  v3_param_changes** face() { return reinterpret_cast<v3_param_changes**>(this); }
  /// Room for a block's, so that none asks for memory.
  void makeRoom() {
    queues.clear();
    spare.resize(64);
    for (Queue& queue : spare) queue.points.reserve(4);
    queues.reserve(spare.size());
  }

  static const v3_param_changes_cpp kTable;

 private:
  std::vector<Queue> spare;
};
const v3_param_changes_cpp Changes::kTable = {
    kLent,
    {.get_param_count =
         [](void* self) { return static_cast<std::int32_t>(mine<Changes>(self).queues.size()); },
     .get_param_data =
         [](void* self, std::int32_t i) {
           auto& queues = mine<Changes>(self).queues;
           return reinterpret_cast<v3_param_value_queue**>(&queues.at(static_cast<std::size_t>(i)));
         },
     .add_param_data =
         [](void* self, v3_param_id* id, std::int32_t* index) {
           auto& changes = mine<Changes>(self);
           *index = static_cast<std::int32_t>(changes.queues.size());
           Queue& added =
               changes.queues.emplace_back(std::move(changes.spare.at(changes.queues.size())));
           added.id = *id;
           return reinterpret_cast<v3_param_value_queue**>(&added);
         }}};

struct Note {
  std::int32_t frame;
  std::int16_t pitch;
  float velocity;  // 0 ends it
};

struct Events {
  const void* table = &kTable;
  std::vector<v3_event> events;

  explicit Events(const std::vector<Note>& notes = {}) {
    for (const Note& note : notes) {
      v3_event event{};
      event.sample_offset = note.frame;
      event.type = note.velocity > 0.0F ? V3_EVENT_NOTE_ON : V3_EVENT_NOTE_OFF;
      if (note.velocity > 0.0F) event.note_on = {0, note.pitch, 0.0F, note.velocity, 0, -1};
      if (note.velocity <= 0.0F) event.note_off = {0, note.pitch, 0.0F, -1, 0.0F};
      events.push_back(event);
    }
  }
  v3_event_list** face() { return reinterpret_cast<v3_event_list**>(this); }

  static const v3_event_list_cpp kTable;
};
const v3_event_list_cpp Events::kTable = {
    kLent,
    {.get_event_count =
         [](void* self) { return static_cast<std::uint32_t>(mine<Events>(self).events.size()); },
     .get_event = [](void* self, std::int32_t i, v3_event* event) -> v3_result {
       return *event = mine<Events>(self).events.at(static_cast<std::size_t>(i)), V3_OK;
     },
     .add_event = [](void*, v3_event*) -> v3_result { return V3_NOT_IMPLEMENTED; }}};

/// Hears of edits. A second interface for "dirty" stands behind the first.
struct Handler {
  struct Table {
    v3_funknown unknown;
    v3_component_handler handler;
  };
  struct DirtyTable {
    v3_funknown unknown;
    v3_component_handler2 handler;
  };
  struct Dirty {
    const void* table = &kDirty;
    int count = 0;
  };
  const void* table = &kTable;
  Dirty dirty;
  std::vector<std::string> calls;  // "begin 3", "edit 3", "end 3", "restart 4"
  int references = 1;

  void heard(const char* what, std::int64_t of) {
    calls.push_back(std::string(what) + ' ' + std::to_string(of));
  }
  v3_component_handler** face() { return reinterpret_cast<v3_component_handler**>(this); }

  static const Table kTable;
  static const DirtyTable kDirty;
};
const Handler::DirtyTable Handler::kDirty = {kLent,
                                             {.set_dirty = [](void* self, v3_bool) -> v3_result {
                                                return ++mine<Handler::Dirty>(self).count, V3_OK;
                                              },
                                              .request_open_editor = nullptr,
                                              .start_group_edit = nullptr,
                                              .finish_group_edit = nullptr}};
const Handler::Table Handler::kTable = {
    {[](void* self, const v3_tuid iid, void** out) -> v3_result {
       const bool known = v3_tuid_match(iid, v3_component_handler2_iid);
       *out = known ? &mine<Handler>(self).dirty : nullptr;
       return known ? V3_OK : V3_NO_INTERFACE;
     },
     [](void* self) { return static_cast<std::uint32_t>(++mine<Handler>(self).references); },
     [](void* self) { return static_cast<std::uint32_t>(--mine<Handler>(self).references); }},
    {.begin_edit = [](void* self, v3_param_id id) -> v3_result {
       return mine<Handler>(self).heard("begin", id), V3_OK;
     },
     .perform_edit = [](void* self, v3_param_id id, double value) -> v3_result {
       EXPECT_TRUE(value >= 0.0 && value <= 1.0) << id;
       return mine<Handler>(self).heard("edit", id), V3_OK;
     },
     .end_edit = [](void* self, v3_param_id id) -> v3_result {
       return mine<Handler>(self).heard("end", id), V3_OK;
     },
     .restart_component = [](void* self, std::int32_t flags) -> v3_result {
       return mine<Handler>(self).heard("restart", flags), V3_OK;
     }}};

// ---- the module, and an instance of it

v3_plugin_factory_cpp** factory() {
  static void* const made = [] {
    void* const library = dlopen(ZUM_VST3, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) ADD_FAILURE() << dlerror();
    const auto entry = reinterpret_cast<bool (*)(void*)>(dlsym(library, "ModuleEntry"));
    EXPECT_TRUE(entry(library));
    return reinterpret_cast<void* (*)()>(dlsym(library, "GetPluginFactory"))();
  }();
  return static_cast<v3_plugin_factory_cpp**>(made);
}

void* make(const v3_tuid classId, const v3_tuid iid) {
  void* made = nullptr;
  const v3_result answer = (*factory())->v1.create_instance(factory(), classId, iid, &made);
  EXPECT_EQ(answer == V3_OK, made != nullptr);
  return made;
}

template <class Table>
Table** queried(void* object, const v3_tuid iid) {
  void* found = nullptr;
  (*static_cast<v3_funknown**>(object))->query_interface(object, iid, &found);
  return static_cast<Table**>(found);
}

std::string utf8(const std::int16_t* text) {
  std::string all;
  for (; *text != 0; ++text) all += *text < 128 ? static_cast<char>(*text) : '?';
  return all;
}

class Plugin {
 public:
  explicit Plugin(double rate = 44100.0, std::int32_t most = 8192) {
    void* const made = make(kClass, v3_component_iid);
    component = static_cast<v3_component_cpp**>(made);
    processor = queried<v3_audio_processor_cpp>(made, v3_audio_processor_iid);
    controller = queried<v3_edit_controller_cpp>(made, v3_edit_controller_iid);
    EXPECT_EQ((*component)->base.initialize(component, nullptr), V3_OK);
    EXPECT_NE((*controller)->base.initialize(controller, nullptr), V3_OK);  // it is the same
    EXPECT_EQ((*controller)->ctrl.set_component_handler(controller, handler.face()), V3_OK);
    if (rate > 0.0) activate(rate, most);
  }
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;
  ~Plugin() { end(); }

  void end() {
    if (component == nullptr) return;
    (*component)->base.terminate(component);
    EXPECT_EQ(handler.references, 1);
    (*controller)->unref(controller), (*processor)->unref(processor);
    left = (*component)->unref(component);
    component = nullptr;
  }
  void activate(double rate, std::int32_t most = 8192) {
    (*component)->comp.set_active(component, 0);
    v3_process_setup setup = {V3_REALTIME, V3_SAMPLE_32, most, rate};
    EXPECT_EQ((*processor)->proc.setup_processing(processor, &setup), V3_OK);
    EXPECT_EQ((*component)->comp.set_active(component, 1), V3_OK);
    EXPECT_EQ((*processor)->proc.set_processing(processor, 1), V3_OK);
  }

  void set(v3_param_id id, double value) {
    EXPECT_EQ((*controller)->ctrl.set_parameter_normalised(controller, id, value), V3_OK) << id;
  }
  double get(v3_param_id id) {
    return (*controller)->ctrl.get_parameter_normalised(controller, id);
  }
  std::map<v3_param_id, double> all() {
    std::map<v3_param_id, double> values;
    for (const std::int16_t tag : faceTags())
      values[static_cast<v3_param_id>(tag)] = get(static_cast<v3_param_id>(tag));
    return values;
  }
  std::vector<std::byte> save(std::size_t piece = 1U << 20U) {
    Stream stream{.bytes = {}, .piece = piece};
    EXPECT_EQ((*component)->comp.get_state(component, stream.face()), V3_OK);
    return stream.bytes;
  }
  bool load(const std::vector<std::byte>& state, std::size_t piece = 1U << 20U) {
    Stream stream{.bytes = state, .piece = piece};
    return (*component)->comp.set_state(component, stream.face()) == V3_OK;
  }

  /// One block from `at` on. `in` and `out` may be the same.
  void play(const Stereo& in, Stereo& out, std::size_t at, std::int32_t frames,
            const std::vector<Point>& points = {}, const std::vector<Note>& notes = {}) {
    float* from[] = {const_cast<float*>(in.left.data() + at),
                     const_cast<float*>(in.right.data() + at)};
    float* to[] = {out.left.data() + at, out.right.data() + at};
    v3_audio_bus_buffers inputs[2] = {{2, 0, {from}}, {0, 0, {nullptr}}};
    float* side[] = {nullptr, nullptr};
    if (sideChain != nullptr) {
      side[0] = const_cast<float*>(sideChain->left.data() + at);
      side[1] = const_cast<float*>(sideChain->right.data() + at);
      inputs[1] = {2, 0, {side}};
    }
    v3_audio_bus_buffers outputs[1] = {{2, ~0ULL, {to}}};
    Changes changes(points);
    Events events(notes);
    v3_process_data data = {V3_REALTIME, V3_SAMPLE_32,  frames,  sideChain != nullptr ? 2 : 1,
                            1,           inputs,        outputs, changes.face(),
                            told.face(), events.face(), nullptr, context};
    if (!takesChanges) data.output_params = nullptr;
    process(data);
    EXPECT_EQ(outputs[0].channel_silence_bitset, 0U);
  }
  v3_result process(v3_process_data& data) {
    told.makeRoom();
    const RealtimeWatch watch;
    return (*processor)->proc.process(processor, &data);
  }
  /// All of `in`; points and notes count from its start.
  Stereo render(const Stereo& in, const std::vector<std::size_t>& ends,
                const std::vector<Point>& points = {}, const std::vector<Note>& notes = {}) {
    Stereo out(in.frames());
    std::size_t at = 0;
    for (const std::size_t end : ends) {
      const auto within = [&](const auto& all) {
        auto some = all;
        std::erase_if(some, [&](const auto& one) {
          const auto frame = static_cast<std::size_t>(one.frame);
          return frame < at || frame >= end;
        });
        for (auto& one : some) one.frame -= static_cast<std::int32_t>(at);
        return some;
      };
      play(in, out, at, static_cast<std::int32_t>(end - at), within(points), within(notes));
      at = end;
    }
    return out;
  }
  Stereo render(const Stereo& in) { return render(in, {in.frames()}); }
  /// All wet, and its filter opened.
  void prepare() {
    set(tag::mixDryWet, 1.0), set(tag::master, 0.5), set(tag::bank, 0.0);
    set(tag::cutoff, 0.5), set(tag::resonance, 0.4), set(tag::multiType, 0.0);
  }

  Handler handler;
  v3_component_cpp** component = nullptr;
  v3_audio_processor_cpp** processor = nullptr;
  v3_edit_controller_cpp** controller = nullptr;
  Changes told;
  bool takesChanges = true;
  const Stereo* sideChain = nullptr;
  v3_process_context* context = nullptr;
  std::uint32_t left = 1;  // references behind the end
};

// ---- what it is

TEST(Vst3Factory, TellsOfOneEffectAndMakesNothingElse) {
  ASSERT_EQ(std::getenv("ZUM_RT_STATUS") != nullptr, realtimeEnter != nullptr) << "not preloaded";
  const auto& table = **factory();
  v3_factory_info info{};
  ASSERT_EQ(table.v1.get_factory_info(factory(), &info), V3_OK);
  EXPECT_STREQ(info.vendor, "Zelvane");
  ASSERT_EQ(table.v1.num_classes(factory()), 1);
  v3_class_info one{};
  v3_class_info_2 two{};
  v3_class_info_3 three{};
  ASSERT_EQ(table.v1.get_class_info(factory(), 0, &one), V3_OK);
  ASSERT_EQ(table.v2.get_class_info_2(factory(), 0, &two), V3_OK);
  ASSERT_EQ(table.v3.get_class_info_utf16(factory(), 0, &three), V3_OK);
  for (const std::uint8_t* id : {one.class_id, two.class_id, three.class_id}) {
    EXPECT_TRUE(v3_tuid_match(id, kClass));
  }
  EXPECT_STREQ(one.category, "Audio Module Class");
  EXPECT_STREQ(two.sub_categories, "Fx|Filter");
  EXPECT_EQ(std::string(one.name) + two.name + utf8(three.name), "ZUMZUMZUM");
  EXPECT_EQ(utf8(three.version), two.version);
  for (const std::int32_t index : {-1, 1, INT32_MAX}) {
    EXPECT_NE(table.v1.get_class_info(factory(), index, &one), V3_OK);
    EXPECT_NE(table.v2.get_class_info_2(factory(), index, &two), V3_OK);
    EXPECT_NE(table.v3.get_class_info_utf16(factory(), index, &three), V3_OK);
  }
  EXPECT_EQ(make(v3_component_iid, v3_component_iid), nullptr);  // another class
  EXPECT_EQ(make(kClass, kClass), nullptr);                      // another interface
  for (const v3_tuid* iid : {&v3_funknown_iid, &v3_plugin_factory_iid, &v3_plugin_factory_2_iid,
                             &v3_plugin_factory_3_iid}) {
    EXPECT_EQ(queried<void>(factory(), *iid), static_cast<void*>(factory()));
  }
}

TEST(Vst3Factory, OneObjectHasAllInterfacesAndGoesWithTheLastReference) {
  const v3_tuid* const ids[] = {&v3_funknown_iid,        &v3_plugin_base_iid,
                                &v3_component_iid,       &v3_audio_processor_iid,
                                &v3_edit_controller_iid, &v3_unit_information_iid,
                                &v3_midi_mapping_iid,    &v3_process_context_requirements_iid};
  for (const v3_tuid* first : ids) {
    void* const made = make(kClass, *first);
    ASSERT_NE(made, nullptr);
    void* const self = queried<void>(made, v3_funknown_iid);
    std::uint32_t references = 2;
    for (const v3_tuid* iid : ids) {
      auto** const face = queried<v3_funknown>(made, *iid);
      ASSERT_NE(face, nullptr);
      EXPECT_EQ(queried<void>(face, v3_funknown_iid), self);
      references += 2;
      EXPECT_EQ((*face)->ref(face), references + 1);
      (*face)->unref(face), (*face)->unref(face), references -= 1;
      (*face)->unref(face), references -= 1;
    }
    auto** const object = static_cast<v3_funknown**>(made);
    EXPECT_EQ(queried<void>(made, kClass), nullptr);
    EXPECT_EQ((*object)->unref(made), 1U);
    EXPECT_EQ((*object)->unref(made), 0U);
  }
  Plugin plugin(0.0);
  plugin.end();
  EXPECT_EQ(plugin.left, 0U);
}

TEST(Vst3Factory, ShowsItsBuses) {
  Plugin plugin(0.0);
  const auto& component = (*plugin.component)->comp;
  const struct {
    int media, direction, index, channels, type;
    std::uint32_t flags;
  } buses[] = {{V3_AUDIO, V3_INPUT, 0, 2, V3_MAIN, V3_DEFAULT_ACTIVE},
               {V3_AUDIO, V3_INPUT, 1, 2, V3_AUX, 0},
               {V3_AUDIO, V3_OUTPUT, 0, 2, V3_MAIN, V3_DEFAULT_ACTIVE},
               {V3_EVENT, V3_INPUT, 0, 16, V3_MAIN, V3_DEFAULT_ACTIVE}};
  for (const auto& bus : buses) {
    v3_bus_info info{};
    ASSERT_EQ(component.get_bus_info(plugin.component, bus.media, bus.direction, bus.index, &info),
              V3_OK);
    EXPECT_EQ(info.channel_count, bus.channels);
    EXPECT_EQ(info.bus_type, bus.type);
    EXPECT_EQ(info.flags, bus.flags);
  }
  v3_bus_info none{};
  for (const auto& [media, direction, index] :
       std::initializer_list<std::array<int, 3>>{{0, 0, 2}, {0, 1, 1}, {1, 1, 0}, {7, 7, -1}}) {
    EXPECT_NE(component.get_bus_info(plugin.component, media, direction, index, &none), V3_OK);
    EXPECT_NE(component.activate_bus(plugin.component, media, direction, index, 1), V3_OK);
  }
  const auto& processor = (*plugin.processor)->proc;
  v3_speaker_arrangement stereo[] = {3, 3, 3};
  v3_speaker_arrangement mono[] = {V3_SPEAKER_M};
  const auto arrange = [&](v3_speaker_arrangement* in, int ins, v3_speaker_arrangement* out,
                           int outs) {
    return processor.set_bus_arrangements(plugin.processor, in, ins, out, outs) == V3_OK;
  };
  EXPECT_TRUE(arrange(stereo, 1, stereo, 1) && arrange(stereo, 2, stereo, 1));
  EXPECT_FALSE(arrange(mono, 1, stereo, 1) || arrange(stereo, 1, mono, 1) ||
               arrange(stereo, 3, stereo, 1) || arrange(nullptr, 0, nullptr, 0));
  EXPECT_NE(processor.can_process_sample_size(plugin.processor, V3_SAMPLE_64), V3_OK);
  v3_process_setup setup = {V3_REALTIME, V3_SAMPLE_64, 512, 48000.0};
  EXPECT_NE(processor.setup_processing(plugin.processor, &setup), V3_OK);
  EXPECT_EQ(processor.get_latency_samples(plugin.processor), 0U);
  EXPECT_EQ(processor.get_tail_samples(plugin.processor), 0U);
}

// ---- parameters

TEST(Vst3Parameters, IdsStandForEverAndMidiStaysOutOfSight) {
  Plugin plugin(0.0);
  std::vector<v3_param_id> ids(53);
  std::iota(ids.begin(), ids.end(), 0U);
  ids.insert(ids.end(), {58, 59, 62, 61, 60, 65, 222, 1000});
  for (v3_param_id i = 0; i < 130; ++i) ids.push_back(2000 + i);
  const auto& controller = (*plugin.controller)->ctrl;
  ASSERT_EQ(controller.get_parameter_count(plugin.controller), static_cast<int>(ids.size()));
  for (std::size_t i = 0; i < ids.size(); ++i) {
    v3_param_info info{};
    ASSERT_EQ(controller.get_parameter_info(plugin.controller, static_cast<int>(i), &info), V3_OK);
    EXPECT_EQ(info.param_id, ids[i]);
    EXPECT_EQ((info.flags & V3_PARAM_CAN_AUTOMATE) != 0, i < 60) << i;
    EXPECT_EQ((info.flags & V3_PARAM_IS_HIDDEN) != 0, i >= 60) << i;  // there is no bank here
    EXPECT_EQ((info.flags & V3_PARAM_IS_BYPASS) != 0, ids[i] == 222);
    EXPECT_EQ((info.flags & V3_PARAM_PROGRAM_CHANGE) != 0, ids[i] == kProgram);
  }
  v3_param_info info{};
  for (const int i : {-1, 191, INT32_MAX}) {
    EXPECT_NE(controller.get_parameter_info(plugin.controller, i, &info), V3_OK);
  }
  auto** const map = queried<v3_midi_mapping_cpp>(plugin.component, v3_midi_mapping_iid);
  for (const std::int16_t channel : std::initializer_list<std::int16_t>{0, 15}) {
    for (const std::int16_t number : std::initializer_list<std::int16_t>{0, 127, 129}) {
      v3_param_id id = 0;
      EXPECT_EQ((*map)->map.get_midi_controller_assignment(map, 0, channel, number, &id), V3_OK);
      EXPECT_EQ(id, 2000U + static_cast<v3_param_id>(number));
    }
  }
  v3_param_id id = 7;
  EXPECT_NE((*map)->map.get_midi_controller_assignment(map, 0, 0, 130, &id), V3_OK);
  EXPECT_NE((*map)->map.get_midi_controller_assignment(map, 0, 16, 1, &id), V3_OK);
  EXPECT_NE((*map)->map.get_midi_controller_assignment(map, 1, 0, 1, &id), V3_OK);
  EXPECT_EQ(id, 7U);
  (*map)->unref(map);
}

TEST(Vst3Parameters, TextsReadBackAndUnitsHoldThem) {
  Plugin plugin(0.0);
  const auto& controller = (*plugin.controller)->ctrl;
  auto** const units = queried<v3_unit_information_cpp>(plugin.component, v3_unit_information_iid);
  const int unitCount = (*units)->unit.get_unit_count(units);
  std::set<std::string> paths;
  for (int i = 0; i < 191; ++i) {
    v3_param_info info{};
    ASSERT_EQ(controller.get_parameter_info(plugin.controller, i, &info), V3_OK);
    EXPECT_NE(info.title[0], 0);
    v3_unit_info unit{};
    ASSERT_EQ((*units)->unit.get_unit_info(units, info.unit_id, &unit), V3_OK);
    if (i < 60) paths.insert(utf8(unit.name));
    if (info.param_id == kProgram) continue;  // no programs here
    const int steps = info.step_count > 0 ? info.step_count : 37;
    for (int step = 0; step <= steps; ++step) {
      const double value = static_cast<double>(step) / steps;
      v3_str_128 text{};
      v3_str_128 again{};
      double read = -1.0;
      ASSERT_EQ(
          controller.get_parameter_string_for_value(plugin.controller, info.param_id, value, text),
          V3_OK);
      ASSERT_EQ(
          controller.get_parameter_value_for_string(plugin.controller, info.param_id, text, &read),
          V3_OK)
          << utf8(info.title) << ": " << utf8(text);
      controller.get_parameter_string_for_value(plugin.controller, info.param_id, read, again);
      EXPECT_EQ(utf8(text), utf8(again)) << utf8(info.title);
      const double plain =
          controller.normalised_parameter_to_plain(plugin.controller, info.param_id, value);
      EXPECT_NEAR(plain, i >= 61 ? 127.0 * value : info.step_count > 0 ? step : value, 1e-9);
      EXPECT_NEAR(controller.plain_parameter_to_normalised(plugin.controller, info.param_id, plain),
                  value, 1e-9);
    }
    EXPECT_EQ(plugin.get(info.param_id) >= 0.0 && plugin.get(info.param_id) <= 1.0, true);
  }
  EXPECT_EQ(paths,
            (std::set<std::string>{"Filter", "Drive", "Output", "Follower", "LFO", "Sequencer"}));
  EXPECT_EQ(unitCount, 7);
  v3_unit_info none{};
  EXPECT_NE((*units)->unit.get_unit_info(units, 7, &none), V3_OK);
  (*units)->unref(units);
  const struct {
    v3_param_id id;
    double value;
    const char* text;
  } shown[] = {{tag::master, 0.25, "-6.0 dB"},
               {tag::cutoffLfo, 0.7, "+40 %"},
               {tag::bypass, 1.0, "On"},
               {kMidi + 7, 0.5, "64"}};
  for (const auto& [id, value, expected] : shown) {
    v3_str_128 text{};
    controller.get_parameter_string_for_value(plugin.controller, id, value, text);
    EXPECT_EQ(utf8(text), expected);
  }
}

TEST(Vst3Parameters, UnknownIdsAndBrokenValuesTouchNothing) {
  Plugin plugin;
  plugin.prepare();
  const auto before = plugin.all();
  const auto& controller = (*plugin.controller)->ctrl;
  v3_str_128 text = {'1', 0};
  double value = 7.0;
  for (const v3_param_id id : {53U, 223U, 999U, 1001U, 1999U, 2130U, 0x80000000U, ~0U}) {
    EXPECT_NE(controller.set_parameter_normalised(plugin.controller, id, 0.5), V3_OK) << id;
    EXPECT_EQ(controller.get_parameter_normalised(plugin.controller, id), 0.0);
    EXPECT_NE(controller.get_parameter_string_for_value(plugin.controller, id, 0.5, text), V3_OK);
    EXPECT_NE(controller.get_parameter_value_for_string(plugin.controller, id, text, &value),
              V3_OK);
    EXPECT_EQ(controller.normalised_parameter_to_plain(plugin.controller, id, 0.5), 0.0);
    plugin.render(noise(64), {64}, {{id, 3, 0.5}});
  }
  EXPECT_EQ(value, 7.0);
  const double nan = std::nan("");
  EXPECT_NE(controller.set_parameter_normalised(plugin.controller, tag::cutoff, nan), V3_OK);
  plugin.render(noise(64), {64}, {{tag::cutoff, 3, nan}});
  EXPECT_EQ(plugin.all(), before);
  plugin.render(noise(64), {64}, {{tag::cutoff, 3, 1e30}, {tag::resonance, 3, -1e30}});
  EXPECT_EQ(plugin.get(tag::cutoff), 1.0);
  EXPECT_EQ(plugin.get(tag::resonance), 0.0);
  v3_str_128 endless;
  std::fill(std::begin(endless), std::end(endless), std::int16_t{'9'});
  controller.get_parameter_value_for_string(plugin.controller, tag::cutoff, endless, &value);
}

TEST(Vst3Parameters, TheControllerCountsUntilPointsCome) {
  Plugin plugin(0.0);
  plugin.prepare();  // ahead of the activation
  plugin.set(tag::cutoff, 0.75);
  EXPECT_EQ(plugin.get(tag::cutoff), 0.75);
  Plugin restored(0.0);
  ASSERT_TRUE(restored.load(plugin.save()));
  EXPECT_EQ(restored.get(tag::cutoff), 0.75);
  plugin.activate(44100.0);
  EXPECT_EQ(plugin.get(tag::cutoff), 0.75);
  plugin.render(noise(64), {64}, {{tag::cutoff, 0, 0.25}});
  plugin.set(tag::cutoff, 0.5);  // the window of the host, behind the time
  EXPECT_EQ(plugin.get(tag::cutoff), 0.25);
  plugin.set(tag::resonance, 0.5);
  EXPECT_EQ(plugin.get(tag::resonance), 0.5);
  plugin.activate(48000.0);
  plugin.set(tag::cutoff, 0.5);
  EXPECT_EQ(plugin.get(tag::cutoff), 0.5);
}

TEST(Vst3Parameters, SeveralThreadsSetWhileABlockPlays) {
  Plugin plugin;
  plugin.prepare();
  std::atomic<bool> done{false};
  std::vector<std::thread> users;
  users.reserve(3);
  for (int t = 0; t < 3; ++t) {
    users.emplace_back([&, t] {
      for (int i = 0; !done; ++i) {
        const auto id = static_cast<v3_param_id>((i + 20 * t) % 53);
        (*plugin.controller)->ctrl.set_parameter_normalised(plugin.controller, id, i % 11 / 10.0);
        (*plugin.controller)->ctrl.get_parameter_normalised(plugin.controller, id);
      }
    });
  }
  const Stereo in = noise(256);
  for (int i = 0; i < 200; ++i) {
    for (const float x : plugin.render(in).left) ASSERT_LT(std::fabs(x), 8.0F);
  }
  done = true;
  for (std::thread& user : users) user.join();
}

// ---- the block call

TEST(Vst3Block, PointsAndNotesPlayAtTheirSample) {
  const Stereo in = noise(4096);
  const std::vector<Point> points = {
      {tag::cutoff, 100, 0.2},    {tag::cutoff, 777, 0.9},     {tag::cutoff, 778, 0.6},
      {tag::resonance, 333, 0.9}, {tag::multiType, 1500, 1.0}, {tag::overdrive, 777, 0.7},
      {kMidi + 74, 2000, 0.8},    {kMidi + 128, 2100, 0.5},    {tag::lfoStyle, 5, 1.0},
      {tag::cutoffLfo, 6, 0.9},   {kMidi + 129, 2500, 0.2}};
  const std::vector<Note> notes = {{900, 60, 0.7F}, {1000, 60, 0.0F}, {3000, 62, 1.0F}};
  std::vector<std::size_t> ends;
  ends.reserve(points.size() + notes.size() + 1);
  for (const Point& point : points) ends.push_back(static_cast<std::size_t>(point.frame));
  for (const Note& note : notes) ends.push_back(static_cast<std::size_t>(note.frame));
  ends.push_back(in.frames());
  std::ranges::sort(ends);
  const auto repeated = std::ranges::unique(ends);
  ends.erase(repeated.begin(), repeated.end());
  Plugin whole;
  Plugin cut;
  Plugin late;
  for (Plugin* plugin : {&whole, &cut, &late}) plugin->prepare();
  const Stereo out = whole.render(in, {in.frames()}, points, notes);
  EXPECT_EQ(out, cut.render(in, ends, points, notes));
  auto moved = points;
  moved[3].frame += 32;
  EXPECT_NE(out, late.render(in, {in.frames()}, moved, notes));
  EXPECT_EQ(whole.get(tag::cutoff), static_cast<double>(0.6F));
}

TEST(Vst3Block, PlaysWhatTheLinkedEffectPlays) {
  for (const double rate : {11050.0, 44100.0, 196000.0}) {
    const Stereo in = noise(8192);
    TestHost linked(static_cast<float>(rate));
    linked.giveTime(133.0, 2.5, kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid);
    v3_process_context context{};
    context.state =
        V3_PROCESS_CTX_PLAYING | V3_PROCESS_CTX_PROJECT_TIME_VALID | V3_PROCESS_CTX_TEMPO_VALID;
    context.bpm = 133.0, context.project_time_quarters = 2.5;
    Plugin plugin(rate);
    plugin.context = &context;
    linked.set(tag::lfoStyle, 1.0F), plugin.set(tag::lfoStyle, 1.0);  // follows the beats
    for (const int tag : {tag::cutoff, tag::resonance, tag::lfoRate, tag::cutoffLfo}) {
      linked.set(tag, 0.7F);
      plugin.set(static_cast<v3_param_id>(tag), static_cast<double>(0.7F));
    }
    const Stereo out = plugin.render(in);
    EXPECT_EQ(out, linked.render(in, {8192})) << rate;
    EXPECT_GT(energy(out), 1.0);
    Plugin other(rate);
    other.set(tag::cutoffLfo, 0.7);
    EXPECT_NE(other.render(in), out);  // another tempo, of a host that tells of none
  }
}

TEST(Vst3Block, AnyBlocksInPlaceAndAfterARestart) {
  const Stereo in = noise(8192);
  std::vector<std::size_t> ones(600);
  std::iota(ones.begin(), ones.end(), 1U);
  ones.push_back(in.frames());
  Plugin one;
  one.prepare();
  const Stereo out = one.render(in, {in.frames()});
  std::vector<std::unique_ptr<Plugin>> others;
  others.reserve(8);
  for (int i = 0; i < 8; ++i) others.push_back(std::make_unique<Plugin>());
  for (auto& other : others) other->prepare();
  Stereo inPlace = in;
  others[0]->play(inPlace, inPlace, 0, 8192);
  EXPECT_EQ(inPlace, out);
  EXPECT_EQ(others[1]->render(in, ones), out);
  for (std::size_t i = 2; i < 8; ++i) EXPECT_EQ(others[i]->render(in), out);
  one.activate(48000.0, 16), one.activate(44100.0);
  EXPECT_EQ(one.get(tag::cutoff), 0.5);
  EXPECT_GT(energy(one.render(in)), 1.0);
}

TEST(Vst3Block, BearsWhatIsMissing) {
  Plugin plugin(44100.0, 512);
  plugin.prepare();
  std::array<float, 1024> room{};
  float* both[] = {room.data(), room.data() + 512};
  float* half[] = {room.data(), nullptr};
  float* none[] = {nullptr, nullptr};
  Changes changes({{tag::cutoff, -5, 0.3}, {tag::cutoff, 1 << 30, 0.7}, {kMidi + 1, 2, 1.0}});
  Events events({{-1, 60, 1.0F}, {1 << 30, 300, 1.0F}});
  events.events[0].bus_index = 9;
  for (const std::int32_t frames : {0, 1, 512, 100000}) {
    for (float** in : {static_cast<float**>(nullptr), both, half, none}) {
      for (float** out : {static_cast<float**>(nullptr), both, half, none}) {
        if (frames > 512 && (in == both || out != nullptr)) continue;  // no room here for so many
        for (const int buses : {0, 1}) {
          v3_audio_bus_buffers inputs[] = {{in == half ? 1 : 2, 0, {in}}};
          v3_audio_bus_buffers outputs[] = {{out == half ? 1 : 2, 0, {out}}};
          v3_process_data data = {V3_OFFLINE, V3_SAMPLE_32,  frames,  buses,
                                  buses,      inputs,        outputs, changes.face(),
                                  nullptr,    events.face(), nullptr, nullptr};
          EXPECT_EQ(plugin.process(data), V3_OK);
          data.inputs = data.outputs = nullptr;
          EXPECT_EQ(plugin.process(data), V3_OK);
        }
      }
    }
  }
  EXPECT_EQ(plugin.get(tag::cutoff), static_cast<double>(0.7F));
  v3_process_data data{};
  data.symbolic_sample_size = V3_SAMPLE_64;
  EXPECT_NE(plugin.process(data), V3_OK);
  data.symbolic_sample_size = V3_SAMPLE_32;
  data.nframes = -1;
  EXPECT_NE(plugin.process(data), V3_OK);
  Plugin idle(0.0);  // never switched on
  Stereo out(64, 1.0F);
  idle.play(noise(64), out, 0, 64, {{tag::cutoff, 0, 0.5}});
  EXPECT_EQ(energy(out), 0.0);
  EXPECT_EQ(idle.get(tag::cutoff), 0.5);
}

TEST(Vst3Block, SideChainIsHeardWhenActiveAndFed) {
  const Stereo in = noise(4096);
  const Stereo loud(4096, 0.9F);
  const auto render = [&](bool active, const Stereo* side) {
    Plugin plugin;
    plugin.prepare();
    plugin.set(tag::cutoffEf, 1.0);
    plugin.sideChain = side;
    const auto on = static_cast<v3_bool>(active);
    (*plugin.component)->comp.activate_bus(plugin.component, V3_AUDIO, V3_INPUT, 1, on);
    return plugin.render(in);
  };
  const Stereo plain = render(false, nullptr);
  EXPECT_EQ(render(false, &loud), plain);
  EXPECT_EQ(render(true, nullptr), plain);
  EXPECT_EQ(render(true, &in), plain);
  EXPECT_NE(render(true, &loud), plain);
}

TEST(Vst3Block, BypassFades) {
  Plugin plugin;
  plugin.prepare();
  plugin.set(tag::cutoff, 0.0), plugin.set(tag::multiType, 4.0 / 9.0);  // nothing of it is left
  Stereo in(44100);
  for (std::size_t i = 0; i < in.frames(); ++i) {
    in.left[i] = in.right[i] = i % 2 == 0 ? 0.5F : -0.5F;
  }
  plugin.render(in);
  const Stereo out = plugin.render(in, {in.frames()}, {{tag::bypass, 512, 1.0}});
  const auto envelope = [&](std::size_t i) { return std::fabs(out.left[i] - out.left[i + 1]); };
  EXPECT_LT(envelope(512), 0.05F);
  EXPECT_GT(envelope(512 + 457), 0.98F);  // 10 ms and a control pass later
  for (std::size_t i = 512; i < 1100; ++i) {
    ASSERT_LT(std::fabs(envelope(i + 1) - envelope(i)), 0.02F) << i;
  }
}

TEST(Vst3Block, ALearnedControllerMovesItsParameterAndTheHostHearsOfIt) {
  TestHost teacher;
  ASSERT_TRUE(teacher.client().beginLearn(tag::cutoff));
  teacher.send({{0, 0xB0, 74, 10}});
  teacher.render(Stereo(64));
  void* bytes = nullptr;
  const auto size = static_cast<std::size_t>(teacher.client().getChunk(&bytes, false));
  const auto* const first = static_cast<const std::byte*>(bytes);
  Plugin plugin;
  ASSERT_TRUE(plugin.load({first, first + size}));
  v3_param_id id = 0;
  auto** const map = queried<v3_midi_mapping_cpp>(plugin.component, v3_midi_mapping_iid);
  ASSERT_EQ((*map)->map.get_midi_controller_assignment(map, 0, 5, 74, &id), V3_OK);
  (*map)->unref(map);
  plugin.render(noise(256), {256}, {{id, 100, 1.0}});
  EXPECT_EQ(plugin.get(tag::cutoff), 1.0);
  ASSERT_EQ(plugin.told.queues.size(), 1U);
  EXPECT_EQ(plugin.told.queues[0].id, static_cast<v3_param_id>(tag::cutoff));
  EXPECT_EQ(plugin.told.queues[0].points.at(0).value, 1.0);
  plugin.render(noise(256));
  EXPECT_TRUE(plugin.told.queues.empty());
  plugin.takesChanges = false;  // then it is told with a window, and in no call that it may lock
  plugin.render(noise(256), {256}, {{id, 100, 0.0}});
  plugin.set(tag::resonance, 0.1);
  plugin.save();
  EXPECT_TRUE(plugin.handler.calls.empty());
  for (int i = 0; i < 2; ++i) {
    auto** const view = (*plugin.controller)->ctrl.create_view(plugin.controller, "editor");
    EXPECT_EQ(v3_cpp_obj_unref(view), 0U);
    EXPECT_EQ(plugin.handler.calls, std::vector<std::string>{"restart 4"});
  }
}

// ---- states

TEST(Vst3State, ComesBackInPiecesOfAnySize) {
  Plugin source;
  for (const std::int16_t tag : faceTags()) {
    const auto id = static_cast<v3_param_id>(tag);
    source.set(id, source.get(id) > 0.5 ? 0.0 : 1.0);
  }
  const auto values = source.all();
  const std::vector<std::byte> state = source.save();
  for (const std::size_t piece : {std::size_t{1}, std::size_t{7}, std::size_t{1} << 20U}) {
    EXPECT_EQ(source.save(piece), state);
    Plugin other;
    ASSERT_TRUE(other.load(state, piece));
    EXPECT_EQ(other.all(), values);
    Stream same{.bytes = state};
    EXPECT_EQ((*other.controller)->ctrl.set_component_state(other.controller, same.face()), V3_OK);
    EXPECT_EQ(other.all(), values);
    EXPECT_TRUE(other.handler.calls.empty());
  }
  Plugin padded;  // by what the host keeps behind it
  auto longer = state;
  longer.resize(state.size() + 100);
  EXPECT_TRUE(padded.load(longer));
}

TEST(Vst3State, WhatIsCutOrForeignIsRefusedAndChangesNothing) {
  Plugin source(0.0);
  source.set(tag::cutoff, 0.9);
  const std::vector<std::byte> state = source.save();
  Plugin plugin(0.0);
  const auto before = plugin.all();
  for (std::size_t size = 0; size < state.size(); ++size) {
    ASSERT_FALSE(plugin.load({state.begin(), state.begin() + static_cast<std::ptrdiff_t>(size)}))
        << size;
  }
  std::uint32_t seed = 7;
  for (int i = 0; i < 500; ++i) {
    std::vector<std::byte> random(4 + seed % 4096);
    for (std::byte& byte : random) {
      seed = seed * 1664525U + 1013904223U;
      byte = static_cast<std::byte>(seed >> 24U);
    }
    if (i % 2 == 0) {  // with a count that fits
      random.resize(random.size() / 4 * 4);
      const auto words = static_cast<std::uint32_t>(random.size() / 4);
      std::memcpy(random.data(), &words, 4);
    }
    ASSERT_FALSE(plugin.load(random));
  }
  EXPECT_EQ(plugin.all(), before);
  EXPECT_NE((*plugin.component)->comp.set_state(plugin.component, nullptr), V3_OK);
  EXPECT_NE((*plugin.component)->comp.get_state(plugin.component, nullptr), V3_OK);
}

// ---- programs

TEST(Vst3Programs, TheBankIsOneListAndPlaysFromAnyThread) {
  const TemporaryFolder folder;
  std::filesystem::create_directories(folder / "system");
  std::filesystem::create_directory_symlink(ZUM_CONTENT, folder / "system" / "zum");
  const std::string before = std::getenv("XDG_CONFIG_HOME");
  useHome(folder);
  Plugin plugin;
  auto** const units = queried<v3_unit_information_cpp>(plugin.component, v3_unit_information_iid);
  v3_program_list_info list{};
  ASSERT_EQ((*units)->unit.get_program_list_count(units), 1);
  ASSERT_EQ((*units)->unit.get_program_list_info(units, 0, &list), V3_OK);
  ASSERT_EQ(list.programCount, 162);
  std::set<std::string> names;
  for (int i = 0; i < 162; ++i) {
    v3_str_128 name{};
    v3_str_128 shown{};
    double read = 0.0;
    ASSERT_EQ((*units)->unit.get_program_name(units, list.id, i, name), V3_OK);
    const auto& controller = (*plugin.controller)->ctrl;
    controller.get_parameter_string_for_value(plugin.controller, kProgram, i / 161.0, shown);
    EXPECT_EQ(utf8(name), utf8(shown));
    ASSERT_EQ(controller.get_parameter_value_for_string(plugin.controller, kProgram, name, &read),
              V3_OK);
    EXPECT_NEAR(read, i / 161.0, 1e-9);
    EXPECT_EQ(std::ranges::count(utf8(name), '/'), 1);
    names.insert(utf8(name));
  }
  EXPECT_EQ(names.size(), 162U);
  v3_str_128 name{};
  EXPECT_NE((*units)->unit.get_program_name(units, list.id, 162, name), V3_OK);
  EXPECT_NE((*units)->unit.get_program_name(units, list.id + 1, 0, name), V3_OK);
  (*units)->unref(units);

  plugin.set(kProgram, 100 / 161.0);  // on the main thread
  EXPECT_NEAR(plugin.get(kProgram), 100 / 161.0, 1e-9);
  EXPECT_TRUE(plugin.handler.calls.empty()) << "it may hold a lock";
  const auto chosen = plugin.all();
  plugin.render(noise(64));
  EXPECT_GT(plugin.told.queues.size(), 50U);
  for (const Queue& queue : plugin.told.queues) {
    EXPECT_EQ(queue.points.at(0).value, chosen.at(queue.id));
  }
  plugin.set(tag::cutoff, 0.123);
  plugin.set(kProgram, 100 / 161.0);  // it is there already
  plugin.render(noise(64), {64}, {{kProgram, 3, 100 / 161.0}});
  EXPECT_NEAR(plugin.get(tag::cutoff), 0.123, 1e-6);

  Plugin automated;
  for (int i = 161; i >= 0; --i) {  // in the block, at its sample
    automated.render(noise(256), {256}, {{kProgram, 64, i / 161.0}});
    automated.set(tag::overdrive, automated.get(tag::overdrive));  // any call on the main thread
    ASSERT_NEAR(automated.get(kProgram), i / 161.0, 1e-9);
    if (i == 100) {
      EXPECT_EQ(automated.all(), chosen);
    }
  }
  Plugin restored;
  ASSERT_TRUE(restored.load(automated.save()));
  EXPECT_EQ(restored.all(), automated.all());
  EXPECT_EQ(restored.get(kProgram), 0.0);
  useHome(std::filesystem::path(before).parent_path());
}

// ---- windows

/// The host's frame of the view; its run loop stands behind it, where it has one.
struct Frame {
  struct Loop {
    const void* table = &kLoop;
    v3_timer_handler** timer = nullptr;
    int registered = 0;
  };
  const void* table = &kTable;
  Loop loop;
  bool hasLoop = true;

  v3_plugin_frame** face() { return reinterpret_cast<v3_plugin_frame**>(this); }
  void tick() {
    if (loop.timer != nullptr) v3_cpp_obj(loop.timer)->on_timer(loop.timer);
  }

  static const v3_plugin_frame_cpp kTable;
  static const v3_run_loop_cpp kLoop;
};
const v3_run_loop_cpp Frame::kLoop = {
    kLent,
    {.register_event_handler = [](void*, v3_event_handler**, int) -> v3_result {
       return V3_NOT_IMPLEMENTED;
     },
     .unregister_event_handler = [](void*, v3_event_handler**) -> v3_result { return V3_FALSE; },
     .register_timer = [](void* self, v3_timer_handler** timer, std::uint64_t ms) -> v3_result {
       EXPECT_EQ(ms, 33U);
       auto& loop = mine<Frame::Loop>(self);
       loop.timer = timer, ++loop.registered;
       return V3_OK;
     },
     .unregister_timer = [](void* self, v3_timer_handler** timer) -> v3_result {
       auto& loop = mine<Frame::Loop>(self);
       EXPECT_EQ(loop.timer, timer);
       loop.timer = nullptr, --loop.registered;
       return V3_OK;
     }}};
const v3_plugin_frame_cpp Frame::kTable = {
    {[](void* self, const v3_tuid iid, void** out) -> v3_result {
       auto& frame = mine<Frame>(self);
       const bool known = frame.hasLoop && v3_tuid_match(iid, v3_run_loop_iid);
       *out = known ? &frame.loop : nullptr;
       return known ? V3_OK : V3_NO_INTERFACE;
     },
     kLent.ref, kLent.unref},
    {.resize_view = [](void*, v3_plugin_view**, v3_view_rect*) -> v3_result { return V3_FALSE; }}};

struct Vst3Window : testing::Test {
  v3_plugin_view_cpp** show(Plugin& plugin, std::uintptr_t parent) {
    auto** const view = reinterpret_cast<v3_plugin_view_cpp**>(
        (*plugin.controller)->ctrl.create_view(plugin.controller, "editor"));
    EXPECT_NE(view, nullptr);
    (*view)->view.set_frame(view, frame.face());
    EXPECT_EQ(attach(view, parent), V3_OK);
    return view;
  }
  static v3_result attach(v3_plugin_view_cpp** view, std::uintptr_t parent,
                          const char* type = V3_VIEW_PLATFORM_TYPE_X11) {
    return (*view)->view.attached(view, std::bit_cast<void*>(parent), type);
  }
  void settle(Plugin& plugin) {
    for (int i = 0; i < 3; ++i) {
      usleep(frame.hasLoop ? 2000 : 40000);
      plugin.render(Stereo(128, 0.25F));
      frame.tick();
    }
  }
  /// A hand turns the cutoff.
  void turn(Plugin& plugin, std::uintptr_t window) {
    robot.moveTo(window, 252, 180), settle(plugin);
    robot.press(), settle(plugin);
    for (const int y : {170, 160}) robot.moveTo(window, 252, y), settle(plugin);
    robot.release(), settle(plugin);
    for (int i = 0; i < 200 && plugin.get(tag::cutoff) <= 0.52; ++i) settle(plugin);
    settle(plugin);
  }

  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
  Frame frame;
};

TEST_F(Vst3Window, AHandTellsTheHostFromBeginToEnd) {
  for (const bool hasLoop : {true, false}) {
    frame.hasLoop = hasLoop;
    Plugin plugin;
    plugin.prepare();
    auto** const view = show(plugin, place.window);
    EXPECT_EQ(frame.loop.registered, hasLoop ? 1 : 0);
    settle(plugin);
    turn(plugin, place.window);
    const auto& calls = plugin.handler.calls;
    EXPECT_GT(plugin.get(tag::cutoff), 0.52);
    if (hasLoop) {
      ASSERT_GE(calls.size(), 3U);
      EXPECT_EQ(calls.front(), "begin 3");
      EXPECT_EQ(calls.back(), "end 3");
      EXPECT_EQ(std::count(calls.begin() + 1, calls.end() - 1, "edit 3"),
                static_cast<std::ptrdiff_t>(calls.size() - 2));
    } else {
      EXPECT_TRUE(calls.empty()) << "the values came with the blocks";
    }
    EXPECT_EQ((*view)->view.removed(view), V3_OK);
    EXPECT_EQ(frame.loop.registered, 0);
    EXPECT_EQ((*view)->unref(view), 0U);
  }
}

TEST_F(Vst3Window, HasOneSizeAndOnePlatform) {
  Plugin plugin;
  EXPECT_EQ((*plugin.controller)->ctrl.create_view(plugin.controller, "other"), nullptr);
  EXPECT_EQ((*plugin.controller)->ctrl.create_view(plugin.controller, nullptr), nullptr);
  auto** const view = reinterpret_cast<v3_plugin_view_cpp**>(
      (*plugin.controller)->ctrl.create_view(plugin.controller, "editor"));
  EXPECT_EQ((*view)->view.is_platform_type_supported(view, V3_VIEW_PLATFORM_TYPE_X11), V3_OK);
  EXPECT_NE((*view)->view.is_platform_type_supported(view, V3_VIEW_PLATFORM_TYPE_HWND), V3_OK);
  EXPECT_NE((*view)->view.is_platform_type_supported(view, nullptr), V3_OK);
  EXPECT_NE(attach(view, 0), V3_OK);
  EXPECT_NE(attach(view, place.window, "HWND"), V3_OK);
  EXPECT_NE((*view)->view.removed(view), V3_OK);
  v3_view_rect size{};
  ASSERT_EQ((*view)->view.get_size(view, &size), V3_OK);
  EXPECT_TRUE(size.right > 400 && size.bottom > 300);
  v3_view_rect wanted = {0, 0, 5000, 1};
  EXPECT_EQ((*view)->view.check_size_constraint(view, &wanted), V3_OK);
  EXPECT_EQ(wanted.right, size.right);
  EXPECT_NE((*view)->view.can_resize(view), V3_OK);
  auto** const scale =
      queried<v3_plugin_view_content_scale_cpp>(view, v3_plugin_view_content_scale_iid);
  ASSERT_NE(scale, nullptr);
  EXPECT_NE((*scale)->scale.set_content_scale_factor(scale, 2.0F), V3_OK);
  (*scale)->unref(scale);
  (*view)->unref(view);
}

TEST_F(Vst3Window, OpensAgainAndOutlivesWhatHostsGetWrong) {
  const HostWindow beside(512);
  auto plugin = std::make_unique<Plugin>();
  Plugin neighbour;
  auto** const next = show(neighbour, beside.window);
  (*next)->view.removed(next), (*next)->unref(next);
  auto** const view = show(*plugin, place.window);
  auto** const second = reinterpret_cast<v3_plugin_view_cpp**>(
      (*plugin->controller)->ctrl.create_view(plugin->controller, "editor"));
  EXPECT_NE(attach(second, beside.window), V3_OK);  // one window at a time
  (*second)->unref(second);
  for (int i = 0; i < 20; ++i) {
    frame.hasLoop = i % 2 == 0;
    EXPECT_EQ((*view)->view.removed(view), V3_OK);
    ASSERT_EQ(attach(view, place.window), V3_OK) << i;
    if (i > 17) settle(*plugin);
  }
  XDestroyWindow(place.display, place.window), XSync(place.display, False);
  settle(*plugin);
  frame.hasLoop = true;
  (*view)->view.removed(view);
  ASSERT_EQ(attach(view, beside.window), V3_OK);
  settle(*plugin);
  plugin->end();  // with the window open, and the view held
  EXPECT_EQ(frame.loop.registered, 0);
  (*view)->view.set_frame(view, nullptr);
  EXPECT_NE((*view)->view.removed(view), V3_OK);
  EXPECT_EQ((*view)->unref(view), 0U);
}

}  // namespace
}  // namespace zum::test
