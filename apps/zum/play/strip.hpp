// The transport strip: adds its controls to a frame, shows what its owner says and tells it what
// the user does.
#pragma once

#include <array>
#include <string>
#include <vector>

#include "apps/zum/play/peak_meter.hpp"
#include "apps/zum/play/strip_owner.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/picture_table.hpp"

namespace zum {

class TextButton;

/// [main] The frame is shut before the strip goes; the owner outlives it.
class Strip : private CControlListener {
 public:
  static CPoint size();
  /// With its top left corner at `place`.
  Strip(KvFrame& shownIn, CPoint place, StripOwner& told);
  ~Strip() override;

  /// Every tick, ahead of the frame's: asks the owner.
  void poll();
  /// Space plays and stops. False for all other keys.
  bool pressKey(const WindowKey& key);
  void releaseKey(const WindowKey& key) { space.release(key); }
  /// Of music files, as of presets, the first one counts.
  void takeFiles(const std::vector<std::string>& paths);

 private:
  void valueChanged(CControl& control) override;
  template <class Control, class... More>
  Control* add(int control, const More&... more);
  void addButtons();
  void addReadouts();
  void addLevels();
  void ask();
  void takeLevels();
  void showTexts();
  void chooseLoop();

  KvFrame& frame;
  const CPoint corner;
  StripOwner& owner;
  PictureTable pictures;
  Held<CFontDesc> font;
  HeldKey space;

  // What the controls are bound to, as the owner said last.
  float playing = 0.0F;
  float recording = 0.0F;
  float tempo = 0.0F;
  float input = 0.0F;
  float xruns = 0.0F;
  struct Side {
    PeakMeter meter;
    float level = 0.0F;    // segments that are lit
    float highest = 0.0F;  // the segment that is lit above them, counted from 1
    float clipped = 0.0F;

    void forgetClip() {
      meter.forgetClip();
      clipped = 0.0F;
    }
  };
  std::array<Side, 2> sides;  // in and out
  KvControl* xrunView = nullptr;
  TextButton* loopName = nullptr;
  TextButton* line = nullptr;  // the device, or what there is to tell
};

}  // namespace zum
