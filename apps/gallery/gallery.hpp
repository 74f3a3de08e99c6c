// A window with every control of the toolkit, each bound to a variable. Used by the program
// toolkit-gallery and by tests.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "apps/gallery/gallery_model.hpp"
#include "core/group_mask.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/panel.hpp"

namespace zum {

/// [main] Open between open() and close(), any number of times; what was set stays.
class Gallery final : private CControlListener {
 public:
  static constexpr CRect kWindow{0, 0, 640, 480};
  // groups of controls on one place
  static constexpr int kFirstPage = 1;
  static constexpr int kSecondPage = 2;
  /// Hears of each change that the user makes.
  using Report = std::function<void(const std::string& name, float value)>;

  /// The menu over a folder lists its presets; without a folder it stays empty.
  explicit Gallery(Report told, std::string presetFolder = {});
  ~Gallery() override { close(); }

  /// False without a display.
  bool open();
  void close();
  /// Wanted thirty times a second: the window follows the user, and shows what the variables hold.
  void idle();
  bool isGone() const { return !frame || frame->isGone(); }
  bool writePicture(const std::string& path) const { return frame && frame->writePicture(path); }

  GalleryModel& model() { return variables; }
  KvFrame& window() { return *frame.get(); }
  KvViewContainer& panel() { return *amounts; }
  /// By its name; while it is open alone.
  template <class Control>
  Control& get(const std::string& name) const {
    return dynamic_cast<Control&>(control(name));
  }

 private:
  /// Made once: they cost more than a window.
  struct Pictures {
    Pictures();
    Held<CBitmap> background, knob, secondKnob, slider, wideSlider, handle, emblem;
    Held<CBitmap> twoStates, threeStates, fiveStates;
    Held<CBitmap> closedRows, litRows, menuBox, panel;
  };
  struct Entry {
    std::string name;
    KvControl* control;
    float* variable;  // null for what reports nothing
    float max;
    float min;
  };

  void valueChanged(CControl& changed) override;
  KvControl& control(const std::string& name) const;
  void showPage();
  /// Its tag is its place in the list.
  template <class Control, class... More>
  Control* make(const std::string& name, const CRect& place, float* variable, More... more) {
    auto* const made =
        new Control(place, this, static_cast<int>(entries.size()), *frame.get(), more...);
    made->groupMask = &mask;
    entries.push_back({name, made, variable, 1.0F, 0.0F});
    return made;
  }
  template <class Control, class... More>
  Control* add(const std::string& name, const CRect& place, float* variable, More... more) {
    Control* const made = make<Control>(name, place, variable, more...);
    frame->addView(made);
    return made;
  }
  // gallery_controls.cpp
  void addKnobs();
  void addDisplays();
  void addButtons();
  void addPanel();
  // gallery_traces.cpp
  void addTraces();
  // gallery_menus.cpp
  void addMenus();
  void addMenuButton();

  Report report;
  std::string folder;
  Held<CFontDesc> font{new CFontDesc("sans-serif", 12)};
  Pictures pictures;
  GalleryModel variables;
  GroupMask mask;
  std::vector<Entry> entries;
  KvViewContainer* amounts = nullptr;  // what the right button opens
  Held<KvFrame> frame;
};

}  // namespace zum
