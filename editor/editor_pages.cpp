// The pages of the window: pictures, knobs with their rings, menus, switches, traces.

#include <algorithm>

#include "core/parameter_text.hpp"
#include "editor/list_look.hpp"
#include "editor/making.hpp"
#include "engine/lfo.hpp"
#include "engine/wave_tables.hpp"
#include "toolkit/button.hpp"
#include "toolkit/display.hpp"
#include "toolkit/image.hpp"
#include "toolkit/knob.hpp"
#include "toolkit/menu_style.hpp"
#include "toolkit/mouse_area.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/scope_view.hpp"
#include "toolkit/table_view.hpp"
#include "toolkit/wave_form_view.hpp"

namespace zum {
namespace {

constexpr CColor kReadoutColor{73, 212, 0, 255};
constexpr CColor kTraceColor{186, 35, 35, 255};
constexpr CColor kScopeShade{109, 18, 18, 255};
constexpr CColor kWaveShade{108, 18, 18, 255};
constexpr CColor kHighlight{227, 108, 108, 255};
constexpr int kRingFrames = 128;  // of a ring

/// The random wave, as steps of any height.
const float* randomSteps() {
  static const auto points = [] {
    constexpr float kHeights[] = {0.3F, -0.7F, 0.8F, -0.2F, -0.9F, 0.5F, -0.4F, 0.9F};
    constexpr std::size_t kLength = KvWaveFormView::kPoints / std::size(kHeights);
    std::array<float, KvWaveFormView::kPoints> made{};
    for (std::size_t i = 0; i < made.size(); ++i) made[i] = kHeights[i / kLength];
    return made;
  }();
  return points.data();
}

KvWaveFormView::Waves freeWaves() {
  const WaveTables& tables = waveTables();
  return {tables.sine.entries.data(), tables.square.entries.data(), tables.falling.entries.data(),
          tables.triangle.entries.data(), randomSteps()};
}

/// Made of the song's position: the saw rises, the triangle keeps to the lower half.
KvWaveFormView::Waves syncedWaves() {
  constexpr std::size_t kComputed = 4;
  static const auto made = [] {
    std::array<std::array<float, KvWaveFormView::kPoints>, kComputed> waves{};
    for (std::size_t slot = 0; slot < waves.size(); ++slot) {
      for (std::size_t i = 0; i < waves[slot].size(); ++i) {
        const float phase = static_cast<float>(i) / static_cast<float>(KvWaveFormView::kPoints);
        waves[slot][i] = Lfo::syncWave(static_cast<int>(slot), phase, 0.0F);
      }
    }
    return waves;
  }();
  return {made[0].data(), made[1].data(), made[2].data(), made[3].data(), randomSteps()};
}

}  // namespace

void KvUniClientEditor::addPages() {
  for (const layout::Still& row : layout::kPages) {
    add(make<KvImage>(row.rect, row.tag, getBitmap(row.picture)), row.group);
  }
}

void KvUniClientEditor::addKnob(const layout::Knob& row) {
  constexpr float kPose = 0.5F;  // until the first tick
  auto* const knob = make<KvKnob>(row.rect, row.tag, getBitmap(row.picture), row.frameHeight,
                                  row.frames, row.sensitivity);
  add(knob, row.group);
  knob->bind(&effect.value(row.tag).raw, 1.0F, 0.0F);
  knob->setValue(kPose);
  knob->setDefaultValue(findRow(row.tag)->home);
  knob->setHandleBorder(row.border);
  if (const int names = namedValues(*findRow(row.tag)); names > 1) {
    knob->keyStep = 1.0F / static_cast<float>(names - 1);
  }
}

void KvUniClientEditor::addRings(bool upper) {
  const DisplayValues& shown = effect.signal().display();
  for (const layout::Ring& row : layout::kRings) {
    const bool isUpper = row.group < layout::followerPage;
    if (isUpper != upper) continue;
    auto* const ring =
        make<KvDisplay>(row.rect, row.tag, getBitmap(row.picture), row.frameHeight, kRingFrames);
    add(ring, row.group);
    ring->bind(&(shown.*row.shown), 1.0F, 0.0F, false);
    ring->setTransparency(true);
    static_cast<KvKnob*>(getControl(row.knob))->ring = row.rect.grownBy(2);
  }
}

void KvUniClientEditor::addSwitch(int tag) {
  const auto row = std::find_if(layout::kSwitches.begin(), layout::kSwitches.end(),
                                [tag](const layout::Switch& each) { return each.tag == tag; });
  auto* const button = make<KvButton>(row->rect, row->tag, nullptr, 0.0F, ButtonMode::cycle);
  button->setBackground(holdBitmap(row->picture));
  button->bind(&effect.value(row->tag).stepped);
  add(button, row->group);
}

void KvUniClientEditor::addMenu(int tag) {
  const auto row = std::find_if(layout::kMenus.begin(), layout::kMenus.end(),
                                [tag](const layout::Menu& each) { return each.tag == tag; });
  auto* const menu = make<KvOptionMenu>(row->rect, row->tag, "", menu_style::kPictures);
  for (int i = 1; i <= row->rows; ++i) menu->addEntry(std::to_string(i), -1, false);
  menu->closedBitmap = getBitmap(row->closedPicture);
  menu->openBitmap = getBitmap(row->openPicture);
  menu->look.rowBitmap = menu->closedBitmap;
  menu->look.markColor = kHighlight;
  menu->bind(&effect.value(row->tag).stepped);
  add(menu, row->group);
}

void KvUniClientEditor::addUpperControls() {
  for (const layout::Knob& row : layout::kUpperKnobs) addKnob(row);
  addRings(true);
  addSwitch(tag::bank);
  addMenu(tag::multiType);
  addMenu(tag::vowelType);
}

void KvUniClientEditor::addLowerControls() {
  for (const layout::Knob& row : layout::kLowerKnobs) addKnob(row);
  addRings(false);
  addTraces();
  addSwitch(tag::lfoStyle);
  addSwitch(tag::lfoTrigOnOff);
  addMenu(tag::seqMode);

  // Lights up when the level triggers the LFO.
  auto* const lamp =
      make<KvDisplay>({204, 286, 219, 301}, tag::triggerLamp, getBitmap(1038), 15, 32);
  lamp->bind(&effect.signal().lfoDisplay().lampLevel(), 1.0F, 0.0F, false);
  add(lamp, layout::lfoPage);
  // Covers the trigger, which the synchronous style does not have.
  auto* const cover =
      make<KvDisplay>({133, 280, 244, 358}, tag::triggerCover, getBitmap(1019), 78, 1);
  cover->group = layout::syncedLfo;
  cover->groupMask = &getGroupMask();
  topViews.emplace_back(cover);
}

void KvUniClientEditor::addTraces() {
  const Engine& signal = effect.signal();
  const FollowerScope& level = signal.followerDisplay().scopeRing();
  auto* const follower =
      make<KvScopeView>({253, 288, 471, 352}, tag::followerTrace, KvBufferDraw::Style::filled);
  follower->setRing(level.points.data(), &level.writeIndex, FollowerScope::kPoints);
  follower->setColors(kTraceColor, kScopeShade, kHighlight);
  follower->backgroundColor = kBlackColor;
  add(follower, layout::followerPage)->setMouseEnabled(false);

  auto* const wave =
      make<KvWaveFormView>({253, 288, 471, 353}, tag::lfoTrace, freeWaves(),
                           &effect.value(tag::lfoStyle).stepped, &signal.display().lfoWaveSlot);
  wave->setSyncedWaves(syncedWaves());
  wave->setColors(kTraceColor, kWaveShade, kHighlight);
  wave->backgroundColor = kBlackColor;
  add(wave, layout::lfoPage)->setMouseEnabled(false);

  auto* const steps = make<KvTableView>({253, 288, 471, 353}, tag::stepTable);
  steps->barColor = kScopeShade;
  steps->barShade = kTraceColor;
  steps->gridColor = {128, 128, 128, 255};
  steps->barHighlight = kHighlight;
  steps->cursorColor = kBlackColor;
  steps->backgroundColor = kBlackColor;
  steps->setTable(&effect.steps());
  add(steps, layout::sequencerPage);
}

void KvUniClientEditor::addGlobalControls() {
  auto* const tabs = make<KvDisplay>({252, 264, 472, 283}, tag::pageTabs, getBitmap(1036), 20, 3);
  tabs->bind(&effect.value(tag::modChoice).stepped, 2.0F, 0.0F, true);
  add(tabs, layout::always);
  auto* const pages = make<KvMouseArea>({251, 264, 471, 283}, tag::mouseArea);
  pages->places = 3;
  pages->atPlace = {&effect.value(tag::modChoice).stepped};
  add(pages, layout::always);

  // Holds the page, and is never seen.
  auto* const page =
      make<KvOptionMenu>({113, 215, 153, 235}, tag::modChoice, "", menu_style::kPictures);
  for (const char* name : {"follower", "LFO", "sequencer"}) page->addEntry(name, -1, false);
  page->bind(&effect.value(tag::modChoice).stepped);
  add(page, layout::always)->setVisible(false);

  const Engine& signal = effect.signal();
  const auto meter = [&](int tag, const CRect& rect, const MeterRing& ring,
                         KvBufferDraw::Style style) {
    auto* const view = make<KvScopeView>(rect, tag, style);
    view->setRing(ring.points.data(), &ring.writeIndex, MeterRing::kPoints);
    view->setColors(kTraceColor, kScopeShade, kHighlight);
    view->backgroundColor = kBlackColor;
    add(view, layout::always)->setMouseEnabled(false);
  };
  meter(tag::meter, {185, 381, 324, 414}, signal.meters().meter, KvBufferDraw::Style::filled);
  meter(tag::meterInverse, {185, 414, 324, 446}, signal.meters().meterInverse,
        KvBufferDraw::Style::outline);

  auto* const strip = make<KvDisplay>({336, 6, 474, 25}, tag::statusStrip, getBitmap(1053), 19, 5);
  strip->bind(&status, 4.0F, 0.0F, true);
  add(strip, layout::always);

  addPresetMenu();
  addButton(tag::nextProgram, {157, 36, 168, 51}, 1005);
  addButton(tag::previousProgram, {35, 36, 46, 51}, 1003);
  addButton(tag::about, {338, 35, 400, 52}, 1002);
  addButton(tag::resetAll, {197, 265, 242, 276}, 1041)->bind(&effect.value(tag::resetAll).stepped);
  addSwitch(tag::bypass);
}

KvButton* KvUniClientEditor::addButton(int tag, const CRect& rect, int picture) {
  auto* const button = make<KvButton>(rect, tag, nullptr, 0.0F, ButtonMode::momentary);
  button->setBackground(holdBitmap(picture));
  add(button, layout::always);
  return button;
}

void KvUniClientEditor::addPresetMenu() {
  constexpr std::uint32_t kStyle = menu_style::kFolder | menu_style::kSubFolders |
                                   menu_style::kSteps | menu_style::kSaveEntry |
                                   menu_style::kPresetsHeader;
  auto* const menu = make<KvOptionMenu>({46, 35, 157, 52}, tag::presetMenu, "default", kStyle);
  menu->listOffsetX = -12;
  menu->listOffsetY = 19;
  dressList(*menu, getBitmap(kSubMenuSign));
  menu->favourites = {[] { return readSettingString(kFavourites).value_or(""); },
                      [](const std::string& text) { writeSettingString(kFavourites, text); }};
  menu->setFolder(KvUniClient::presetRoot(), preset::kExtension);
  shownName = {};
  add(menu, layout::always);
  presetMenus.push_back(menu);
}

void KvUniClientEditor::addReadouts() {
  const Readouts& levels = effect.readouts();
  const FollowerReadout& follower = effect.signal().followerDisplay().readout();
  const struct {
    int tag;
    const float* variable;
  } numbers[] = {{tag::efGainReadout, &levels.efGainDb},
                 {tag::efAttackReadout, &follower.attackMs},
                 {tag::efReleaseReadout, &follower.releaseMs},
                 {tag::efFreqRangeReadout, &follower.bandHz},
                 {tag::lfoTrigSensReadout, &levels.lfoThresholdDb},
                 {tag::seqGlideReadout, &levels.glidePercent}};
  const auto place = [this](KvDisplay* readout, layout::Group group) {
    readout->group = group;
    readout->groupMask = &getGroupMask();
    topViews.emplace_back(readout);
  };
  for (const layout::NumberReadout& row : layout::kNumberReadouts) {
    auto* const readout = make<KvDisplay>(row.rect, row.tag, getBitmap(layout::kReadoutPicture),
                                          layout::kReadoutHeight, 1);
    for (const auto& [tag, variable] : numbers) {
      if (tag == row.tag) readout->bind(variable, 1.0F, 0.0F, false);
    }
    readout->showNumber = true;
    readout->decimalsWidth = row.width;
    readout->decimals = row.decimals;
    readout->setFont(editorFont.get(), 11, kWhiteColor);
    readout->setUnit(row.unit);
    constexpr float kLowestBand = 45.0F;  // Hz; below it the follower hears everything
    if (row.knob == tag::efFreqRange) readout->setOffBelow(kLowestBand, "OFF");
    place(readout, row.group);
  }
  for (const layout::PictureReadout& row : layout::kPictureReadouts) {
    auto* const readout = make<KvDisplay>(row.rect, row.tag, getBitmap(row.picture),
                                          layout::kReadoutHeight, row.frames);
    readout->bind(&(effect.signal().display().*row.shown), static_cast<float>(row.frames - 1), 0.0F,
                  true);
    readout->setFont(editorFont.get(), 12, kReadoutColor);
    readout->setUnit(" ");
    place(readout, row.group);
  }
}

// The effect's state decides the pages, before anything is drawn.
void KvUniClientEditor::resendPages() {
  for (const int tag : {tag::bank, tag::modChoice, tag::bypass}) {
    effect.setParameter(tag, loadShared(effect.value(tag).raw));
  }
}

void KvUniClientEditor::cutOutRings() {
  for (const int picture : {1009, 1029, 1043, 1044, 1048, 1057}) {
    if (CBitmap* const bitmap = getBitmap(picture)) bitmap->setTransparentColor(kWhiteColor);
  }
}

void KvUniClientEditor::linkKnobs() {
  for (std::size_t i = 0; i < panels.size(); ++i) {
    getControl(layout::kPanels[i].knob)->setPopupPanel(panels[i]);
  }
  const auto link = [this](int knob, int readout) {
    getControl(knob)->addHiddenCompanion(getControl(readout));
  };
  for (const layout::NumberReadout& row : layout::kNumberReadouts) link(row.knob, row.tag);
  for (const layout::PictureReadout& row : layout::kPictureReadouts) link(row.knob, row.tag);
}

}  // namespace zum
