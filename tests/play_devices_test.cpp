// `zum play` at servers that the test starts itself: a JACK without a sound card, PulseAudio with a
// sink that plays nowhere. What is heard is what `zum render` writes, whatever becomes of them.
#include <jack/jack.h>
#include <jack/midiport.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cmath>
#include <optional>

#include "support/child_program.hpp"
#include "support/own_display.hpp"
#include "support/settings_user.hpp"
#include "support/sound_file.hpp"

namespace zum::test {
namespace {

using namespace std::chrono_literals;

constexpr int kRate = 44100;

/// What one who sits at JACK does: sends controllers, listens, patches.
class JackUser {
 public:
  JackUser() : client(jack_client_open("keys", JackNoStartServer, nullptr)) {
    if (client == nullptr) return;
    keys = jack_port_register(client, "out", JACK_DEFAULT_MIDI_TYPE, JackPortIsOutput, 0);
    ear = jack_port_register(client, "ear", JACK_DEFAULT_AUDIO_TYPE, JackPortIsInput, 0);
    jack_set_process_callback(
        client,
        [](jack_nframes_t frames, void* user) {
          static_cast<JackUser*>(user)->process(frames);
          return 0;
        },
        this);
    jack_activate(client);
  }
  ~JackUser() { leave(); }
  JackUser(const JackUser&) = delete;
  JackUser& operator=(const JackUser&) = delete;

  void leave() {
    if (client != nullptr) jack_client_close(std::exchange(client, nullptr));
  }
  bool isThere() const { return client != nullptr; }
  bool seesConnected(const char* name) const {
    jack_port_t* const port = jack_port_by_name(client, name);
    const char** const others =
        port != nullptr ? jack_port_get_all_connections(client, port) : nullptr;
    jack_free(others);
    return others != nullptr;
  }
  bool isHeard() const { return jack_port_connected(keys) > 0; }
  void send(int controller, int value) { toSend.store(controller << 8 | value); }
  void listenTo(const char* port) { jack_connect(client, port, jack_port_name(ear)); }
  void setBlock(unsigned frames) { jack_set_buffer_size(client, frames); }
  const std::vector<float>& heard() const { return taken; }
  std::size_t heardFrames() const { return count.load(); }

 private:
  void process(jack_nframes_t frames) {
    void* const to = jack_port_get_buffer(keys, frames);
    jack_midi_clear_buffer(to);
    if (const int next = toSend.exchange(-1); next >= 0) {
      const std::array<jack_midi_data_t, 3> message = {0xB0,
                                                       static_cast<jack_midi_data_t>(next >> 8),
                                                       static_cast<jack_midi_data_t>(next & 127)};
      jack_midi_event_write(to, 0, message.data(), message.size());
    }
    const auto* const from = static_cast<const float*>(jack_port_get_buffer(ear, frames));
    std::size_t at = count.load();
    for (jack_nframes_t i = 0; i < frames && at < taken.size(); ++i) {
      if (at != 0 || from[i] != 0.0F) taken[at++] = from[i];
    }
    count.store(at);
  }

  jack_client_t* client;
  jack_port_t* keys = nullptr;
  jack_port_t* ear = nullptr;
  std::atomic<int> toSend{-1};
  std::vector<float> taken = std::vector<float>(1024);
  std::atomic<std::size_t> count{0};
};

class PlayDevicesTest : public SettingsTest {
 protected:
  PlayDevicesTest() {
    useNoSound(folder);
    // no part of it is like another one
    writeStereo((folder / "loop.wav").string(), SF_FORMAT_WAV | SF_FORMAT_FLOAT, kRate,
                noise(10 * kRate, 0.25F));
  }

  // A server that is killed stays in the list of servers, which has room for eight of them.
  ~PlayDevicesTest() override {
    player.reset();
    if (sounds) sounds->askToEnd();
  }

  /// Under one name, so that none stays behind. False where there is none to be had.
  bool startJack() {
    const std::string name = "zum-test";
    setenv("JACK_DEFAULT_SERVER", name.c_str(), 1);
    setenv("JACK_NO_AUDIO_RESERVATION", "1", 1);
    sounds.emplace(std::vector<std::string>{"jackd", "--no-mlock", "-r", "-n", name, "-d", "dummy",
                                            "-r", std::to_string(kRate), "-p", "256"},
                   folder / "jack.txt");
    return comesTrue([this] { return !sounds->isRunning() || JackUser().isThere(); }) &&
           sounds->isRunning();
  }
  bool startPulse() {
    const fs::path socket = folder / "pulse-socket";
    fs::remove(socket);
    setenv("PULSE_SERVER", ("unix:" + socket.string()).c_str(), 1);
    setenv("XDG_RUNTIME_DIR", folder.c_str(), 1);
    setenv("HOME", folder.c_str(), 1);
    sounds.emplace(
        std::vector<std::string>{
            "pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "-L",
            "module-native-protocol-unix auth-anonymous=1 socket=" + socket.string(), "-L",
            "module-null-sink sink_name=nowhere rate=" + std::to_string(kRate)},
        folder / "pulse.txt");
    return comesTrue([&] { return !sounds->isRunning() || fs::exists(socket); }) &&
           sounds->isRunning();
  }

  void startPlay(std::vector<std::string> options) {
    options.insert(options.begin(), {ZUM_PROGRAM, "play", "--loop", (folder / "loop.wav").string(),
                                     "--record", (folder / "heard.wav").string()});
    player.emplace(options, folder / "told.txt");
  }
  std::string told() const { return textIn(folder / "told.txt"); }
  bool tells(const std::string& words) const {
    return comesTrue([&] { return told().find(words) != std::string::npos; });
  }
  /// Servers without a card hand on in pieces of up to two seconds, so nobody knows when. Until
  /// it is complete, what is recorded has a hidden name.
  bool hasRecorded(double seconds) const {
    constexpr double kFrameBytes = 8.0;
    const auto isLong = [&](const fs::directory_entry& each) {
      std::error_code gone;
      const auto bytes = static_cast<double>(each.file_size(gone));
      return each.path().filename().string().rfind(".zum-", 0) == 0 && !gone &&
             bytes > seconds * kRate * kFrameBytes;
    };
    return comesTrue([&] {
      return std::any_of(fs::directory_iterator(folder), fs::directory_iterator(), isLong);
    });
  }
  /// Within a second, and what a busy machine adds to it.
  void endPlay() {
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(player->end(SIGTERM), 128 + SIGTERM) << told();
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(ZUM_ENDS_WITHIN));
  }
  /// As far as both go, from the first frame on.
  Stereo expectRecordedAsRendered(double leastSeconds, const std::string& options = "") {
    EXPECT_EQ(shell(kProgram + "render loop.wav rendered.wav --play " + options).first, 0);
    Stereo rendered = readStereo((folder / "rendered.wav").string());
    Stereo heard = readStereo((folder / "heard.wav").string());
    EXPECT_GT(static_cast<double>(heard.frames()), leastSeconds * kRate);
    const std::size_t frames = std::min(heard.frames(), rendered.frames());
    std::size_t wrong = 0;
    for (std::size_t i = 0; i < frames; ++i) {
      wrong += heard.left[i] != rendered.left[i] || heard.right[i] != rendered.right[i] ? 1 : 0;
    }
    EXPECT_EQ(wrong, 0U);
    return rendered;
  }

  const OwnDisplay server;
  std::optional<ChildProgram> sounds;
  std::optional<ChildProgram> player;
};

#define NEED(what, package) \
  if (!(what)) GTEST_SKIP() << "no server: is the package " package " installed?"

TEST_F(PlayDevicesTest, JackHearsWhatIsRenderedAndItsBlocksMayChange) {
  NEED(startJack(), "jackd2");
  JackUser user;
  startPlay({"--seconds", "3"});
  ASSERT_TRUE(comesTrue([&] { return user.seesConnected("ZUM:out right"); })) << told();
  user.listenTo("ZUM:out left");
  ASSERT_TRUE(comesTrue([&] { return user.heardFrames() == user.heard().size(); }));
  user.setBlock(64);
  usleep(300'000);
  user.setBlock(1024);
  EXPECT_EQ(player->wait(), 0) << told();
  const Stereo rendered = expectRecordedAsRendered(2.0);
  EXPECT_NE(std::search(rendered.left.begin(), rendered.left.end(), user.heard().begin(),
                        user.heard().end()),
            rendered.left.end());
  EXPECT_EQ(told().find("JACK: system, 44100 Hz, 1024 frames: "), 0U) << told();
}

TEST_F(PlayDevicesTest, JackThatGoesIsToldAndOpenedAgainWhenItReturns) {
  NEED(startJack(), "jackd2");
  startPlay({"--block", "512"});
  {
    JackUser user;
    ASSERT_TRUE(comesTrue([&] { return user.seesConnected("ZUM:out right"); })) << told();
  }
  for (const int signal : {SIGKILL, SIGTERM}) {
    usleep(500'000);
    fs::remove(folder / "told.txt");
    sounds->end(signal);
    usleep(1'300'000);
    ASSERT_TRUE(player->isRunning());
    ASSERT_TRUE(startJack());
    JackUser user;
    EXPECT_TRUE(comesTrue([&] { return user.seesConnected("ZUM:out right"); }));
    user.listenTo("ZUM:out left");
    EXPECT_TRUE(comesTrue([&] { return user.heardFrames() == user.heard().size(); }));
  }
  endPlay();
  expectRecordedAsRendered(4.0);
}

TEST_F(PlayDevicesTest, ControllerOfAJackPortMovesWhatWasLearned) {
  NEED(startJack(), "jackd2");
  putText(folder / "learned.toml", "[[binding]]\ncontroller = 74\nparameter = \"Master\"\n");
  ASSERT_EQ(run("presets make learned.toml learned.kvz"), std::pair(0, ""s));
  startPlay({"--preset", (folder / "learned.kvz").string()});
  JackUser user;
  ASSERT_TRUE(comesTrue([&] { return user.isHeard(); })) << told();
  for (const int value : {127, 0}) {
    user.send(74, value);
    usleep(600'000);
  }
  endPlay();
  const Stereo heard = readStereo((folder / "heard.wav").string());
  const auto level = [&](std::size_t from) {
    double sum = 0.0;
    for (std::size_t i = from; i < from + 4000; ++i) sum += std::fabs(heard.left[i]);
    return sum / 4000.0;
  };
  double loudest = 0.0;
  for (std::size_t i = 0; i + 4000 < heard.frames(); i += 4000) {
    loudest = std::max(loudest, level(i));
  }
  EXPECT_GT(loudest, 2.0 * level(heard.frames() - 8000));
}

TEST_F(PlayDevicesTest, DeviceThatIsNotThereListsThoseThatAre) {
  NEED(startJack(), "jackd2");
  expectTold("zum: ", {{"play --device horn", 1, "no sound device horn; there are system"},
                       {"play --rate 96000 --api jack", 1, "JACK runs at 44100 Hz"}});
  expectTold("jack  system (default)  2 in, 2 out, 44100 Hz\n", {{"play --list", 0, ""}});
}

TEST_F(PlayDevicesTest, PulseAudioHearsWhatIsRenderedAlsoWhenItReturns) {
  NEED(startPulse(), "pulseaudio");
  startPlay({"--api", "pulse", "--rate", std::to_string(kRate)});
  ASSERT_TRUE(hasRecorded(0.3)) << told();
  sounds->end(SIGKILL);
  EXPECT_TRUE(tells(" is gone")) << told();
  ASSERT_TRUE(startPulse());
  EXPECT_TRUE(hasRecorded(1.5)) << told();
  endPlay();
  EXPECT_EQ(told(),
            "zum: warning: PulseAudio: Null Output is gone; it is opened again when it returns\n");
  expectRecordedAsRendered(1.0);
}

}  // namespace
}  // namespace zum::test
