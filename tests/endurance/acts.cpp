// A day on stage.
#include "endurance/acts.hpp"

namespace zum::test {
namespace {

void retune(Stage& stage, Player& player) {
  constexpr std::array kRates = {8000.0F, 22050.0F, 44100.0F, 48000.0F, 96000.0F, 192000.0F};
  const std::lock_guard turn(player.block);
  player.host.suspend();
  player.longestBlock = 1 + stage.chance.below(Player::kMostFrames);
  player.host.host.moves = stage.chance.once(2);
  player.host.giveTime(20.0 + stage.chance.below(400), 0.0, kVstTransportPlaying);
  player.host.resume(stage.chance.oneOf(kRates), player.longestBlock);
}

void automate(Stage& stage, Player& player) {
  for (int i = 0; i < 20; ++i) player.host.set(stage.chance.below(kLastTag), stage.chance.unit());
}

// Where a block did not end in time the effect stays silent until it gets a state.
void drawSteps(Stage& stage, Player& player) {
  KvUniClient& effect = player.effect;
  const int count = 1 + stage.chance.below(32);
  const bool done =
      stage.chance.once(2) ? effect.setStepColumns(count) : effect.setStepPages(count);
  if (!done && effect.muteRequest) effect.initialise();
  effect.steps().setValue(stage.chance.below(effect.steps().size()), stage.chance.unit());
}

void openWindow(Stage& stage, Player& player) {
  writeSettingInt(kWindowSize, stage.chance.oneOf(std::array{100, 100, 150, 200}));
  if (stage.hand) player.openWindow(256 * stage.chance.below(3));
}

void useMouse(Stage& stage, Player& player) {
  if (!player.place || !stage.hand) return;
  Chance& chance = stage.chance;
  stage.chooser.chosen = stage.preset();
  const CPoint at{chance.below(508), chance.below(470)};
  const auto button = static_cast<unsigned>(chance.oneOf(std::array{1, 1, 1, 2, 3, 4, 5}));
  stage.hand->moveTo(player.place->window, at.x, at.y), stage.hand->press(button), player.idle();
  stage.hand->moveTo(player.place->window, at.x + chance.below(61) - 30, at.y - 10), player.idle();
  stage.hand->release(button), player.idle();
}

void useKeys(Stage& stage, Player& player) {
  const int key = stage.chance.below(keys::kNumpad0 + 10);
  for (const int told : {effEditKeyDown, effEditKeyUp}) player.host.dispatch(told, 0, key);
}

// clang-format off
constexpr Act kDailyLife[] = {
  {"an instance comes",     4, [](Stage& s, Player&) { s.addPlayer(); }},
  {"an instance goes",      3, [](Stage& s, Player&) { if (s.players.size() > 1) s.players.pop_back(); }},
  {"another rate",          9, retune},
  {"offline for a step",    1, [](Stage&, Player& p) { p.setLevel(kVstProcessLevelOffline); p.effect.setProgram(1); }},
  {"automation",            8, automate},
  {"a flood of MIDI",       4, [](Stage&, Player& p) { p.floods = true; }},
  {"learning",              3, [](Stage& s, Player& p) { p.effect.beginLearn(s.chance.below(kHostParameters)); }},
  {"unlearning",            1, [](Stage&, Player& p) { p.effect.clearAllBindings(); }},
  {"steps",                 4, drawSteps},
  // presets, by each of their doors
  {"a preset file",         6, [](Stage& s, Player& p) { p.effect.loadPresetFile(s.preset().c_str(), 0, nullptr, true); }},
  {"the next preset",       2, [](Stage&, Player& p) { p.effect.nextPreset(0); }},
  {"another's session",     5, [](Stage& s, Player& p) { p.host.load(s.one().host.state()); }},
  {"a program",             6, [](Stage& s, Player& p) { p.host.dispatch(effSetProgram, 0, s.chance.below(140)); }},
  {"any program",           2, [](Stage&, Player& p) { p.effect.randomPreset(); }},
  {"a program's name",      2, [](Stage&, Player& p) { p.effect.playProgram("Midi Programs", "10 Needle"); }},
  {"a point to revert to",  2, [](Stage&, Player& p) { p.effect.storeRevertPoint(); }},
  {"revert",                4, [](Stage&, Player& p) { p.effect.revertToStored(); }},
  {"initialise",            1, [](Stage&, Player& p) { p.effect.initialise(); }},
  {"undo or redo",          6, [](Stage& s, Player& p) { s.chance.once(3) ? p.effect.redo() : p.effect.undo(); }},
  {"A or B",                2, [](Stage& s, Player& p) { p.effect.chooseSound(s.chance.below(2)); }},
  {"A over B",              1, [](Stage&, Player& p) { p.effect.copySound(); }},
  {"a saved preset",        5, [](Stage& s, Player& p) { p.effect.savePreset(s.preset().c_str(), 0, nullptr, true); }},
  {"a saved map",           2, [](Stage& s, Player& p) { p.effect.saveCcMap(s.path("map.kvm").c_str()); }},
  {"a map",                 2, [](Stage& s, Player& p) { p.effect.loadCcMap(s.path("map.kvm").c_str()); }},
  {"a switch",              1, [](Stage& s, Player& p) { p.effect.setOption(UserSwitches::kIsolateMap, s.chance.below(2), true); }},
  {"a window opens",        5, openWindow},
  {"a window closes",       3, [](Stage&, Player& p) { p.closeWindow(); }},
  {"its host's goes first", 1, [](Stage&, Player& p) { p.place.reset(); }},
  {"the mouse",            14, useMouse},
  {"keys",                  8, useKeys},
};
// clang-format on

}  // namespace

std::span<const Act> dailyLife() { return kDailyLife; }

}  // namespace zum::test
