// The finished bundle in an LV2 host of our own, which knows the standard's records and the
// bundle's texts alone. Run twice: as it is, and with realtime_check preloaded, which watches every
// block.
#include <dlfcn.h>
#include <gtest/gtest.h>
#include <lv2/atom/atom.h>
#include <lv2/core/lv2.h>
#include <lv2/instance-access/instance-access.h>
#include <lv2/midi/midi.h>
#include <lv2/state/state.h>
#include <lv2/time/time.h>
#include <lv2/ui/ui.h>
#include <lv2/urid/urid.h>
#include <unistd.h>

#include <bit>
#include <cmath>
#include <fstream>
#include <iterator>
#include <limits>
#include <map>
#include <random>
#include <sstream>

#include "adaptor/host_side.hpp"
#include "core/parameter_text.hpp"
#include "core/tags.hpp"
#include "tests/support/own_display.hpp"
#include "tests/support/realtime_watch.hpp"
#include "tests/support/test_host.hpp"
// X's macros after that
#include <X11/Xlib.h>

namespace zum::test {
namespace {

using Bytes = std::vector<std::byte>;

// ---- the host: its words, its file, its atoms

LV2_URID idOf(const std::string& word) {
  static std::map<std::string, LV2_URID> words;
  return words.try_emplace(word, words.size() + 1).first->second;
}

LV2_URID mapWord(LV2_URID_Map_Handle /*handle*/, const char* word) { return idOf(word); }
LV2_URID_Map wordMap{nullptr, mapWord};
const LV2_Feature mapFeature{LV2_URID__map, &wordMap};

template <class Entry>
Entry entry(const char* name) {
  static void* const file = dlopen(ZUM_LV2 "/ZUM.so", RTLD_NOW | RTLD_LOCAL);
  return reinterpret_cast<Entry>(dlsym(file, name));
}
const LV2_Descriptor& plugin() {
  static const auto* const found = entry<LV2_Descriptor_Function>("lv2_descriptor")(0);
  return *found;
}
const LV2UI_Descriptor& ui() {
  static const auto* const found = entry<LV2UI_DescriptorFunction>("lv2ui_descriptor")(0);
  return *found;
}
const LV2_State_Interface& states() {
  return *static_cast<const LV2_State_Interface*>(plugin().extension_data(LV2_STATE__interface));
}

/// A sequence of exactly the bytes that it says it has.
class Events {
 public:
  Events() { put(LV2_Atom{0, idOf(LV2_ATOM__Sequence)}), put(std::uint64_t{0}), close(); }

  Events& midi(std::int64_t frame, const std::vector<std::uint8_t>& message) {
    put(frame),
        put(LV2_Atom{static_cast<std::uint32_t>(message.size()), idOf(LV2_MIDI__MidiEvent)});
    for (const std::uint8_t byte : message) put(byte);
    return close();
  }
  Events& position(std::int64_t frame, const std::map<std::string, double>& numbers) {
    const auto size = static_cast<std::uint32_t>(8 + 24 * numbers.size());
    put(frame), put(LV2_Atom{size, idOf(LV2_ATOM__Object)});
    put(0U), put(idOf(LV2_TIME__Position));
    for (const auto& [key, number] : numbers) {
      put(idOf(LV2_TIME_PREFIX + key)), put(0U), put(LV2_Atom{8, idOf(LV2_ATOM__Double)}),
          put(number);
    }
    return close();
  }
  const LV2_Atom* atom() const { return reinterpret_cast<const LV2_Atom*>(bytes.data()); }

  Bytes bytes;

 private:
  template <class T>
  void put(const T& value) {
    const auto* const first = reinterpret_cast<const std::byte*>(&value);
    bytes.insert(bytes.end(), first, first + sizeof value);
  }
  Events& close() {
    bytes.resize((bytes.size() + 7) / 8 * 8);
    const auto size = static_cast<std::uint32_t>(bytes.size() - sizeof(LV2_Atom));
    std::memcpy(bytes.data(), &size, sizeof size);
    return *this;
  }
};

// ---- the host: what it reads in the bundle

std::string textOf(const char* name) {
  std::ifstream file(std::string(ZUM_LV2) + '/' + name);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// What stands between the mark and the next of the ends.
std::string behind(const std::string& text, const std::string& mark, const char* ends) {
  const std::size_t at = text.find(mark);
  if (at == std::string::npos) return {};
  const std::size_t first = at + mark.size();
  return text.substr(first, text.find_first_of(ends, first) - first);
}

std::vector<std::string> parts(const std::string& text, const std::string& separator) {
  std::vector<std::string> found;
  for (std::size_t at = text.find(separator); at != std::string::npos;) {
    const std::size_t next = text.find(separator, at + 1);
    found.push_back(text.substr(at, next - at));
    at = next;
  }
  return found;
}

const std::vector<std::string>& portTexts() {
  static const auto all = parts(textOf("zum.ttl"), "lv2:port [");
  return all;
}

constexpr std::uint32_t kSide = 4, kEvents = 6, kControls = 7;
float declared(std::size_t position, const char* what) {
  return std::stof(behind(portTexts()[kControls + position], what, ";"));
}

// ---- the host: an instance

struct Stored {
  Bytes bytes;
  std::uint32_t type = 0;
};

LV2_State_Status store(LV2_State_Handle to, std::uint32_t key, const void* value, std::size_t size,
                       std::uint32_t type, std::uint32_t /*flags*/) {
  const auto* const first = static_cast<const std::byte*>(value);
  static_cast<std::map<std::uint32_t, Stored>*>(to)->insert_or_assign(
      key, Stored{{first, first + size}, type});
  return LV2_STATE_SUCCESS;
}

const void* retrieve(LV2_State_Handle from, std::uint32_t key, std::size_t* size,
                     std::uint32_t* type, std::uint32_t* /*flags*/) {
  const auto& all = *static_cast<std::map<std::uint32_t, Stored>*>(from);
  const auto found = all.find(key);
  if (found == all.end()) return nullptr;
  *size = found->second.bytes.size(), *type = found->second.type;
  return found->second.bytes.data();
}

const std::uint32_t kStateKey = idOf("urn:zelvane:zum#state");

class Instance {
 public:
  explicit Instance(double rate = 44100.0) {
    const LV2_Feature* features[] = {&mapFeature, nullptr};
    handle = plugin().instantiate(&plugin(), rate, ZUM_LV2, features);
    for (std::size_t i = 0; i < ports.size(); ++i) {
      ports[i] = declared(i, "lv2:default ");
      plugin().connect_port(handle, kControls + static_cast<std::uint32_t>(i), &ports[i]);
    }
    plugin().activate(handle);
  }
  ~Instance() { plugin().deactivate(handle), plugin().cleanup(handle); }
  Instance(const Instance&) = delete;
  Instance& operator=(const Instance&) = delete;

  float& port(int tag) { return ports[static_cast<std::size_t>(facePosition(tag))]; }
  void hear(Stereo* sideChain) {
    plugin().connect_port(handle, kSide, sideChain == nullptr ? nullptr : sideChain->left.data());
    plugin().connect_port(handle, kSide + 1,
                          sideChain == nullptr ? nullptr : sideChain->right.data());
  }
  void send(const LV2_Atom* events) {
    plugin().connect_port(handle, kEvents, const_cast<LV2_Atom*>(events));
  }
  /// A part of larger buffers; `out` may be `in`.
  void run(Stereo& in, Stereo& out, std::size_t at, std::size_t frames) {
    float* const places[] = {&in.left[at], &in.right[at], &out.left[at], &out.right[at]};
    for (std::uint32_t i = 0; i < 4; ++i) plugin().connect_port(handle, i, places[i]);
    const RealtimeWatch watch;
    plugin().run(handle, static_cast<std::uint32_t>(frames));
  }
  Stereo play(Stereo in, std::size_t block = 512) {
    Stereo out(in.frames());
    for (std::size_t at = 0; at < in.frames(); at += block) {
      run(in, out, at, std::min(block, in.frames() - at));
    }
    return out;
  }

  Bytes save() {
    std::map<std::uint32_t, Stored> kept;
    EXPECT_EQ(states().save(handle, store, &kept, 0, nullptr), LV2_STATE_SUCCESS);
    EXPECT_EQ(kept[kStateKey].type, idOf(LV2_ATOM__Chunk));
    return kept[kStateKey].bytes;
  }
  LV2_State_Status restore(const Bytes& bytes, const char* type = LV2_ATOM__Chunk) {
    std::map<std::uint32_t, Stored> kept{{kStateKey, {bytes, idOf(type)}}};
    return states().restore(handle, retrieve, &kept, 0, nullptr);
  }
  float value(int tag) {
    zum::HostSide reader(nullptr, nullptr);
    EXPECT_TRUE(reader.loadState(save()));
    return reader.plainValue(tag);
  }

  LV2_Handle handle;
  std::array<float, kFaceParameters> ports{};
};

/// Sound that hangs on everything: controller 74 moves the cutoff, LFO and steps follow the song.
Bytes livelyState() {
  zum::HostSide maker(nullptr, nullptr);
  const std::pair<int, float> values[] = {
      {tag::mixDryWet, 1.0F}, {tag::cutoff, 0.4F},    {tag::resonance, 0.6F},
      {tag::lfoStyle, 1.0F},  {tag::cutoffLfo, 0.7F}, {tag::cutoffSeq, 0.9F},
      {tag::cutoffEf, 0.8F},  {tag::multiType, 5.0F}, {tag::lfoRate, 0.6F},
      {tag::seqTempo, 0.8F},  {tag::efGain, 0.8F},    {tag::seqMode, 0.0F}};
  for (const auto& [tag, value] : values) maker.setPlain(tag, value);
  for (int step = 0; step < 8; ++step) {
    maker.client().steps().setValue(step, 0, static_cast<float>(step % 3) / 2.0F);
  }
  maker.client().controllers().controllers[74].append({tag::cutoff, 0});
  return maker.saveState();
}

bool isSound(const Stereo& all) {
  for (std::size_t i = 0; i < all.frames(); ++i) {
    if (!(std::fabs(all.left[i]) < 8.0F && std::fabs(all.right[i]) < 8.0F)) return false;
  }
  return energy(all) > 0.0;
}

// ---- what the bundle says

constexpr const char* kSymbols =
    "in_left in_right out_left out_right sidechain_left sidechain_right events vowelCutoff master "
    "mixDryWet cutoff resonance overdrive efFreqRange efAttack efRelease efGain lfoRate lfoWave "
    "lfoTrigOnOff lfoTrigSens seqGlide seqMode seqTempo cutoffEf cutoffLfo cutoffSeq vowelEf "
    "vowelLfo vowelSeq resoEf resoLfo resoSeq driveEf driveLfo driveSeq mixEf mixLfo mixSeq "
    "efRangeLfo efRangeSeq efAttackLfo efAttackSeq efReleaseLfo efReleaseSeq efGainLfo efGainSeq "
    "lfoRateEf lfoRateSeq lfoWaveEf lfoWaveSeq lfoSensEf lfoSensSeq seqTempoEf seqTempoLfo "
    "seqGlideEf seqGlideLfo masterEf masterLfo masterSeq vowelA vowelB bank multiType vowelType "
    "lfoStyle enabled";

TEST(Lv2Bundle, PortsAreForEver) {
  std::istringstream symbols(kSymbols);
  std::size_t index = 0;
  for (std::string symbol; symbols >> symbol; ++index) {
    ASSERT_LT(index, portTexts().size());
    EXPECT_EQ(behind(portTexts()[index], "lv2:symbol \"", "\""), symbol);
    EXPECT_EQ(behind(portTexts()[index], "lv2:index ", " "), std::to_string(index));
  }
  EXPECT_EQ(portTexts().size(), index);
  for (std::size_t i = 0; i < kFaceParameters; ++i) {
    const ParameterRow& row = *findRow(faceTags()[i]);
    const float home = row.tag == tag::bypass ? 1.0F : plainOfRaw(row, row.home);
    EXPECT_EQ(declared(i, "lv2:default "), home) << row.tag;
    EXPECT_EQ(declared(i, "lv2:minimum "), 0.0F) << row.tag;
    EXPECT_EQ(declared(i, "lv2:maximum "), plainEnd(row)) << row.tag;
  }
  const std::string& type = portTexts()[kControls + 56];
  EXPECT_NE(type.find("lv2:enumeration"), std::string::npos);
  EXPECT_NE(type.find("\"COMB\" ; rdf:value 6.0 ]"), std::string::npos);
}

Bytes fromBase64(const std::string& text) {
  const std::string digits = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  Bytes bytes;
  unsigned bits = 0;
  int count = 0;
  for (const char digit : text.substr(0, text.find('='))) {
    bits = bits << 6U | static_cast<unsigned>(digits.find(digit)), count += 6;
    if (count >= 8) count -= 8, bytes.push_back(static_cast<std::byte>(bits >> count & 255U));
  }
  return bytes;
}

TEST(Lv2Bundle, EachPresetIsAStateAndItsPortValues) {
  const auto presets = parts(textOf("presets.ttl"), "<urn:zelvane:zum:preset:");
  EXPECT_EQ(presets.size(), 162U);
  const std::string manifest = textOf("manifest.ttl");
  zum::HostSide reader(nullptr, nullptr);
  for (const std::string& preset : presets) {
    const std::string name = behind(preset, "<", ">");
    EXPECT_NE(manifest.find('<' + name + ">\n\ta pset:Preset"), std::string::npos) << name;
    ASSERT_TRUE(reader.loadState(fromBase64(behind(preset, "#state> \"", "\"")))) << name;
    for (std::size_t i = 0; i < kFaceParameters; ++i) {
      const std::string symbol = behind(portTexts()[kControls + i], "lv2:symbol ", ";");
      const float value = std::stof(behind(preset, symbol + "; pset:value ", " "));
      const int tag = faceTags()[i];
      EXPECT_EQ(value, tag == tag::bypass ? 1.0F - reader.plainValue(tag) : reader.plainValue(tag))
          << name << ' ' << symbol;
    }
  }
}

// ---- the plug-in

TEST(Lv2, ShowsOnePluginAndNeedsLittle) {
  ASSERT_EQ(std::getenv("ZUM_RT_STATUS") != nullptr, realtimeEnter != nullptr) << "not preloaded";
  EXPECT_STREQ(plugin().URI, "urn:zelvane:zum");
  EXPECT_STREQ(ui().URI, "urn:zelvane:zum#ui");
  for (const std::uint32_t index : {1U, 2U, ~0U}) {
    EXPECT_EQ(entry<LV2_Descriptor_Function>("lv2_descriptor")(index), nullptr);
    EXPECT_EQ(entry<LV2UI_DescriptorFunction>("lv2ui_descriptor")(index), nullptr);
  }
  EXPECT_EQ(plugin().extension_data("urn:nothing"), nullptr);
  EXPECT_EQ(ui().extension_data("urn:nothing"), nullptr);
  for (const double rate : {0.0, -1.0, double{NAN}, double{INFINITY}}) {
    EXPECT_EQ(plugin().instantiate(&plugin(), rate, "", nullptr), nullptr);
  }
  const LV2_Handle bare = plugin().instantiate(&plugin(), 44100.0, "", nullptr);
  ASSERT_NE(bare, nullptr);  // tools that offer no features
  plugin().run(bare, 64);    // and connect nothing
  plugin().connect_port(bare, 67, nullptr), plugin().connect_port(bare, ~0U, nullptr);
  plugin().cleanup(bare);
}

// The effect starts with other values than those that a double click takes its knobs to.
TEST(Lv2, TakesPortsThatMoveAndLeavesTheOthers) {
  Instance one;
  const float start = one.value(tag::resonance);
  ASSERT_NE(one.port(tag::resonance), start);
  one.port(tag::cutoff) = 0.3F, one.port(tag::multiType) = 3.2F, one.port(tag::bypass) = 0.0F;
  one.port(tag::overdrive) = NAN, one.port(tag::mixEf) = INFINITY, one.port(tag::lfoStyle) = -9.0F;
  one.play(noise(512));
  const std::pair<int, float> wanted[] = {
      {tag::resonance, start}, {tag::cutoff, 0.3F}, {tag::multiType, 3.0F}, {tag::bypass, 1.0F},
      {tag::overdrive, 0.0F},  {tag::mixEf, 1.0F},  {tag::lfoStyle, 0.0F}};
  for (const auto& [tag, value] : wanted) EXPECT_EQ(one.value(tag), value) << tag;
  // a state wins over what ports still hold, in an instance that has not played and in one that has
  Instance other;
  for (const bool hasPlayed : {false, true}) {
    other.port(tag::cutoff) = 0.9F;
    if (hasPlayed) other.play(noise(512));
    ASSERT_EQ(other.restore(one.save()), LV2_STATE_SUCCESS);
    other.play(noise(512));
    EXPECT_EQ(other.save(), one.save());
  }
  // then they move again, be it at once
  other.port(tag::cutoff) = 0.8F;
  other.play(noise(512));
  EXPECT_EQ(other.value(tag::cutoff), 0.8F);
  ASSERT_EQ(other.restore(one.save()), LV2_STATE_SUCCESS);
  other.port(tag::cutoff) = 0.7F;
  other.play(noise(512));
  EXPECT_EQ(other.value(tag::cutoff), 0.7F);
}

TEST(Lv2, EventsActAtTheirFrame) {
  const Bytes state = livelyState();
  Stereo in = noise(1024);
  const auto played = [&](const std::vector<std::pair<std::size_t, Events>>& blocks) {
    Instance one;
    EXPECT_EQ(one.restore(state), LV2_STATE_SUCCESS);
    Stereo out(in.frames());
    for (std::size_t i = 0; i < blocks.size(); ++i) {
      const std::size_t end = i + 1 < blocks.size() ? blocks[i + 1].first : in.frames();
      one.send(blocks[i].second.atom());
      one.run(in, out, blocks[i].first, end - blocks[i].first);
    }
    return out;
  };
  const std::map<std::string, double> song = {
      {"bar", 2}, {"barBeat", 1.5}, {"beatsPerBar", 3}, {"beatsPerMinute", 140}, {"speed", 1}};
  const std::map<std::string, double> stop = {{"speed", 0}};
  const Stereo whole = played({{0, Events()
                                       .position(0, song)
                                       .midi(100, {0xB0, 74, 90})
                                       .position(333, {{"bar", 7}, {"barBeat", 0.25}})
                                       .midi(777, {0xB0, 74, 10})
                                       .position(900, stop)}});
  const Stereo cut = played({{0, Events().position(0, song)},
                             {100, Events().midi(0, {0xB0, 74, 90})},
                             {333, Events().position(0, {{"bar", 7}, {"barBeat", 0.25}})},
                             {777, Events().midi(0, {0xB0, 74, 10})},
                             {900, Events().position(0, stop)}});
  EXPECT_EQ(whole, cut);
  EXPECT_GT(errorDb(played({{0, Events().position(0, song)}}), whole), -40.0);
  EXPECT_GT(
      errorDb(played({{0, Events().midi(100, {0xB0, 74, 90}).midi(777, {0xB0, 74, 10})}}), whole),
      -40.0);
}

// At this rate a block is a power of two of a beat, so that counting is exact.
TEST(Lv2, CountsBeatsFromAPositionThatIsToldOnce) {
  const auto played = [state = livelyState()](bool often, const std::map<std::string, double>& at) {
    Instance one(65536.0);
    EXPECT_EQ(one.restore(state), LV2_STATE_SUCCESS);
    Stereo in = noise(32768);
    Stereo out(in.frames());
    for (std::size_t block = 0; block < 512; ++block) {
      auto told = at;
      if (often) told["barBeat"] += static_cast<double>(block) / 1024.0;
      const Events events = often || block == 0 ? Events().position(0, told) : Events();
      one.send(events.atom());
      one.run(in, out, 64 * block, 64);
    }
    return out;
  };
  const std::map<std::string, double> start = {
      {"bar", 3}, {"barBeat", 0.5}, {"beatsPerMinute", 60}, {"speed", 1}};
  const Stereo counted = played(false, start);
  EXPECT_EQ(counted, played(true, start));
  // the same place told otherwise
  const std::map<std::string, double> tellings[] = {
      {{"beat", 12.5}, {"beatsPerMinute", 60}, {"speed", 1}},
      {{"frame", 12.5 * 65536}, {"beatsPerMinute", 60}, {"speed", 1}},
      {{"bar", 4},
       {"barBeat", 1},
       {"beatsPerBar", 6},
       {"beatUnit", 8},
       {"beatsPerMinute", 120},
       {"speed", 2}}};
  for (const auto& told : tellings) EXPECT_EQ(counted, played(false, told));
  EXPECT_GT(errorDb(played(false, {{"bar", 3}, {"beatsPerMinute", 60}, {"speed", 0}}), counted),
            -40.0);
}

// Work for the address sanitizer.
TEST(Lv2, BearsAtomsThatAreCutOrLie) {
  Instance one;
  ASSERT_EQ(one.restore(livelyState()), LV2_STATE_SUCCESS);
  Stereo in = noise(64);
  Stereo out(64);
  const auto give = [&](const Bytes& bytes) {
    const std::unique_ptr<std::byte[]> exact(new std::byte[bytes.size()]);
    std::copy(bytes.begin(), bytes.end(), exact.get());
    one.send(reinterpret_cast<const LV2_Atom*>(exact.get()));
    one.run(in, out, 0, 64);
    one.send(nullptr);
    ASSERT_TRUE(isSound(out));
  };
  const Events good = Events()
                          .midi(-5, {0xB0, 74, 90})
                          .midi(1LL << 40, {0xC0, 3})
                          .midi(3, {})
                          .midi(2, {0xF0, 1, 2, 3, 4, 0xF7})
                          .position(10, {{"bar", NAN}, {"beatsPerMinute", 1e300}, {"speed", 1}})
                          .position(11, {{"beatUnit", 0}, {"barBeat", -INFINITY}, {"bar", 1}});
  const auto withSize = [](Bytes bytes, std::size_t size) {
    const auto body = static_cast<std::uint32_t>(size - sizeof(LV2_Atom));
    bytes.resize(size);
    std::memcpy(bytes.data(), &body, sizeof body);
    return bytes;
  };
  for (std::size_t size = sizeof(LV2_Atom); size <= good.bytes.size(); ++size) {
    give(withSize(good.bytes, size));
  }
  for (std::size_t at = 4; at < good.bytes.size(); at += 4) {
    for (const std::uint32_t lie : {0U, 1U, 7U, 9U, 0x7FFFFFFFU, 0x80000000U, ~0U, ~7U}) {
      Bytes bytes = good.bytes;
      std::memcpy(&bytes[at], &lie, sizeof lie);
      give(bytes);
    }
  }
  std::mt19937 chance(1);  // NOLINT(bugprone-random-generator-seed): the same each time
  for (int i = 0; i < 500; ++i) {
    Bytes bytes = good.bytes;
    for (std::size_t at = 16; at < bytes.size(); ++at) {
      if (chance() % 8 == 0) bytes[at] = static_cast<std::byte>(chance() % 32);
    }
    give(bytes);
  }
}

TEST(Lv2, RefusesWhatIsNoState) {
  Instance one;
  ASSERT_EQ(one.restore(livelyState()), LV2_STATE_SUCCESS);
  const Bytes good = one.save();
  Instance other;
  const Bytes before = other.save();
  std::map<std::uint32_t, Stored> none;
  EXPECT_EQ(states().restore(other.handle, retrieve, &none, 0, nullptr), LV2_STATE_ERR_NO_PROPERTY);
  EXPECT_EQ(other.restore(good, LV2_ATOM__String), LV2_STATE_ERR_BAD_TYPE);
  for (std::size_t size = 0; size < good.size(); ++size) {
    Bytes bytes(good.begin(), good.begin() + static_cast<std::ptrdiff_t>(size));
    EXPECT_NE(other.restore(bytes), LV2_STATE_SUCCESS) << size;
    const auto words = static_cast<std::uint32_t>(size / 4);
    if (size >= 4) std::memcpy(bytes.data(), &words, 4);  // and says that this is all
    EXPECT_NE(other.restore(bytes), LV2_STATE_SUCCESS) << size;
  }
  std::mt19937 chance(2);  // NOLINT(bugprone-random-generator-seed): the same each time
  for (int i = 0; i < 200; ++i) {
    Bytes bytes(chance() % 4096);
    for (std::byte& byte : bytes) byte = static_cast<std::byte>(chance());
    EXPECT_NE(other.restore(bytes), LV2_STATE_SUCCESS);
  }
  EXPECT_EQ(other.save(), before);
  EXPECT_EQ(other.restore(good), LV2_STATE_SUCCESS);
  EXPECT_EQ(other.save(), good);
}

TEST(Lv2, PlaysAtAnyRateInBlocksOfAnySizeAndInPlace) {
  const Bytes state = livelyState();
  const auto made = [&](double rate) {
    auto one = std::make_unique<Instance>(rate);
    EXPECT_EQ(one->restore(state), LV2_STATE_SUCCESS);
    return one;
  };
  for (const double rate : {11050.0, 44100.0, 196000.0}) {
    const auto one = made(rate);
    const Stereo large = one->play(noise(16384), 8192);
    EXPECT_TRUE(isSound(large));
    EXPECT_EQ(made(rate)->play(noise(16384), 1), large);
    Stereo inPlace = noise(16384);
    const auto other = made(rate);
    for (std::size_t at = 0; at < 16384; at += 64) other->run(inPlace, inPlace, at, 64);
    EXPECT_EQ(inPlace, large);
    plugin().deactivate(one->handle), plugin().activate(one->handle);
    EXPECT_TRUE(isSound(one->play(noise(16384))));
  }
  std::array<std::unique_ptr<Instance>, 8> eight;
  for (auto& one : eight) one = made(44100.0);
  const Stereo alone = made(44100.0)->play(noise(4096));
  for (const auto& one : eight) EXPECT_EQ(one->play(noise(4096)), alone);
}

// Many hosts hand in silence for what nobody has connected.
TEST(Lv2, HearsASideChainUnlessItIsSilent) {
  const Bytes state = livelyState();
  const auto played = [&](Stereo* sideChain) {
    Instance one;
    EXPECT_EQ(one.restore(state), LV2_STATE_SUCCESS);
    one.hear(sideChain);
    return one.play(noise(4096, 0.05F), 4096);
  };
  Stereo silence(4096);
  Stereo loud = noise(4096, 0.9F);
  const Stereo alone = played(nullptr);
  EXPECT_EQ(played(&silence), alone);
  EXPECT_GT(errorDb(played(&loud), alone), -40.0);
}

// ---- the window

struct Heard {
  std::vector<std::string> told;  // touches and writes, in their order
  std::map<std::uint32_t, float> writes;
};

void write(LV2UI_Controller to, std::uint32_t port, std::uint32_t size, std::uint32_t format,
           const void* value) {
  auto& heard = *static_cast<Heard*>(to);
  EXPECT_EQ(size, sizeof(float));
  EXPECT_EQ(format, 0U);
  std::memcpy(&heard.writes[port], value, sizeof(float));
  heard.told.push_back("write " + std::to_string(port));
}
void touch(LV2UI_Feature_Handle to, std::uint32_t port, bool holds) {
  static_cast<Heard*>(to)->told.push_back((holds ? "touch " : "leave ") + std::to_string(port));
}
int resize(LV2UI_Feature_Handle to, int width, int height) {
  static_cast<Heard*>(to)->told.push_back(std::to_string(width) + " by " + std::to_string(height));
  return 0;
}

/// A window of an instance, in a host that has what the flags say.
struct Window {
  Window(Instance& instance, std::uintptr_t parent, bool hasAccess = true, bool hasIdle = true)
      : one(instance) {
    const LV2_Feature all[] = {{LV2_UI__touch, &touches},
                               {LV2_UI__resize, &sizes},
                               {LV2_UI__parent, std::bit_cast<void*>(parent)},
                               {LV2_INSTANCE_ACCESS_URI, one.handle},
                               {LV2_UI__idleInterface, nullptr}};
    std::vector<const LV2_Feature*> given{&all[0], &all[1], &all[2]};
    if (hasAccess) given.push_back(&all[3]);
    if (hasIdle) given.push_back(&all[4]);
    given.push_back(nullptr);
    handle = ui().instantiate(&ui(), plugin().URI, ZUM_LV2, write, &heard, &widget, given.data());
  }
  ~Window() {
    if (handle != nullptr) ui().cleanup(handle);
  }
  Window(const Window&) = delete;
  Window& operator=(const Window&) = delete;

  int idle() const {
    const auto* const idles = ui().extension_data(LV2_UI__idleInterface);
    return static_cast<const LV2UI_Idle_Interface*>(idles)->idle(handle);
  }
  /// What the user did has come to the window, and what is written comes back through the ports.
  void settle(bool echoes = true) {
    for (int i = 0; i < 3; ++i) {
      usleep(2000);
      EXPECT_EQ(idle(), 0);
      if (echoes) echo();
      one.play(Stereo(128, 0.25F));
    }
  }
  void echo() {
    for (const auto& [port, value] : heard.writes) one.ports[port - kControls] = value;
    heard.writes.clear();
  }

  Instance& one;
  Heard heard;
  LV2UI_Touch touches{&heard, touch};
  LV2UI_Resize sizes{&heard, resize};
  LV2UI_Widget widget = nullptr;
  LV2UI_Handle handle;
};

constexpr std::uint32_t kCutoffPort = 10;

struct Lv2Window : testing::Test {
  void drag(Window& window, int dy) {
    robot.moveTo(place.window, 252, 180), window.settle();
    robot.press(), window.settle();
    robot.moveTo(place.window, 252, 180 + dy), window.settle();
    robot.release(), window.settle();
  }

  OwnDisplay server;
  Robot robot;
  HostWindow place{0};
};

TEST_F(Lv2Window, AKnobThatIsDraggedTouchesAndWritesItsPort) {
  Instance one;
  Window window(one, place.window);
  ASSERT_NE(window.handle, nullptr);
  EXPECT_NE(reinterpret_cast<std::uintptr_t>(window.widget), 0U);
  EXPECT_EQ(window.heard.told, std::vector<std::string>{"508 by 470"});
  // what the effect starts with, ports that say otherwise are written
  window.settle();
  EXPECT_EQ(one.port(tag::resonance), one.value(tag::resonance));
  EXPECT_EQ(one.port(tag::bypass), 1.0F);
  const float before = one.value(tag::cutoff);
  window.heard.told.clear();
  for (int i = 0; i < 100 && window.heard.told.empty(); ++i) drag(window, -20);
  const auto& told = window.heard.told;
  ASSERT_GE(told.size(), 3U);
  EXPECT_EQ(told.front(), "touch 10");
  EXPECT_EQ(told[1], "write 10");
  EXPECT_EQ(told.back(), "leave 10");
  EXPECT_GT(one.value(tag::cutoff), before);
  EXPECT_EQ(one.port(tag::cutoff), one.value(tag::cutoff));
}

// The host is late: it hands back what was written before, then the last of it, then its own.
TEST_F(Lv2Window, AnEchoDoesNotFightTheWindow) {
  Instance one;
  Window window(one, place.window);
  window.settle();
  std::vector<float> wrote;
  robot.moveTo(place.window, 252, 180), robot.press();
  for (int dy = 10; dy <= 60; dy += 10) {
    robot.moveTo(place.window, 252, 180 - dy), window.settle(false);
    if (const auto found = window.heard.writes.find(kCutoffPort);
        found != window.heard.writes.end()) {
      wrote.push_back(found->second);
    }
  }
  robot.release(), window.settle(false);
  ASSERT_GE(wrote.size(), 3U);
  const float last = one.value(tag::cutoff);
  EXPECT_EQ(wrote.back(), last);
  for (const float late : wrote) {
    one.port(tag::cutoff) = late;
    one.play(noise(64));
    EXPECT_EQ(one.value(tag::cutoff), last);
  }
  one.port(tag::cutoff) = 0.125F;
  one.play(noise(64));
  EXPECT_EQ(one.value(tag::cutoff), 0.125F);
}

TEST_F(Lv2Window, AStateAndALearnedControllerAreWrittenToThePorts) {
  Instance one;
  Window window(one, place.window);
  window.settle();
  ASSERT_EQ(one.restore(livelyState()), LV2_STATE_SUCCESS);
  window.heard.told.clear();
  EXPECT_EQ(window.idle(), 0);
  EXPECT_EQ(window.heard.told.size(), std::size_t{kFaceParameters});
  window.settle();
  window.heard.told.clear();
  const Events events = Events().midi(0, {0xB0, 74, 127});
  one.send(events.atom());
  one.play(noise(512));
  one.send(nullptr);
  window.settle();
  EXPECT_EQ(window.heard.told, std::vector<std::string>{"write 10"});
  EXPECT_EQ(one.port(tag::cutoff), one.value(tag::cutoff));
}

TEST_F(Lv2Window, OpensTwentyTimesAndOnlyWhereItCanReachTheInstance) {
  Instance one;
  EXPECT_EQ(Window(one, place.window, false).handle, nullptr);
  EXPECT_EQ(Window(one, 0).handle, nullptr);
  for (int i = 0; i < 20; ++i) {
    Window window(one, place.window, true, i % 4 != 0);
    ASSERT_NE(window.handle, nullptr) << i;
    EXPECT_EQ(Window(one, place.window).handle, nullptr) << "a second one";
    if (i % 4 != 0) window.settle();
  }
  Window last(one, place.window);
  last.settle();
  XDestroyWindow(place.display, place.window), XSync(place.display, False);
  for (int i = 0; i < 100 && last.idle() == 0; ++i) usleep(2000);
  EXPECT_TRUE(isSound(one.play(noise(512))));
}

}  // namespace
}  // namespace zum::test
