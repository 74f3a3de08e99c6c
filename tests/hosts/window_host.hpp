// A host with a screen: gives an effect of the shipped file a place for its window, plays, and has
// a user at the mouse. Knows the effect by its binary face alone.
#pragma once

#include <dlfcn.h>
// not before the tests' own headers: it has macros
#include <X11/Xlib.h>

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cmath>
#include <functional>
#include <map>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "core/aeffect.hpp"
#include "editor/layout.hpp"
#include "tests/support/own_display.hpp"

namespace zum::hosts {

using Tags = std::vector<int>;
using Values = std::map<int, float>;  // by tag

constexpr int kParameters = 60;

struct Call {
  AEffect* effect;
  std::int32_t opcode;
  std::int32_t index;
};
inline std::vector<Call> heard;  // what a user's work makes an effect tell

inline std::intptr_t answer(AEffect* effect, std::int32_t opcode, std::int32_t index,
                            std::intptr_t /*value*/, void* /*ptr*/, float /*opt*/) {
  switch (opcode) {
    case audioMasterVersion: return 2400;
    case audioMasterGetCurrentProcessLevel: return kVstProcessLevelRealtime;
    case audioMasterAutomate:
    case audioMasterBeginEdit:
    case audioMasterEndEdit:
    case audioMasterUpdateDisplay: heard.push_back({effect, opcode, index}); return 1;
    default: return 0;
  }
}

inline CPoint middle(const CRect& rect) {
  return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
}

inline CPoint operator+(CPoint a, CPoint b) { return {a.x + b.x, a.y + b.y}; }

inline const layout::Knob& knobOf(int tag) {
  for (const auto& table : {layout::kUpperKnobs, layout::kLowerKnobs}) {
    for (const layout::Knob& knob : table) {
      if (knob.tag == tag) return knob;
    }
  }
  throw std::out_of_range("no such knob");
}

/// A piece of the host's, on the robot's connection, that an editor may lie in.
class Place {
 public:
  explicit Place(test::Robot& user, int x = 20) : display(user.connection()) {
    window = XCreateSimpleWindow(display, DefaultRootWindow(display), x, 40, layout::kWindow.right,
                                 layout::kWindow.bottom, 0, 0, 0);
    XSelectInput(display, window, KeyPressMask | KeyReleaseMask);
    XMapWindow(display, window);
    XSync(display, False);
  }
  ~Place() { destroy(); }
  Place(const Place&) = delete;
  Place& operator=(const Place&) = delete;
  void destroy() {
    if (window != 0) XDestroyWindow(display, std::exchange(window, 0));
    XSync(display, False);
  }
  /// The windows of others inside of it.
  std::vector<Window> inside() const {
    Window root = 0;
    Window parent = 0;
    Window* found = nullptr;
    unsigned count = 0;
    XQueryTree(display, window, &root, &parent, &found, &count);
    std::vector<Window> all(found, found + count);
    if (found != nullptr) XFree(found);
    return all;
  }
  /// Symbols of the keys whose presses came here.
  std::vector<KeySym> keys() const {
    XSync(display, False);
    std::vector<KeySym> symbols;
    XEvent event;
    while (XCheckWindowEvent(display, window, KeyPressMask | KeyReleaseMask, &event) != False) {
      if (event.type == KeyPress) symbols.push_back(XLookupKeysym(&event.xkey, 0));
    }
    return symbols;
  }
  Display* display;
  Window window;
};

/// One instance, its audio and its window.
class Instance {
 public:
  using Entry = AEffect* (*)(audioMasterCallback);
  Instance(void* library, test::Robot& user)
      : effect(reinterpret_cast<Entry>(dlsym(library, "VSTPluginMain"))(answer)), robot(user) {
    call(effOpen);
    call(effSetSampleRate, 0, nullptr, 44100.0F);
    call(effSetBlockSize, kFrames);
    call(effMainsChanged, 1);
  }
  ~Instance() {
    call(effMainsChanged, 0);
    call(effClose);
  }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  std::intptr_t call(std::int32_t opcode, std::intptr_t value = 0, void* ptr = nullptr,
                     float opt = 0.0F) {
    return effect->dispatcher(effect, opcode, 0, value, ptr, opt);
  }
  void set(int tag, float value) { effect->setParameter(effect, tag, value); }
  float get(int tag) { return effect->getParameter(effect, tag); }
  Values values() {
    Values all;
    for (int tag = 0; tag < kParameters; ++tag) all[tag] = get(tag);
    return all;
  }
  Tags changedSince(const Values& before) {
    Tags tags;
    for (const auto& [tag, value] : values()) {
      if (value != before.at(tag)) tags.push_back(tag);
    }
    return tags;
  }
  std::string state() {
    void* bytes = nullptr;
    const auto size = call(effGetChunk, 0, &bytes);
    return {static_cast<const char*>(bytes), static_cast<std::size_t>(size)};
  }
  std::string programName() {
    std::array<char, 256> text{};
    call(effGetProgramName, 0, text.data());
    return text.data();
  }

  /// In a place, or in a window somewhere inside of it.
  bool open(const Place& where, Window inner = 0) {
    place = &where;
    return call(effEditOpen, 0, std::bit_cast<void*>(inner != 0 ? inner : where.window)) == 1;
  }
  /// A block of a rough wave. The largest distance of what came out from what went in, without the
  /// constant part that the effect always takes away.
  double process() {
    std::vector<double> wanted;
    for (float& sample : in) {
      const float before = std::exchange(last, static_cast<float>(++clock % 97) / 97.0F - 0.5F);
      sample = last;
      wanted.push_back(steady = steady * 0.998 + (last - before));
    }
    float* ins[] = {in.data(), in.data()};
    float* outs[] = {left.data(), right.data()};
    effect->processReplacing(effect, ins, outs, static_cast<std::int32_t>(in.size()));
    double distance = 0.0;
    for (std::size_t i = 0; i < in.size(); ++i) {
      distance =
          std::max({distance, std::abs(left[i] - wanted[i]), std::abs(right[i] - wanted[i])});
    }
    return distance;
  }
  /// What the user did has come to the window, and is heard, seen and done.
  void settle() {
    for (int i = 0; i < 3; ++i) {
      std::this_thread::sleep_for(std::chrono::milliseconds(2));
      process();
      call(effEditIdle);
    }
  }
  bool within(std::chrono::seconds time, const std::function<bool()>& holds) {
    const auto end = std::chrono::steady_clock::now() + time;
    while (!holds() && std::chrono::steady_clock::now() < end) settle();
    return holds();
  }

  // In pixels of the window.
  void moveTo(CPoint at) { robot.moveTo(place->window, at.x, at.y), settle(); }
  void press(unsigned button = 1) { robot.press(button), settle(); }
  void release(unsigned button = 1) { robot.release(button), settle(); }
  void click(CPoint at, unsigned button = 1) { moveTo(at), press(button), release(button); }
  /// The parameters that it moves.
  Tags drag(CPoint from, CPoint by) {
    const Values before = values();
    moveTo(from), press();
    moveTo(from + CPoint{by.x / 2, by.y / 2}), moveTo(from + by), release();
    return changedSince(before);
  }
  Tags turn(int knob) { return drag(middle(knobOf(knob).rect), {0, -20}); }
  void showGroup(int group) {
    if (group == layout::filterPage || group == layout::vowelPage) set(62, group == 2 ? 1.0F : 0);
    if (group >= layout::followerPage) set(165, group == 3 ? 0 : group == 5 ? 1.0F : 0.5F);
    if (group == layout::freeLfo) set(65, 0);
    settle();
  }
  void controller(int number, int value) {
    VstMidiEvent midi{};
    midi.type = kVstMidiType;
    midi.byteSize = sizeof midi;
    midi.midiData[0] = 0xB0;
    midi.midiData[1] = static_cast<unsigned char>(number);
    midi.midiData[2] = static_cast<unsigned char>(value);
    VstEvents events{1, 0, {reinterpret_cast<VstEvent*>(&midi)}};
    call(effProcessEvents, 0, &events);
    settle();
  }

  AEffect* const effect;

 private:
  static constexpr std::size_t kFrames = 128;
  test::Robot& robot;
  const Place* place = nullptr;
  unsigned clock = 0;
  float last = 0.0F;    // of the input
  double steady = 0.0;  // last of what is wanted
  std::vector<float> in = std::vector<float>(kFrames), left = in, right = in;
};

}  // namespace zum::hosts
