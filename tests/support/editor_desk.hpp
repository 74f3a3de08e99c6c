// The effect's own window without a screen, in a host that a test is.
#pragma once

#include <algorithm>
#include <cmath>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "core/tags.hpp"
#include "editor/create_editor.hpp"
#include "editor/layout.hpp"
#include "editor/uni_client_editor.hpp"
#include "platform/offscreen_window.hpp"
#include "support/test_host.hpp"
#include "toolkit/option_menu.hpp"
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
    editor().open(this, [this](const WindowRequest& request, WindowEvents& events) {
      auto opened = std::make_unique<OffscreenWindow>(request, events);
      if (request.inFrontOf == 0) window = opened.get();
      if (request.inFrontOf == window->handle()) boxes[request.title] = opened.get();
      return opened;
    });
    tick();
  }
  /// What a host does thirty times a second, and a little of what it does all the time.
  void tick(int count = 1) {
    for (; count > 0; --count) {
      if (plays) {
        Stereo out(input.frames());
        host.process(input, out, place, kBlock);
        place = place + 2 * kBlock > input.frames() ? 0 : place + kBlock;
      }
      editor().idle();
    }
  }

  /// The first pixel of the screen inside of one of the window at factor 1.
  CPoint onScreen(CPoint at) {
    const double factor = editor().factor();
    return {static_cast<int>(std::ceil(at.x * factor - 1e-6)),
            static_cast<int>(std::ceil(at.y * factor - 1e-6))};
  }
  // At a place of the window at factor 1.
  void press(CPoint at, int word = buttons::kLeft) {
    window->press(onScreen(at).x, onScreen(at).y, word);
    tick();
  }
  void move(CPoint at, int word = buttons::kLeft) {
    window->move(onScreen(at).x, onScreen(at).y, word);
    tick();
  }
  void release(CPoint at) {
    window->release(onScreen(at).x, onScreen(at).y);
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
  void click(int tag, int word = buttons::kLeft) { click(middleOf(tag), word); }
  void drag(int tag, int dx, int dy) {
    const CPoint from = middleOf(tag);
    const CPoint to{from.x + dx, from.y + dy};
    press(from);
    move(to);
    release(to);
  }
  KvOptionMenu& menu(int tag) { return static_cast<KvOptionMenu&>(*editor().getControl(tag)); }
  void choose(int menuTag, int row) {
    click(menuTag);
    const CRect list = menu(menuTag).getListRect();
    click(CPoint{list.left + 10, list.top + 1 + 17 * row + 8});
  }
  /// What lies over the window and takes all input; null for none.
  KvControl* openPopup() { return editor().shownFrame()->getModalView(); }
  void key(std::uint8_t virt) {
    window->keyDown({0, virt, 0});
    tick();
  }
  void tap(std::uint8_t virt) {
    key(virt);
    window->keyUp({0, virt, 0});
    tick(2);  // or the next press would be a repeat
  }
  void type(std::string_view letters) {
    for (const char letter : letters) {
      window->keyDown({letter, 0, 0});
      window->keyUp({letter, 0, 0});
      tick(3);
    }
  }
  void twiceOn(int tag, int word) {
    click(tag, word);
    click(tag, word | buttons::kDoubleClick);
  }
  void controller(int number, int value) {
    host.send({{0, 0xB0, number, value}});
    tick();
  }

  /// 0xRRGGBB of a part of the screen, row by row.
  std::vector<std::uint32_t> pixels(const CRect& part) const {
    std::vector<std::uint32_t> all;
    for (int y = part.top; y < part.bottom; ++y) {
      for (int x = part.left; x < part.right; ++x) all.push_back(window->pixel(x, y));
    }
    return all;
  }
  std::vector<std::uint32_t> pixels() {
    const CPoint size = editor().screenSize();
    return pixels({0, 0, size.x, size.y});
  }
  /// Where the screen shows something else first; empty where it does not.
  std::string differsFrom(const std::vector<std::uint32_t>& before) {
    const std::vector<std::uint32_t> now = pixels();
    const auto at = std::ranges::mismatch(now, before).in1 - now.begin();
    const auto width = editor().screenSize().x;
    if (at == std::ssize(now)) return {};
    return std::to_string(at % width) + ", " + std::to_string(at / width);
  }

  /// All that a user can set.
  std::map<int, float> values() {
    std::map<int, float> now;
    for (const ParameterRow& row : parameterRows()) {
      if (row.id >= 0) now[row.tag] = effect().value(row.tag).raw;
    }
    return now;
  }
  float value(int tag) { return effect().value(tag).raw; }
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
    for (const GroupSelector& selector : kGroupSelectors) {
      for (int i = 0; i < selector.count; ++i) {
        if (selector.groups[i].group != group) continue;
        showGroup(selector.parent);
        host.set(selector.tag, static_cast<float>(i) / static_cast<float>(selector.count - 1));
      }
    }
    tick();
  }
  void showPageOf(int tag) { showGroup(editor().getControl(tag)->group); }

  TestHost host{44100.0F, {}, createEditor};
  OffscreenWindow* window = nullptr;
  std::map<std::string, OffscreenWindow*> boxes;  // in front of it, by their titles
  static constexpr int kBlock = 64;
  Stereo input{kBlock};   // is heard over and over, in whole blocks
  std::size_t place = 0;  // in it
  bool plays = true;      // blocks go through the effect
};

}  // namespace zum::test
