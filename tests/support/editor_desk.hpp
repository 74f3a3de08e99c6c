// The effect's own window without a screen, in a host that a test is.
#pragma once

#include <array>
#include <cstring>
#include <map>

#include "editor/create_editor.hpp"
#include "editor/uni_client_editor.hpp"
#include "platform/offscreen_window.hpp"
#include "support/test_host.hpp"
#include "toolkit/panel.hpp"

namespace zum::test {

class EditorDesk {
 public:
  EditorDesk() { reopen(); }

  KvUniClient& effect() { return host.client(); }
  KvUniClientEditor& editor() {
    return static_cast<KvUniClientEditor&>(
        *static_cast<AudioEffect*>(host.effect->object)->getEditor());
  }
  void reopen() {
    editor().close();
    editor().open(nullptr, [this](const WindowRequest& request, WindowEvents& events) {
      auto opened = std::make_unique<OffscreenWindow>(request, events);
      if (request.inFrontOf == 0) window = opened.get();
      return opened;
    });
    tick();
  }
  /// What a host does thirty times a second, and a little of what it does all the time.
  void tick() {
    if (plays) playOn();
    editor().idle();
  }

  // At a place of the window.
  void press(CPoint at, int word = buttons::kLeft) {
    window->press(at.x, at.y, word);
    tick();
  }
  void move(CPoint at, int word = buttons::kLeft) {
    window->move(at.x, at.y, word);
    tick();
  }
  void release(CPoint at) {
    window->release(at.x, at.y);
    tick();
  }
  void click(CPoint at, int word = buttons::kLeft) {
    press(at, word);
    release(at);
  }
  CPoint middleOf(int tag) {
    const CRect& rect = editor().getControl(tag)->getViewSize();
    return {(rect.left + rect.right) / 2, (rect.top + rect.bottom) / 2};
  }
  void click(int tag) { click(middleOf(tag)); }
  void drag(int tag, int dx, int dy) {
    const CPoint from = middleOf(tag);
    press(from);
    move({from.x + dx, from.y + dy});
    release({from.x + dx, from.y + dy});
  }
  void key(std::uint8_t virt) {
    window->keyDown({0, virt, 0});
    tick();
  }
  void tap(std::uint8_t virt) {
    key(virt);
    window->keyUp({0, virt, 0});
    for (int i = 0; i < 2; ++i) tick();  // or the next press would be a repeat
  }
  void controller(int number, int value) {
    VstMidiEvent midi{};
    midi.type = kVstMidiType;
    midi.byteSize = sizeof midi;
    const char bytes[] = {static_cast<char>(0xB0), static_cast<char>(number),
                          static_cast<char>(value)};
    std::memcpy(midi.midiData, bytes, sizeof bytes);
    VstEvents events{};
    events.numEvents = 1;
    events.events[0] = reinterpret_cast<VstEvent*>(&midi);
    host.dispatch(effProcessEvents, 0, 0, &events);
    tick();
  }

  /// All that a user can set.
  std::map<int, float> values() {
    std::map<int, float> now;
    for (const ParameterRow& row : parameterRows()) {
      if (row.id >= 0) now[row.tag] = effect().value(row.tag).raw;
    }
    return now;
  }
  /// Tags whose values are others than before.
  std::vector<int> changedSince(const std::map<int, float>& before) {
    std::vector<int> tags;
    for (const auto& [tag, value] : values()) {
      if (value != before.at(tag)) tags.push_back(tag);
    }
    return tags;
  }
  /// The page on which a group is shown.
  void showGroup(int group) {
    if (group == 1 || group == 2) host.set(62, group == 2 ? 1.0F : 0.0F);
    if (group >= 3) host.set(165, group == 3 ? 0.0F : group == 5 ? 1.0F : 0.5F);
    if (group >= 6) host.set(65, group == 7 ? 1.0F : 0.0F);
    tick();
  }

  TestHost host{44100.0F, {}, createEditor};
  OffscreenWindow* window = nullptr;
  Stereo input{kBlock};  // is heard over and over, in whole blocks
  bool plays = true;     // blocks go through the effect

 private:
  static constexpr std::size_t kBlock = 64;

  void playOn() {
    Stereo out(input.frames());
    host.process(input, out, place, static_cast<std::int32_t>(kBlock));
    host.host.time.ppqPos += host.host.time.tempo / 60.0 * static_cast<double>(kBlock) / 44100.0;
    place += kBlock;
    if (place + kBlock > input.frames()) place = 0;
  }

  std::size_t place = 0;  // in the input
};

}  // namespace zum::test
