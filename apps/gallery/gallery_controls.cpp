// The gallery's knobs, readouts, buttons and its panel, and how its window is parted, as rows.
#include "apps/gallery/gallery.hpp"
#include "apps/gallery/gallery_pictures.hpp"
#include "toolkit/button.hpp"
#include "toolkit/display.hpp"
#include "toolkit/knob.hpp"

namespace zum {
namespace {

constexpr int kKnob = 40;  // pixels
constexpr int kKnobPictures = 64;
constexpr int kSliderPictures = 75;
constexpr float kSliderSensitivity = 0.65F;
constexpr CPoint kSlider{104, 16};
constexpr CPoint kWideSlider{120, 14};
constexpr CPoint kButton{52, 22};
constexpr CPoint kRow{104, 17};
constexpr CPoint kPanel{160, 72};

// clang-format off
constexpr Label kLabels[] = {
    {"Knobs and readouts", {8, 8, 632, 112}, true},
    {"Buttons by mode", {8, 120, 632, 186}, true},
    {"Menus", {8, 194, 632, 258}, true},
    {"Pages", {8, 266, 184, 368}, true},
    {"Traces", {192, 266, 632, 368}, true},
    {"Steps", {8, 376, 432, 472}, true},
    {"Pointer and picture", {440, 376, 632, 472}, true},
    {"filled", {204, 304, 343, 354}, false},
    {"outline", {351, 304, 490, 354}, false},
    {"waveform", {498, 304, 560, 354}, false},
    {"press and drag", {452, 412, 540, 460}, false},
    {"", {452, 412, 540, 460}, true},  // where the pointer counts
    {"", {348, 48, 352, 104}, true},   // the fader's slot
    {"image", {552, 412, 620, 460}, false},
};

enum class Kind { turns, springs, jumps, plain, fader, slider };
using Model = GalleryModel;
struct KnobRow {
  const char* name;
  CRect place;
  Kind kind;
  float Model::*variable;
  float max;
  float min;
  int group;
};
constexpr int kPage1 = Gallery::kFirstPage;
constexpr int kPage2 = Gallery::kSecondPage;
constexpr KnobRow kKnobs[] = {
    {"knob",   { 24,  48,  64,  88}, Kind::turns,   &Model::knob,    1.0F,   0.0F, 0},
    {"spring", {142,  48, 182,  88}, Kind::springs, &Model::spring,  1.0F,   0.0F, 0},
    {"jump",   {206,  48, 246,  88}, Kind::jumps,   &Model::jump,    1.0F,   0.0F, 0},
    {"plain",  {268,  58, 316,  78}, Kind::plain,   &Model::plain,  50.0F, -50.0F, 0},
    {"fader",  {342,  48, 358, 104}, Kind::fader,   &Model::fader,   1.0F,   0.0F, 0},
    {"slider", {384,  60, 488,  76}, Kind::slider,  &Model::slider,  1.0F,   0.0F, 0},
    {"first",  {116, 310, 156, 350}, Kind::turns,   &Model::first,   1.0F,   0.0F, kPage1},
    {"second", {116, 310, 156, 350}, Kind::turns,   &Model::second,  1.0F,   0.0F, kPage2},
};
// clang-format on
constexpr const char* kModes[] = {"held", "cycle", "press",  "again",
                                  "free", "pulse", "toggle", "click"};

}  // namespace

Gallery::Pictures::Pictures()
    : background(drawBackground({kWindow.width(), kWindow.height()}, kLabels)),
      knob(drawKnobStrip(kKnob, kKnobPictures, kAccent)),
      secondKnob(drawKnobStrip(kKnob, kKnobPictures, kSecondAccent)),
      slider(drawSliderStrip(kSlider, kSliderPictures)),
      wideSlider(drawSliderStrip(kWideSlider, kSliderPictures)),
      handle(drawHandle({16, 10})),
      emblem(drawEmblem({68, 48})),
      twoStates(drawButtonStrip(kButton, 2)),
      threeStates(drawButtonStrip(kButton, 3)),
      fiveStates(drawButtonStrip(kButton, GalleryModel::kWaves)),
      closedRows(drawRows(kRow, kGalleryRows, false)),
      litRows(drawRows(kRow, kGalleryRows, true)),
      menuBox(drawBox(kRow, kBox)),
      panel(drawBox(kPanel, kPaper)) {}

void Gallery::addKnobs() {
  const auto strip = [this](const KnobRow& row) -> CBitmap* {
    switch (row.kind) {
      case Kind::plain: return nullptr;
      case Kind::fader: return pictures.handle.get();
      case Kind::slider: return pictures.slider.get();
      default: return (row.group != kSecondPage ? pictures.knob : pictures.secondKnob).get();
    }
  };
  for (const KnobRow& row : kKnobs) {
    const bool slides = row.kind == Kind::slider;
    float& variable = variables.*row.variable;
    auto* const knob =
        add<KvKnob>(row.name, row.place, &variable, strip(row), row.place.height(),
                    slides ? kSliderPictures : kKnobPictures, slides ? kSliderSensitivity : 1.0F);
    entries.back().max = row.max;
    entries.back().min = row.min;
    knob->labelText = row.name;
    knob->group = row.group;
    knob->horizontal = slides;
    knob->springBack = row.kind == Kind::springs;
    if (row.kind == Kind::jumps) knob->jumpMode = KvKnob::kJumps;
    if (row.kind == Kind::fader) {
      knob->jumpMode = KvKnob::kMovesPicture;
      knob->overlayStyle = OverlayStyle::vertical;
    }
    knob->setDefaultValue(0.25F);
    knob->bind(&variable, row.max, row.min);
  }
}

void Gallery::addDisplays() {
  const auto number = [this](const char* name, const CRect& place, float* shown, float* changed) {
    auto* const display = add<KvDisplay>(name, place, changed, nullptr, 0, 0);
    display->bind(shown, 1.0F, 0.0F, false);
    display->showNumber = true;
    display->backgroundColor = kDark;
    display->setFont(font.get(), 12, kWhiteColor);
    return display;
  };
  KvDisplay* const readout = number("readout", {68, 60, 124, 76}, &variables.knob, nullptr);
  readout->setUnit(" dB");
  readout->setOffBelow(0.05F, "off");
  control("knob").addHiddenCompanion(readout);
  KvDisplay* const dragged =
      number("number", {568, 60, 624, 76}, &variables.number, &variables.number);
  dragged->setUnit(" s");
  dragged->labelText = "number";
  dragged->backgroundColor = kBox;
  dragged->textColor = kInk;
  dragged->setMouseEnabled(true);
  auto* const meter = add<KvDisplay>("meter", {512, 48, 552, 88}, nullptr,
                                     pictures.secondKnob.get(), kKnob, kKnobPictures);
  meter->bind(&variables.knob, 1.0F, 0.0F, false);
  meter->labelText = "meter";
}

void Gallery::addButtons() {
  const auto strip = [this](int states) {
    return states == 2 ? pictures.twoStates
                       : (states == 3 ? pictures.threeStates : pictures.fiveStates);
  };
  const auto button = [&](const char* name, CPoint corner, float& variable, ButtonMode mode,
                          int states) {
    auto* const made =
        add<KvButton>(name, {corner.x, corner.y, corner.x + kButton.x, corner.y + kButton.y},
                      &variable, nullptr, variable, mode);
    made->setBackground(strip(states));
    made->drawFlags = KvButton::kPressedPicture;
    made->setStateCount(states);
    made->labelText = name;
    made->bind(&variable);
  };
  for (int mode = 0; const char* const name : kModes) {
    const auto kind = static_cast<ButtonMode>(mode);
    const bool three = kind == ButtonMode::cycle || kind == ButtonMode::toggle;
    button(name, {24 + 68 * mode, 152}, variables.buttons[static_cast<std::size_t>(mode)], kind,
           three ? 3 : 2);
    ++mode;
  }
  button("page", {24, 320}, variables.page, ButtonMode::cycle, 2);
  button("wave", {568, 318}, variables.wave, ButtonMode::cycle, GalleryModel::kWaves);
}

void Gallery::addPanel() {
  amounts = add<KvViewContainer>("panel", {0, 0, kPanel.x, kPanel.y}, nullptr);
  amounts->flags |= KvControl::kDrawsBitmap | KvControl::kHasShadow;
  amounts->setBackground(pictures.panel);
  auto* const amount =
      make<KvKnob>("amount", {0, 0, kWideSlider.x, kWideSlider.y}, &variables.amount,
                   pictures.wideSlider.get(), kWideSlider.y, kSliderPictures, kSliderSensitivity);
  amount->horizontal = true;
  amount->labelText = "amount";
  amount->bind(&variables.amount, 1.0F, 0.0F);
  amounts->addView(amount, 20, 20);
  auto* const close = make<KvButton>("close", {0, 0, kButton.x, kButton.y}, &variables.close,
                                     "Close", 0.0F, ButtonMode::click);
  close->setStateCount(1);
  amounts->addView(close, 54, 42);
  amounts->setVisible(false);
  for (const char* const name : {"knob", "number", "steps"}) control(name).setPopupPanel(amounts);
}

}  // namespace zum
