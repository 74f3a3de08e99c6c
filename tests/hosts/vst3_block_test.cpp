// The block call of the VST3 bundle in a host of our own: points and notes, transport, side-chain,
// any blocks, what is missing, and what moves by itself.
#include <array>

#include "tests/hosts/vst3_host.hpp"

namespace zum::test {
namespace {

TEST(Vst3Block, PointsAndNotesPlayAtTheirSample) {
  const Stereo in = noise(4096);
  const std::vector<Point> points = {
      {tag::cutoff, 100, 0.2},    {tag::cutoff, 777, 0.9},     {tag::cutoff, 778, 0.6},
      {tag::resonance, 333, 0.9}, {tag::multiType, 1500, 1.0}, {tag::overdrive, 777, 0.7},
      {kMidi + 74, 2000, 0.8},    {kMidi + 128, 2100, 0.5},    {tag::lfoStyle, 5, 1.0},
      {tag::cutoffLfo, 6, 0.9},   {kMidi + 129, 2500, 0.2}};
  const std::vector<Note> notes = {{900, 60, 0.7F}, {1000, 60, 0.0F}, {3000, 62, 1.0F}};
  const std::vector<std::size_t> whole = {4096};
  const std::vector<std::size_t> ends = {5,    6,    100,  333,  777,  778,  900,
                                         1000, 1500, 2000, 2100, 2500, 3000, 4096};
  auto moved = points;
  moved[3].frame += 32;
  const auto render = [&](const auto& cuts, const auto& all) {
    Plugin plugin;
    plugin.prepare();
    Stereo out = plugin.renderCut(in, cuts, all, notes);
    EXPECT_EQ(plugin.get(tag::cutoff), static_cast<double>(0.6F));
    return out;
  };
  const Stereo out = render(whole, points);
  EXPECT_EQ(out, render(ends, points));
  EXPECT_NE(out, render(whole, moved));
}

TEST(Vst3Block, PlaysWhatTheLinkedEffectPlays) {
  for (const double rate : {11050.0, 44100.0, 196000.0}) {
    const Stereo in = noise(8192);
    TestHost linked(static_cast<float>(rate));
    linked.giveTime(133.0, 2.5, kVstTransportPlaying | kVstPpqPosValid | kVstTempoValid);
    v3_process_context context{};
    context.state =
        V3_PROCESS_CTX_PLAYING | V3_PROCESS_CTX_PROJECT_TIME_VALID | V3_PROCESS_CTX_TEMPO_VALID;
    context.bpm = 133.0, context.project_time_quarters = 2.5;
    Plugin plugin(rate);
    plugin.context = &context;
    linked.set(tag::lfoStyle, 1.0F), plugin.set(tag::lfoStyle, 1.0);  // follows the beats
    for (const int tag : {tag::cutoff, tag::resonance, tag::lfoRate, tag::cutoffLfo}) {
      linked.set(tag, 0.7F);
      plugin.set(static_cast<v3_param_id>(tag), static_cast<double>(0.7F));
    }
    Stereo out = in;
    plugin.play(out, out, 0, 8192);
    EXPECT_EQ(out, linked.render(in, {8192})) << rate;
    EXPECT_GT(energy(out), 1.0);
    Plugin other(rate);
    other.set(tag::cutoffLfo, 0.7);
    EXPECT_NE(other.render(in), out);  // another tempo, of a host that tells of none
  }
}

TEST(Vst3Block, BearsWhatIsMissing) {
  Plugin plugin(44100.0, 512);
  plugin.prepare();
  std::array<float, 1024> room{};
  float* both[] = {room.data(), room.data() + 512};
  float* half[] = {room.data(), nullptr};
  float* none[] = {nullptr, nullptr};
  Changes changes({{tag::cutoff, -5, 0.3}, {tag::cutoff, 1 << 30, 0.7}, {kMidi + 1, 2, 1.0}});
  Events events({{-1, 60, 1.0F}, {1 << 30, 300, 1.0F}});
  events.events[0].bus_index = 9;
  for (const std::int32_t frames : {0, 1, 512, 100000}) {
    for (float** in : {static_cast<float**>(nullptr), both, half, none}) {
      for (float** out : {static_cast<float**>(nullptr), both, half, none}) {
        if (frames > 512 && (in == both || out != nullptr)) continue;  // no room here for so many
        for (const int buses : {0, 1}) {
          v3_audio_bus_buffers inputs[] = {{in == half ? 1 : 2, 0, {in}}};
          v3_audio_bus_buffers outputs[] = {{out == half ? 1 : 2, 0, {out}}};
          v3_process_data data = {V3_OFFLINE, V3_SAMPLE_32,  frames,  buses,
                                  buses,      inputs,        outputs, changes.face(),
                                  nullptr,    events.face(), nullptr, nullptr};
          EXPECT_EQ(plugin.process(data), V3_OK);
          data.inputs = data.outputs = nullptr;
          EXPECT_EQ(plugin.process(data), V3_OK);
        }
      }
    }
  }
  EXPECT_EQ(plugin.get(tag::cutoff), static_cast<double>(0.7F));
  v3_process_data data{};
  data.symbolic_sample_size = V3_SAMPLE_64;
  EXPECT_NE(plugin.process(data), V3_OK);
  data.symbolic_sample_size = V3_SAMPLE_32;
  data.nframes = -1;
  EXPECT_NE(plugin.process(data), V3_OK);
  Plugin idle(0.0);  // never switched on
  Stereo out(64, 1.0F);
  idle.play(noise(64), out, 0, 64, {{tag::cutoff, 0, 0.5}});
  EXPECT_EQ(energy(out), 0.0);
  EXPECT_EQ(idle.get(tag::cutoff), 0.5);
}

TEST(Vst3Block, SideChainIsHeardWhenActiveAndFed) {
  const Stereo in = noise(4096);
  const Stereo loud(4096, 0.9F);
  const auto render = [&](bool active, const Stereo* side) {
    Plugin plugin;
    plugin.prepare();
    plugin.set(tag::cutoffEf, 1.0);
    plugin.sideChain = side;
    const auto on = static_cast<v3_bool>(active);
    plugin.comp().activate_bus(plugin.component, V3_AUDIO, V3_INPUT, 1, on);
    return plugin.render(in);
  };
  const Stereo silent(4096);  // of a host where nobody connected it
  const Stereo plain = render(false, nullptr);
  EXPECT_EQ(render(false, &loud), plain);
  EXPECT_EQ(render(true, nullptr), plain);
  EXPECT_EQ(render(true, &in), plain);
  EXPECT_EQ(render(true, &silent), plain);
  EXPECT_NE(render(true, &loud), plain);
}

TEST(Vst3Block, ALearnedControllerMovesItsParameterAndTheHostHearsOfIt) {
  TestHost teacher;
  ASSERT_TRUE(teacher.client().beginLearn(tag::cutoff));
  teacher.send({{0, 0xB0, 74, 10}});
  teacher.render(Stereo(64));
  void* bytes = nullptr;
  const auto size = static_cast<std::size_t>(teacher.client().getChunk(&bytes, false));
  const auto* const first = static_cast<const std::byte*>(bytes);
  Plugin plugin;
  ASSERT_TRUE(plugin.load({first, first + size}));
  plugin.render(noise(256), {{kMidi + 74, 100, 1.0}});
  EXPECT_EQ(plugin.get(tag::cutoff), 1.0);
  ASSERT_EQ(plugin.told.queues.size(), 1U);
  EXPECT_EQ(plugin.told.queues[0].id, static_cast<v3_param_id>(tag::cutoff));
  EXPECT_EQ(plugin.told.queues[0].points.at(0).value, 1.0);
  plugin.render(noise(256));
  EXPECT_TRUE(plugin.told.queues.empty());
  plugin.takesChanges = false;  // then it is told with a window, and in no call that it may lock
  plugin.render(noise(256), {{kMidi + 74, 100, 0.0}});
  plugin.set(tag::resonance, 0.1);
  plugin.save();
  EXPECT_TRUE(plugin.handler.calls.empty());
  for (int i = 0; i < 2; ++i) {
    EXPECT_EQ(v3_cpp_obj_unref(plugin.view()), 0U);
    EXPECT_EQ(plugin.handler.calls, (std::vector<std::string>{"restart 4", "dirty 1"}));
  }
}

}  // namespace
}  // namespace zum::test
