// The pace of the blocks.
#include "apps/zum/player.hpp"

#include <algorithm>
#include <array>
#include <chrono>

#include "apps/zum/effect_host.hpp"
#include "apps/zum/sound_loop.hpp"

namespace zum {
namespace {

using Clock = std::chrono::steady_clock;

// How far blocks may be behind and still be made up for. What a longer halt cost is left out, or
// they would come in one burst.
constexpr auto kMostBehind = std::chrono::milliseconds(200);

}  // namespace

Player::Player(EffectHost& effectHost, SoundLoop& played)
    : host(effectHost), loop(played), thread([this] { play(); }) {}

Player::~Player() {
  ending.store(true);
  thread.join();
}

void Player::play() {
  std::array<float, kBlock> leftIn{};
  std::array<float, kBlock> rightIn{};
  std::array<float, kBlock> leftOut{};
  std::array<float, kBlock> rightOut{};
  float* inputs[] = {leftIn.data(), rightIn.data()};
  float* outputs[] = {leftOut.data(), rightOut.data()};
  const auto blockTime = std::chrono::duration_cast<Clock::duration>(
      std::chrono::duration<double>(double{kBlock} / loop.sampleRate()));
  for (auto due = Clock::now(); !ending.load();) {
    loop.read(inputs[0], inputs[1], kBlock);
    host.process(inputs, nullptr, outputs, kBlock);
    due = std::max(due + blockTime, Clock::now() - kMostBehind);
    std::this_thread::sleep_until(due);
  }
}

}  // namespace zum
