#include "tests/support/test_host.hpp"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <utility>

#include "core/plugin_base.hpp"
#include "core/tags.hpp"
#include "engine/realtime.hpp"
#include "tests/support/own_home.hpp"

#ifdef ZUM_CHECKS_REALTIME
#include <sanitizer/rtsan_interface.h>
#endif

namespace zum::test {
namespace {

const OwnHome ownHome;

// The callback carries no user pointer until the record's `user` is set, and a constructor calls
// back before that: such calls reach the host that is being made.
thread_local HostState* beingMade = nullptr;

// The promise of the block call is the effect's and ends at the host, also where the effect runs
// what it holds for one of our own hosts during a load.
void heard(HostState& host, const std::array<std::intptr_t, 3>& call) {
  const auto tell = [&] {
    host.calls.push_back(call);
    if (host.onCall) host.onCall(static_cast<std::int32_t>(call[0]));
  };
#ifdef ZUM_CHECKS_REALTIME
  if (host.vendor == kVendor) {
    const __rtsan::ScopedDisabler hostsOwn;
    return tell();
  }
#endif
  tell();
}

std::intptr_t callback(AEffect* effect, std::int32_t opcode, std::int32_t index,
                       std::intptr_t value, void* ptr, float /*opt*/) {
  HostState* host = effect->user != nullptr ? static_cast<HostState*>(effect->user) : beingMade;
  if (opcode == audioMasterGetCurrentProcessLevel) {
    ++host->levelCalls;
    return host->level;
  }
  if (opcode == audioMasterGetTime) {
    ++host->timeCalls;
    host->timeFilter = value;
    return host->hasTime ? reinterpret_cast<std::intptr_t>(&host->time) : 0;
  }
  heard(*host, {opcode, index, value});
  switch (opcode) {
    case audioMasterVersion: return 2400;
    case audioMasterGetVendorString:
      std::strcpy(static_cast<char*>(ptr), host->vendor.c_str());
      return 1;
    case audioMasterGetProductString:
      std::strcpy(static_cast<char*>(ptr), host->product.c_str());
      return 1;
    case audioMasterBeginEdit:
    case audioMasterEndEdit: return 1;
    case audioMasterSizeWindow: return host->sizesWindow ? 1 : 0;
    default: return 0;
  }
}

}  // namespace

HostCalls edits(const std::vector<int>& tags, int moves) {
  HostCalls calls;
  for (const std::intptr_t tag : tags) {
    calls.push_back({audioMasterBeginEdit, tag, 0});
    calls.insert(calls.end(), static_cast<std::size_t>(moves), {audioMasterAutomate, tag, 0});
    calls.push_back({audioMasterEndEdit, tag, 0});
  }
  return calls;
}

audioMasterCallback answering(HostState& host) {
  beingMade = &host;
  return callback;
}

TestHost::TestHost(float sampleRate, HostState state, EditorFactory makeEditor)
    : HostSide{std::move(state)}, LinkedEffect(answering(host), makeEditor), rate(sampleRate) {
  start();
}

TestHost::TestHost(const PluginFile& file, float sampleRate)
    : LinkedEffect(file.make(answering(host))), rate(sampleRate) {
  start();
}

void TestHost::start() {
  effect->user = &host;
  dispatch(effOpen);
  dispatch(effSetSampleRate, 0, 0, nullptr, rate);
  dispatch(effMainsChanged, 0, 1);
}

void TestHost::giveTime(double tempo, double ppqPos, std::int32_t flags) {
  host.hasTime = true;
  host.time.tempo = tempo;
  host.time.ppqPos = ppqPos;
  host.time.flags = flags;
}

void TestHost::selectFilter(int bank, int type) {
  set(tag::bank, static_cast<float>(bank));
  set(bank == 0 ? tag::multiType : tag::vowelType, static_cast<float>(type) / 10.0F + 0.05F);
}

void TestHost::prepare(int type, float cutoff, float resonance, float drive) {
  selectFilter(type);
  set(tag::cutoff, cutoff);
  set(tag::vowelCutoff, cutoff);
  set(tag::resonance, resonance);
  set(tag::overdrive, drive);
  set(tag::master, 0.5F);
  set(tag::mixDryWet, 1.0F);
}

void TestHost::process(const Stereo& in, Stereo& out, std::size_t at, std::int32_t frames) {
  std::array<float*, 2> from = {const_cast<float*>(in.left.data() + at),
                                const_cast<float*>(in.right.data() + at)};
  std::array<float*, 2> to = {out.left.data() + at, out.right.data() + at};
  process(from.data(), to.data(), frames);
  if (!host.moves || (host.time.flags & kVstTransportPlaying) == 0) return;
  host.time.ppqPos += frames * host.time.tempo / (60.0 * static_cast<double>(rate));
}

Stereo TestHost::render(const Stereo& in, const std::vector<std::int32_t>& blocks) {
  Stereo out(in.frames());
  for (std::size_t at = 0, i = 0; at < in.frames(); ++i) {
    const auto block =
        std::min(in.frames() - at, static_cast<std::size_t>(blocks[i % blocks.size()]));
    process(in, out, at, static_cast<std::int32_t>(block));
    at += block;
  }
  return out;
}

Stereo noise(std::size_t frames, float level) {
  std::uint32_t seed = 1;
  const auto next = [&seed, level] {
    seed = seed * 1664525U + 1013904223U;
    return level * (static_cast<float>(seed >> 8U) * 0x1p-23F - 1.0F);
  };
  Stereo made(frames);
  for (std::size_t i = 0; i < frames; ++i) {
    made.left[i] = next();
    made.right[i] = next();
  }
  return made;
}

double energy(const Stereo& a) {
  double sum = 0.0;
  for (const auto* side : {&a.left, &a.right}) {
    for (const float x : *side) sum += static_cast<double>(x) * static_cast<double>(x);
  }
  return sum;
}

double errorDb(const Stereo& a, const Stereo& b) {
  Stereo difference = a;
  for (std::size_t i = 0; i < a.frames(); ++i) {
    difference.left[i] -= b.left[i];
    difference.right[i] -= b.right[i];
  }
  return 10.0 * std::log10(energy(difference) / energy(b));
}

}  // namespace zum::test
