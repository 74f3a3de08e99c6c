// An LV2 host of our own, which knows the standard's records and the bundle's texts alone.
#pragma once

#include <dlfcn.h>
#include <gtest/gtest.h>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/midi/midi.h>
#include <lv2/options/options.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <unistd.h>

#include <bit>
#include <fstream>
#include <iterator>
#include <map>

#include "adaptor/host_side.hpp"
#include "core/tags.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/test_host.hpp"

namespace zum::test {

using Bytes = std::vector<std::byte>;
using Numbers = std::map<std::string, double>;
using PortValues = std::array<float, kFaceParameters>;

// ---- its words and its file

inline LV2_URID idOf(const std::string& word) {
  static std::map<std::string, LV2_URID> words;
  return words.try_emplace(word, words.size() + 1).first->second;
}
inline LV2_URID_Map wordMap{
    nullptr, [](LV2_URID_Map_Handle /*handle*/, const char* word) { return idOf(word); }};
inline const LV2_Feature mapFeature{LV2_URID__map, &wordMap};

template <class Entry>
Entry entry(const char* name) {
  static void* const file = dlopen(ZUM_LV2 "/ZUM.so", RTLD_NOW | RTLD_LOCAL);
  return reinterpret_cast<Entry>(dlsym(file, name));
}
inline const LV2_Descriptor& plugin() {
  static const auto* const found = entry<LV2_Descriptor_Function>("lv2_descriptor")(0);
  return *found;
}
inline const LV2UI_Descriptor& ui() {
  static const auto* const found = entry<LV2UI_DescriptorFunction>("lv2ui_descriptor")(0);
  return *found;
}
inline const LV2_State_Interface& states() {
  return *static_cast<const LV2_State_Interface*>(plugin().extension_data(LV2_STATE__interface));
}

// ---- what it reads in the bundle

inline std::string textOf(const char* name) {
  std::ifstream file(std::string(ZUM_LV2) + '/' + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What stands between the mark and the next of the ends.
inline std::string behind(const std::string& text, const std::string& mark, const char* ends) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t first = at + mark.size();
  return text.substr(first, text.find_first_of(ends, first) - first);
}

inline std::vector<std::string> parts(const std::string& text, const std::string& separator) {
  std::vector<std::string> found;
  for (std::size_t at = text.find(separator); at != std::string::npos;) {
    const std::size_t next = text.find(separator, at + 1);
    found.push_back(text.substr(at, next - at));
    at = next;
  }
  return found;
}

inline constexpr std::uint32_t kSide = 4, kEvents = 6, kControls = 7;

inline const std::vector<std::string>& portTexts() {
  static const auto all = parts(textOf("zum.ttl"), "lv2:port [");
  return all;
}
inline float declared(std::size_t position, const char* what) {
  return std::stof(behind(portTexts()[kControls + position], what, ";"));
}

// ---- events

/// A sequence of exactly the bytes that it says it has.
class Events {
 public:
  Events() { put(LV2_Atom{0, idOf(LV2_ATOM__Sequence)}), put(std::uint64_t{0}), close(); }

  Events& midi(std::int64_t frame, const std::vector<std::uint8_t>& message) {
    put(frame),
        put(LV2_Atom{static_cast<std::uint32_t>(message.size()), idOf(LV2_MIDI__MidiEvent)});
    for (const std::uint8_t byte : message) put(byte);
    return close();
  }
  Events& position(std::int64_t frame, const Numbers& numbers) {
    const auto size = static_cast<std::uint32_t>(8 + 24 * numbers.size());
    put(frame), put(LV2_Atom{size, idOf(LV2_ATOM__Object)});
    put(0U), put(idOf(LV2_TIME__Position));
    for (const auto& [key, number] : numbers) {
      put(idOf(LV2_TIME_PREFIX + key)), put(0U), put(LV2_Atom{8, idOf(LV2_ATOM__Double)}),
          put(number);
    }
    return close();
  }
  const LV2_Atom* atom() const { return reinterpret_cast<const LV2_Atom*>(bytes.data()); }

  Bytes bytes;

 private:
  template <class T>
  void put(const T& value) {
    const auto* const first = reinterpret_cast<const std::byte*>(&value);
    bytes.insert(bytes.end(), first, first + sizeof value);
  }
  Events& close() {
    bytes.resize((bytes.size() + 7) / 8 * 8);
    const auto size = static_cast<std::uint32_t>(bytes.size() - sizeof(LV2_Atom));
    std::memcpy(bytes.data(), &size, sizeof size);
    return *this;
  }
};

// ---- states

struct Stored {
  Bytes bytes;
  std::uint32_t type = 0;
};
using Kept = std::map<std::uint32_t, Stored>;

inline LV2_State_Status store(LV2_State_Handle to, std::uint32_t key, const void* value,
                              std::size_t size, std::uint32_t type, std::uint32_t /*flags*/) {
  const auto* const first = static_cast<const std::byte*>(value);
  static_cast<Kept*>(to)->insert_or_assign(key, Stored{{first, first + size}, type});
  return LV2_STATE_SUCCESS;
}

inline const void* retrieve(LV2_State_Handle from, std::uint32_t key, std::size_t* size,
                            std::uint32_t* type, std::uint32_t* /*flags*/) {
  const auto& all = *static_cast<Kept*>(from);
  const auto found = all.find(key);
  if (found == all.end()) return nullptr;
  *size = found->second.bytes.size(), *type = found->second.type;
  return found->second.bytes.data();
}

inline const std::uint32_t kStateKey = idOf("urn:zelvane:zum#state");

// ---- an instance

/// Its ports hold what the bundle declares.
class Instance {
 public:
  explicit Instance(double rate = 44100.0) {
    const LV2_Feature* features[] = {&mapFeature, nullptr};
    handle = plugin().instantiate(&plugin(), rate, ZUM_LV2, features);
    for (std::size_t i = 0; i < ports.size(); ++i) {
      ports[i] = declared(i, "lv2:default ");
      plugin().connect_port(handle, kControls + static_cast<std::uint32_t>(i), &ports[i]);
    }
    plugin().activate(handle);
  }
  /// One that got a state before its first block.
  Instance(double rate, const Bytes& state) : Instance(rate) {
    EXPECT_EQ(restore(state), LV2_STATE_SUCCESS);
  }
  ~Instance() { plugin().deactivate(handle), plugin().cleanup(handle); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  float& port(int tag) { return ports[static_cast<std::size_t>(facePosition(tag))]; }
  /// A port of sound or events; the memory stays with the caller.
  void connect(std::uint32_t port, const void* place) {
    plugin().connect_port(handle, port, const_cast<void*>(place));
  }
  /// A part of larger buffers; `out` may be `in`.
  void run(Stereo& in, Stereo& out, std::size_t at, std::size_t frames) {
    const float* const places[] = {&in.left[at], &in.right[at], &out.left[at], &out.right[at]};
    for (std::uint32_t i = 0; i < 4; ++i) connect(i, places[i]);
    const RealtimeWatch watch;
    plugin().run(handle, static_cast<std::uint32_t>(frames));
  }
  Stereo play(Stereo in, std::size_t block = 512) {
    Stereo out(in.frames());
    for (std::size_t at = 0; at < in.frames(); at += block) {
      run(in, out, at, std::min(block, in.frames() - at));
    }
    return out;
  }

  Bytes save() {
    Kept kept;
    EXPECT_EQ(states().save(handle, store, &kept, 0, nullptr), LV2_STATE_SUCCESS);
    EXPECT_EQ(kept[kStateKey].type, idOf(LV2_ATOM__Chunk));
    return kept[kStateKey].bytes;
  }
  LV2_State_Status restore(const Bytes& bytes, const char* type = LV2_ATOM__Chunk) {
    Kept kept{{kStateKey, {bytes, idOf(type)}}};
    return states().restore(handle, retrieve, &kept, 0, nullptr);
  }
  /// What the effect holds, as its ports would say it.
  PortValues values() {
    zum::HostSide reader(nullptr, nullptr);
    EXPECT_TRUE(reader.loadState(save()));
    PortValues all{};
    for (std::size_t i = 0; i < all.size(); ++i) all[i] = reader.plainValue(faceTags()[i]);
    float& enabled = all[static_cast<std::size_t>(facePosition(tag::bypass))];
    enabled = 1.0F - enabled;
    return all;
  }
  float value(int tag) { return values()[static_cast<std::size_t>(facePosition(tag))]; }

  LV2_Handle handle;
  PortValues ports{};
};

// ---- a window

/// Of an instance, in a host that has what the flags say.
struct Window {
  Window(Instance& instance, std::uintptr_t parent, bool hasAccess = true, bool hasIdle = true,
         float scale = 0.0F)
      : one(instance) {
    const LV2_Options_Option options[] = {
        {LV2_OPTIONS_INSTANCE, 0, idOf("other"), sizeof scale, idOf(LV2_ATOM__Float), &scale},
        {LV2_OPTIONS_INSTANCE, 0, idOf(LV2_UI__scaleFactor), sizeof scale, idOf(LV2_ATOM__Float),
         &scale},
        {}};
    const LV2_Feature all[] = {{LV2_UI__touch, &touches},
                               {LV2_UI__resize, &sizes},
                               {LV2_UI__parent, std::bit_cast<void*>(parent)},
                               {LV2_INSTANCE_ACCESS_URI, one.handle},
                               {LV2_UI__idleInterface, nullptr}};
    std::vector<const LV2_Feature*> given{&all[0], &all[1], &all[2]};
    if (hasAccess) given.push_back(&all[3]);
    if (hasIdle) given.push_back(&all[4]);
    const LV2_Feature offered{LV2_OPTIONS__options, const_cast<LV2_Options_Option*>(options)};
    if (scale != 0.0F) given.insert(given.end(), {&mapFeature, &offered});
    given.push_back(nullptr);
    handle = ui().instantiate(&ui(), plugin().URI, ZUM_LV2, write, this, &widget, given.data());
  }
  ~Window() {
    if (handle != nullptr) ui().cleanup(handle);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  int idle() const {
    const auto* const idles = ui().extension_data(LV2_UI__idleInterface);
    return static_cast<const LV2UI_Idle_Interface*>(idles)->idle(handle);
  }
  /// A host tells the window of a port that moved: any.
  void hearPort() const { ui().port_event(handle, kControls, sizeof(float), 0, &one.ports[0]); }
  /// What the user did has come to the window, and what is written comes back through the ports.
  void settle(bool echoes = true) {
    for (int i = 0; i < 3; ++i) {
      usleep(2000);
      EXPECT_EQ(idle(), 0);
      if (echoes) echo();
      one.play(Stereo(128, 0.25F));
    }
  }
  void echo() {
    for (const auto& [port, value] : writes) one.ports[port - kControls] = value;
    writes.clear();
  }

  Instance& one;
  std::vector<std::string> told;  // touches, sizes and writes, in their order
  std::map<std::uint32_t, float> writes;
  LV2UI_Widget widget = nullptr;
  LV2UI_Handle handle;

 private:
  static Window& of(void* handle) { return *static_cast<Window*>(handle); }
  static void write(LV2UI_Controller to, std::uint32_t port, std::uint32_t size,
                    std::uint32_t format, const void* value) {
    EXPECT_EQ(size, sizeof(float));
    EXPECT_EQ(format, 0U);
    std::memcpy(&of(to).writes[port], value, sizeof(float));
    of(to).told.push_back("write " + std::to_string(port));
  }

  LV2UI_Touch touches{this, [](LV2UI_Feature_Handle to, std::uint32_t port, bool holds) {
                        of(to).told.push_back((holds ? "touch " : "leave ") + std::to_string(port));
                      }};
  LV2UI_Resize sizes{
      this, [](LV2UI_Feature_Handle to, int width, int height) {
        of(to).told.push_back(std::to_string(width) + " by " + std::to_string(height));
        return 0;
      }};
};

}  // namespace zum::test
