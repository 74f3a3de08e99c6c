// The panels that pop up over the window: each main knob's amounts, and what is told about the
// program.

#include <string>

#include "editor/list_look.hpp"
#include "editor/making.hpp"
#include "editor/palette_color.hpp"
#include "toolkit/button.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/menu_style.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"
#include "toolkit/text_view.hpp"

namespace zum {
namespace {

constexpr int kSliderPicture = 1031;
constexpr int kAboutPicture = 1001;
constexpr int kSliderTops[] = {36, 75, 114};  // pixels from the panel's corner, as all here
constexpr int kSliderWidth = 146;
constexpr int kSliderHeight = 13;

struct PanelButton {
  CRect rect;  // in a panel of two sliders
  int picture;
  int lower;  // in one of three
};
constexpr PanelButton kReset{{111, 4, 150, 15}, 1040, 0};
constexpr PanelButton kClose{{155, 4, 167, 15}, 1030, 0};
constexpr PanelButton kLearn{{85, 107, 125, 118}, 1027, 38};
constexpr PanelButton kClear{{128, 107, 168, 118}, 1026, 38};
constexpr CRect kTitle{12, 2, 108, 17};
constexpr int kTitleSize = 11;  // pixels

/// Lies over a button that its panel's picture shows, which goes dark while it is pressed.
class DrawnButton final : public KvButton {
 public:
  using KvButton::KvButton;
  void draw(CDrawContext& context) override {
    if (!isPressed()) return;
    context.setFillColor({0, 0, 0, 110});
    context.drawRect(getViewSize(), DrawStyle::filled);
  }

 private:
  ~DrawnButton() override = default;
};

}  // namespace

void KvUniClientEditor::addHiddenMenus() {
  learnMenu = make<KvOptionMenu>({}, tag::learnMenu, "", menu_style::kPlain);
  learnMenu->addEntry("midi Learn", -1, false);
  learnMenu->addEntry("clear", -1, false);
  getFrame()->addView(learnMenu);
  windowMenu = make<KvOptionMenu>({}, tag::windowMenu, "", menu_style::kPlain);
  windowMenu->editBracket = false;  // it moves nothing itself
  dressList(*windowMenu, getBitmap(kSubMenuSign));
  getFrame()->addView(windowMenu);
}

KvViewContainer* KvUniClientEditor::makePanel(const CRect& rect, int picture) {
  auto* const panel = make<KvViewContainer>(rect, -1);
  panel->setBackground(holdBitmap(picture));
  panel->flags = KvControl::kDrawsBitmap;
  panel->setVisible(false);
  panel->backgroundColor = kBlackColor;
  getFrame()->addView(panel);
  return panel;
}

void KvUniClientEditor::addPanels() {
  for (const layout::Panel& row : layout::kPanels) {
    panels.push_back(makePanel(row.rect, row.picture));
  }
  aboutPanel = makePanel({33, 70, 474, 258}, kAboutPicture);
}

void KvUniClientEditor::addSlider(KvViewContainer& panel, int tag, const CRect& rect) {
  constexpr int kFrames = 75;
  constexpr float kSensitivity = 0.65F;
  auto* const slider =
      make<KvKnob>({0, 0, rect.width(), rect.height()}, tag, getBitmap(kSliderPicture),
                   kSliderHeight, kFrames, kSensitivity);
  slider->horizontal = true;
  slider->setDefaultValue(0.5F);
  slider->bind(&effect.value(tag).bipolar, 1.0F, -1.0F);
  panel.addView(slider, rect.left, rect.top);
}

KvTextView* KvUniClientEditor::addText(KvViewContainer& panel, const CRect& rect, int size) {
  auto* const text = make<KvTextView>({0, 0, rect.width(), rect.height()}, -1, size);
  text->textColor = colorOf(pictures::kPaper);
  panel.addView(text, rect.left, rect.top);
  return text;
}

void KvUniClientEditor::addPanelControls() {
  for (std::size_t i = 0; i < panels.size(); ++i) {
    const layout::Panel& row = layout::kPanels[i];
    const ParameterRow& knob = *findRow(row.knob);
    const std::span amounts = knob.panel->amounts;
    const tag::PanelButtons& tags = knob.panel->buttons;
    KvViewContainer& panel = *panels[i];
    const bool isTall = amounts.size() == std::size(kSliderTops);
    addText(panel, kTitle, kTitleSize)->setText(upperCase(knob.title.data()));
    for (std::size_t slider = 0; slider < amounts.size(); ++slider) {
      const int left = slider == 0 ? row.firstLeft : 12;
      const int top = kSliderTops[slider];
      addSlider(panel, amounts[slider], {left, top, left + kSliderWidth, top + kSliderHeight});
    }
    const auto button = [&](const PanelButton& look, int tag, ButtonMode mode) {
      const float initial = 2.0F * findRow(tag)->initial;
      const CRect rect = look.rect.movedBy(0, isTall ? look.lower : 0);
      auto* const made =
          make<KvButton>({0, 0, rect.width(), rect.height()}, tag, nullptr, initial, mode);
      made->setBackground(holdBitmap(look.picture));
      panel.addView(made, rect.left, rect.top);
      return made;
    };
    button(kReset, tags.reset, ButtonMode::momentary)->bind(&effect.value(tags.reset).stepped);
    button(kClose, tags.close, ButtonMode::momentary);
    KvButton* const learn = button(kLearn, tags.learn, ButtonMode::cycle);
    learn->setCondition(
        std::make_unique<KvIntEqualCondition>(effect.learning(), knob.panel->learns));
    button(kClear, tags.clear, ButtonMode::momentary);
  }
}

void KvUniClientEditor::addAboutControls() {
  const struct {
    int tag;
    CPoint place;
    int picture;
  } rows[] = {{tag::choosePresetFolder, {140, 98}, 1045},
              {tag::resetPresetFolder, {257, 98}, 1016}};
  for (const auto& [tag, place, picture] : rows) {
    auto* const button = make<KvButton>({0, 0, 100, 17}, tag, nullptr, 0.0F, ButtonMode::momentary);
    button->setBackground(holdBitmap(picture));
    aboutPanel->addView(button, place.x, place.y);
  }
  auto* const manual =
      make<DrawnButton>({0, 0, 100, 17}, tag::manual, nullptr, 0.0F, ButtonMode::momentary);
  aboutPanel->addView(manual, 327, 20);
  constexpr CRect kFolder{140, 118, 420, 134};
  constexpr int kFolderSize = 11;  // pixels
  shownFolder = addText(*aboutPanel, kFolder, kFolderSize);
}

}  // namespace zum
