// A VST3 host for tests, on the published C headers alone: what it lends to an effect, the module,
// and an instance of the effect. Does what real hosts do, what they do wrong included.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include <travesty/audio_processor.h>
#include <travesty/component.h>
#include <travesty/edit_controller.h>
#include <travesty/factory.h>
#include <travesty/host.h>
#include <travesty/unit.h>
#include <travesty/view.h>

#include "core/tags.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {

inline constexpr v3_tuid kClass = {0xB1, 0xE7, 0x51, 0x3C, 0x98, 0x8D, 0xD3, 0x1E,
                                   0x65, 0xC2, 0x24, 0x24, 0xFE, 0xB9, 0x13, 0x27};
inline constexpr v3_param_id kProgram = 1000;
inline constexpr v3_param_id kMidi = 2000;
inline constexpr double kPrograms = 255.0;  // steps
inline constexpr std::size_t kWhole = std::size_t{1} << 20U;

// ---- what a host lends: each an object of one interface, whose first word is the table

/// Nobody counts them: they live as long as the test says.
inline constexpr v3_funknown kLent = {
    [](void*, const v3_tuid, void** out) -> v3_result { return *out = nullptr, V3_NO_INTERFACE; },
    [](void*) -> std::uint32_t { return 1; }, [](void*) -> std::uint32_t { return 1; }};

template <class Face>
struct Lent {
  v3_funknown unknown;
  Face face;
};

/// A routine of a table: the object's own of that name.
template <auto own>
struct Through;
template <class Object, class Answer, class... Given, Answer (Object::*own)(Given...)>
struct Through<own> {
  static Answer call(void* self, Given... given) {
    return (static_cast<Object*>(self)->*own)(given...);
  }
};
template <auto own>
inline constexpr auto through = &Through<own>::call;

/// Gives and takes `piece` bytes at a time.
struct Stream {
  static const Lent<v3_bstream> kTable;
  const void* table = &kTable;
  std::vector<std::byte> bytes;
  std::size_t piece = kWhole;
  std::size_t at = 0;

  v3_bstream** face() { return reinterpret_cast<v3_bstream**>(this); }
  v3_result read(void* to, std::int32_t count, std::int32_t* done) {
    const std::size_t n = std::min({static_cast<std::size_t>(count), piece, bytes.size() - at});
    if (n > 0) std::memcpy(to, bytes.data() + at, n);
    at += n;
    return *done = static_cast<std::int32_t>(n), V3_OK;
  }
  v3_result write(void* from, std::int32_t count, std::int32_t* done) {
    const std::size_t n = std::min(static_cast<std::size_t>(count), piece);
    bytes.insert(bytes.end(), static_cast<std::byte*>(from), static_cast<std::byte*>(from) + n);
    return *done = static_cast<std::int32_t>(n), V3_OK;
  }
};
inline const Lent<v3_bstream> Stream::kTable = {
    kLent, {through<&Stream::read>, through<&Stream::write>, nullptr, nullptr}};

struct Point {
  v3_param_id id;
  std::int32_t frame;
  double value;
};

struct Queue {
  static const Lent<v3_param_value_queue> kTable;
  const void* table = &kTable;
  v3_param_id id = 0;
  std::vector<Point> points = {};

  v3_param_id itsId() { return id; }
  std::int32_t count() { return static_cast<std::int32_t>(points.size()); }
  v3_result get(std::int32_t i, std::int32_t* frame, double* value) {
    const Point& point = points.at(static_cast<std::size_t>(i));
    return *frame = point.frame, *value = point.value, V3_OK;
  }
  v3_result add(std::int32_t frame, double value, std::int32_t* /*index*/) {
    if (points.size() == points.capacity()) return V3_FALSE;
    return points.push_back({id, frame, value}), V3_OK;
  }
};
inline const Lent<v3_param_value_queue> Queue::kTable = {
    kLent,
    {through<&Queue::itsId>, through<&Queue::count>, through<&Queue::get>, through<&Queue::add>}};

struct Changes {
  static const Lent<v3_param_changes> kTable;
  const void* table = &kTable;
  std::vector<Queue> queues;
  std::vector<Queue> spare;

  explicit Changes(const std::vector<Point>& points = {}) {
    for (const Point& point : points) {
      auto queue = std::ranges::find(queues, point.id, &Queue::id);
      if (queue == queues.end()) queue = queues.insert(queue, Queue{.id = point.id});
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
  std::int32_t count() { return static_cast<std::int32_t>(queues.size()); }
  v3_param_value_queue** get(std::int32_t i) {
    return reinterpret_cast<v3_param_value_queue**>(&queues.at(static_cast<std::size_t>(i)));
  }
  v3_param_value_queue** add(v3_param_id* id, std::int32_t* index) {
    *index = count();
    queues.emplace_back(std::move(spare.at(queues.size()))).id = *id;
    return get(*index);
  }
};
inline const Lent<v3_param_changes> Changes::kTable = {
    kLent, {through<&Changes::count>, through<&Changes::get>, through<&Changes::add>}};

struct Note {
  std::int32_t frame;
  std::int16_t pitch;
  float velocity;  // 0 ends it
};

struct Events {
  static const Lent<v3_event_list> kTable;
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
  std::uint32_t count() { return static_cast<std::uint32_t>(events.size()); }
  v3_result get(std::int32_t i, v3_event* event) {
    return *event = events.at(static_cast<std::size_t>(i)), V3_OK;
  }
};
inline const Lent<v3_event_list> Events::kTable = {
    kLent, {through<&Events::count>, through<&Events::get>, nullptr}};

/// Answers a question for one interface more, which the host counts no references of.
template <class Object>
v3_result answer(const v3_tuid asked, const v3_tuid iid, Object* object, void** out) {
  const bool known = object != nullptr && v3_tuid_match(asked, iid);
  *out = known ? object : nullptr;
  return known ? V3_OK : V3_NO_INTERFACE;
}

/// Hears of edits: "begin 3", "edit 3", "end 3", "restart 4", and by a second interface "dirty 1".
struct Handler {
  struct Dirty {
    static const Lent<v3_component_handler2> kTable;
    const void* table = &kTable;
    Handler& handler;
    v3_result set(v3_bool on) { return handler.heard("dirty ", on); }
  };
  static const Lent<v3_component_handler> kTable;
  const void* table = &kTable;
  Dirty dirty{.handler = *this};
  std::vector<std::string> calls = {};
  std::uint32_t references = 1;

  v3_component_handler** face() { return reinterpret_cast<v3_component_handler**>(this); }
  v3_result heard(const std::string& what, std::int64_t of) {
    return calls.push_back(what + std::to_string(of)), V3_OK;
  }
  v3_result query(const std::uint8_t* iid, void** out) {
    return answer(iid, v3_component_handler2_iid, &dirty, out);
  }
  std::uint32_t ref() { return ++references; }
  std::uint32_t unref() { return --references; }
  v3_result begin(v3_param_id id) { return heard("begin ", id); }
  v3_result edit(v3_param_id id, double value) {
    EXPECT_TRUE(value >= 0.0 && value <= 1.0) << id;
    return heard("edit ", id);
  }
  v3_result end(v3_param_id id) { return heard("end ", id); }
  v3_result restart(std::int32_t flags) { return heard("restart ", flags); }
};
inline const Lent<v3_component_handler2> Handler::Dirty::kTable = {
    kLent, {through<&Dirty::set>, nullptr, nullptr, nullptr}};
inline const Lent<v3_component_handler> Handler::kTable = {
    {through<&Handler::query>, through<&Handler::ref>, through<&Handler::unref>},
    {through<&Handler::begin>, through<&Handler::edit>, through<&Handler::end>,
     through<&Handler::restart>}};

/// The host's frame of a view; its run loop stands behind it, where it has one.
struct Frame {
  struct Loop {
    static const Lent<v3_run_loop> kTable;
    const void* table = &kTable;
    v3_timer_handler** timer = nullptr;
    int registered = 0;
    v3_result begin(v3_timer_handler** given, std::uint64_t ms) {
      EXPECT_EQ(ms, 33U);
      return timer = given, ++registered, V3_OK;
    }
    v3_result end(v3_timer_handler** given) {
      EXPECT_EQ(timer, given);
      return timer = nullptr, --registered, V3_OK;
    }
  };
  static const Lent<v3_plugin_frame> kTable;
  const void* table = &kTable;
  Loop loop;
  bool hasLoop = true;

  v3_plugin_frame** face() { return reinterpret_cast<v3_plugin_frame**>(this); }
  v3_result query(const std::uint8_t* iid, void** out) {
    return answer(iid, v3_run_loop_iid, hasLoop ? &loop : nullptr, out);
  }
  void tick() {
    if (loop.timer != nullptr) v3_cpp_obj(loop.timer)->on_timer(loop.timer);
  }
};
inline const Lent<v3_run_loop> Frame::Loop::kTable = {
    kLent, {nullptr, nullptr, through<&Loop::begin>, through<&Loop::end>}};
inline const Lent<v3_plugin_frame> Frame::kTable = {
    {through<&Frame::query>, kLent.ref, kLent.unref}, {nullptr}};

// ---- the module, and an instance of it

inline v3_plugin_factory_cpp** factory() {
  static void* const made = [] {
    void* const library = dlopen(ZUM_VST3, RTLD_NOW | RTLD_LOCAL);
    if (library == nullptr) ADD_FAILURE() << dlerror();
    const auto entry = reinterpret_cast<bool (*)(void*)>(dlsym(library, "ModuleEntry"));
    EXPECT_TRUE(entry(library));
    return reinterpret_cast<void* (*)()>(dlsym(library, "GetPluginFactory"))();
  }();
  return static_cast<v3_plugin_factory_cpp**>(made);
}

inline void* make(const v3_tuid classId, const v3_tuid iid) {
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

inline std::string utf8(const std::int16_t* text) {
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
    units = queried<v3_unit_information_cpp>(made, v3_unit_information_iid);
    EXPECT_EQ((*component)->base.initialize(component, nullptr), V3_OK);
    EXPECT_NE((*controller)->base.initialize(controller, nullptr), V3_OK);  // it is the same
    EXPECT_EQ(ctrl().set_component_handler(controller, handler.face()), V3_OK);
    if (rate > 0.0) activate(rate, most);
  }
  Plugin(const Plugin&) = delete;
  Plugin& operator=(const Plugin&) = delete;
  ~Plugin() { end(); }

  void end() {
    if (component == nullptr) return;
    (*component)->base.terminate(component);
    EXPECT_EQ(handler.references, 1U);
    (*units)->unref(units), (*controller)->unref(controller), (*processor)->unref(processor);
    left = (*component)->unref(component);
    component = nullptr;
  }
  void activate(double rate, std::int32_t most = 8192) {
    comp().set_active(component, 0);
    v3_process_setup setup = {V3_REALTIME, V3_SAMPLE_32, most, rate};
    EXPECT_EQ(proc().setup_processing(processor, &setup), V3_OK);
    EXPECT_EQ(comp().set_active(component, 1), V3_OK);
    EXPECT_EQ(proc().set_processing(processor, 1), V3_OK);
  }
  const v3_component& comp() const { return (*component)->comp; }
  const v3_audio_processor& proc() const { return (*processor)->proc; }
  const v3_edit_controller& ctrl() const { return (*controller)->ctrl; }

  void set(v3_param_id id, double value) {
    EXPECT_EQ(ctrl().set_parameter_normalised(controller, id, value), V3_OK) << id;
  }
  double get(v3_param_id id) { return ctrl().get_parameter_normalised(controller, id); }
  std::map<v3_param_id, double> all() {
    std::map<v3_param_id, double> values;
    for (const std::int16_t tag : faceTags())
      values[static_cast<v3_param_id>(tag)] = get(static_cast<v3_param_id>(tag));
    return values;
  }
  std::string text(v3_param_id id, double value) {
    v3_str_128 shown{};
    EXPECT_EQ(ctrl().get_parameter_string_for_value(controller, id, value, shown), V3_OK);
    return utf8(shown);
  }
  /// -1 for a text that is none of its values.
  double valueOf(v3_param_id id, const std::string& shown) {
    std::vector<std::int16_t> words(shown.begin(), shown.end());
    words.push_back(0);
    double value = -1.0;
    const v3_result read =
        ctrl().get_parameter_value_for_string(controller, id, words.data(), &value);
    EXPECT_EQ(read == V3_OK, value >= 0.0);
    return value;
  }
  int program() { return static_cast<int>(std::lround(get(kProgram) * kPrograms)); }
  void choose(int place) { set(kProgram, place / kPrograms); }
  std::vector<std::byte> save(std::size_t piece = kWhole) {
    Stream stream{.bytes = {}, .piece = piece};
    EXPECT_EQ(comp().get_state(component, stream.face()), V3_OK);
    return stream.bytes;
  }
  bool load(const std::vector<std::byte>& state, std::size_t piece = kWhole) {
    Stream stream{.bytes = state, .piece = piece};
    return comp().set_state(component, stream.face()) == V3_OK;
  }
  v3_plugin_view_cpp** view(const char* name = "editor") {
    return reinterpret_cast<v3_plugin_view_cpp**>(ctrl().create_view(controller, name));
  }

  /// One block from `at` on. `in` and `out` may be the same.
  void play(const Stereo& in, Stereo& out, std::size_t at, std::int32_t frames,
            const std::vector<Point>& points = {}, const std::vector<Note>& notes = {}) {
    const auto pair = [at](const Stereo& of) {
      return std::array{const_cast<float*>(of.left.data() + at),
                        const_cast<float*>(of.right.data() + at)};
    };
    auto from = pair(in);
    auto to = pair(out);
    auto side = pair(sideChain != nullptr ? *sideChain : in);
    v3_audio_bus_buffers inputs[2] = {{2, 0, {from.data()}}, {2, 0, {side.data()}}};
    v3_audio_bus_buffers outputs[1] = {{2, ~0ULL, {to.data()}}};
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
    return proc().process(processor, &data);
  }
  /// All of `in` in blocks that end there; points and notes count from its start.
  Stereo renderCut(const Stereo& in, const std::vector<std::size_t>& ends,
                   const std::vector<Point>& points = {}, const std::vector<Note>& notes = {}) {
    Stereo out(in.frames());
    std::size_t at = 0;
    for (const std::size_t end : ends) {
      const auto within = [&](auto some) {
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
  Stereo render(const Stereo& in, const std::vector<Point>& points = {}) {
    return renderCut(in, {in.frames()}, points);
  }
  /// All wet, and its filter opened.
  void prepare() {
    set(tag::mixDryWet, 1.0), set(tag::master, 0.5), set(tag::bank, 0.0);
    set(tag::cutoff, 0.5), set(tag::resonance, 0.4), set(tag::multiType, 0.0);
  }

  Handler handler{};
  v3_component_cpp** component = nullptr;
  v3_audio_processor_cpp** processor = nullptr;
  v3_edit_controller_cpp** controller = nullptr;
  v3_unit_information_cpp** units = nullptr;
  Changes told;
  bool takesChanges = true;
  const Stereo* sideChain = nullptr;
  v3_process_context* context = nullptr;
  std::uint32_t left = 1;  // references behind the end
};

}  // namespace zum::test
