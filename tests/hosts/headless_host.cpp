// A host without a window: loads an effect, runs its audio on a thread of its own and obeys a
// script. Run by ctest with the scripts of this folder; README.md lists the commands.
#include <dlfcn.h>
#include <unistd.h>

#include <condition_variable>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <limits>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>
#include <thread>

#include "tests/hosts/hosted_effect.hpp"

namespace zum::hosts {
namespace {

using Words = std::vector<std::string>;

HostedEffect::Entry entry = nullptr;
std::unique_ptr<HostedEffect> effects[4];
HostedEffect* current = nullptr;
std::map<std::string, std::string> chunks;
std::uint64_t markedHash = 0;
std::string lastLine;
int failures = 0;

// The audio thread and what its blocks read. Whoever else touches it holds the gate.
struct Audio {
  std::mutex gate;
  std::condition_variable change;
  Shared<std::int64_t> left{0};  // frames to render
  std::int64_t clock = 0;
  bool inPlace = false, wiggle = false, quit = false;
  VstMidiEvent midi{};  // goes to the next block if its type is set

  void block(int frames) {
    std::vector<float> in;
    for (int i = 0; i < frames; ++i) {
      const double seconds = static_cast<double>(clock++) / host.rate;
      const double thump = std::exp(-8.0 * std::fmod(seconds, 0.5));  // moves the follower
      in.push_back(static_cast<float>(thump * (1.4 * std::fmod(110.0 * seconds, 1.0) - 0.7)));
    }
    VstEvents events{1, 0, {reinterpret_cast<VstEvent*>(&midi)}};
    const int wiggled = wiggle ? static_cast<int>(clock / 7 % 60) : -1;
    for (auto& e : effects)
      if (e) e->process(in.data(), frames, inPlace, midi.type ? &events : nullptr, wiggled);
    midi.type = 0;
    if (host.playing) host.frame += frames;
  }
  void run() {
    while (true) {
      std::unique_lock lock(gate);  // opens between two blocks
      change.wait(lock, [this] { return left > 0 || quit; });
      if (quit) return;
      const auto frames = static_cast<int>(std::min<std::int64_t>(left, host.block));
      block(frames);
      left = left - frames;
      change.notify_all();
    }
  }
  void start(double seconds) {
    const auto frames = std::llround(seconds * host.rate);
    {
      const std::lock_guard between(gate);
      current->peak = 0.0f;
      current->hash = 0;
      left = frames;
      change.notify_all();
    }
    while (frames > 0 && left == frames) std::this_thread::yield();  // it runs from here on
  }
  void finish(bool last = false) {
    std::unique_lock lock(gate);
    change.wait(lock, [this] { return left == 0; });
    quit = last;
    change.notify_all();
  }
};
Audio audio;

void say(const auto&... parts) {
  std::ostringstream line;
  (line << ... << parts);
  std::cout << (lastLine = line.str()) << '\n' << std::flush;
}
void expect(bool holds, const auto&... parts) {
  if (!holds) say("FAIL ", parts...);
  failures += !holds;
}

// Calls that a careless host makes. Leaves the effect in a state that is safe, not useful.
void pester(HostedEffect& e) {
  constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
  for (std::int32_t opcode = -2; opcode < 130; ++opcode) {
    for (const std::int32_t index : {-1, 0, 53, 60, 222, 1 << 30, -1 << 30}) {
      for (const std::intptr_t value : {0, -1, 128}) {
        char room[1024] = {};
        if (opcode != effClose && opcode != effEditOpen) {
          e.call(opcode, index, value, nullptr, kNan);
          e.call(opcode, index, value, room, kNan);
        }
        e.get(index);
      }
    }
  }
  for (const float value : {-1e30f, 1e30f, kNan})
    for (std::int32_t tag = -3; tag < 1 << 30; tag += tag < 230 ? 1 : 1 << 28) e.set(tag, value);
  VstMidiEvent wild{kVstMidiType, 32, -12345, 0, 0, 0, {255, 255, 255, 255}, 0, 0, {}};
  VstEvent foreign{6, 48, 1 << 30, 0, {}};
  VstEvents events{2, 0, {&foreign, reinterpret_cast<VstEvent*>(&wild)}};
  const float silence[64] = {};
  e.resume();
  for (const int frames : {0, 64}) e.process(silence, frames, false, &events, -1);
}

void check(const std::string& what, const Words& w) {
  if (what == "param" || what == "level") {
    const bool param = what == "param";
    const float value = param ? current->get(std::stoi(w.at(2))) : current->peak;
    const float low = std::stof(w.at(param ? 3 : 2)), high = std::stof(w.at(param ? 4 : 3));
    return expect(value >= low && value <= high, "it is ", value);
  }
  if (what == "same") return expect(current->hash == markedHash, "another sound");
  if (what == "changed") return expect(current->hash != markedHash, "the same sound");
  std::string text = w.at(2);
  for (std::size_t i = 3; i < w.size(); ++i) text += " " + w[i];
  expect(what == "line" && lastLine.find(text) != std::string::npos, "not in: ", lastLine);
}

void perform(const std::string& name, const Words& w) {
  HostedEffect& e = *current;
  const auto number = [&w](std::size_t i) { return std::stod(w.at(i)); };
  const auto index = [&w](std::size_t i) { return std::stoi(w.at(i), nullptr, 0); };
  const bool on = w.size() > 1 && (w[1] == "on" || w[1] == "play");
  if (name == "expect") return check(w.at(1), w);
  if (name == "start") return audio.start(number(1));
  if (name == "finish") return audio.finish();
  if (name == "render") return audio.start(number(1)), audio.finish();
  if (name == "setparam") return e.set(index(1), std::stof(w.at(2)));
  if (name == "tempo") return void(host.tempo = number(1));
  if (name == "transport") return void(host.playing = on);
  if (name == "processlevel") return void(host.level = index(1));
  if (name == "needs" && !(e.effect->flags & effFlagsProgramChunks)) std::_Exit(77);
  if (name == "mark" || name == "needs") return void(markedHash = e.hash);
  if (name == "param") {
    return say(e.get(index(1)), " name '", e.text(effGetParamName, 64, index(1)), "' display '",
               e.text(effGetParamDisplay, 64, index(1)), "'");
  }
  if (name == "info") {
    return say("'", e.text(effGetEffectName, kVstMaxEffectNameLen), "' by '",
               e.text(effGetVendorString, kVstMaxVendorStrLen), "' product '",
               e.text(effGetProductString, kVstMaxProductStrLen), "' in ", e.effect->numInputs,
               " out ", e.effect->numOutputs, " params ", e.effect->numParams, " programs ",
               e.effect->numPrograms, " flags ", e.effect->flags, " tail ", e.call(effGetTailSize));
  }
  if (name == "program") {
    if (w.size() > 1) e.call(effSetProgram, 0, index(1));
    return say("program ", e.call(effGetProgram), " ", e.text(effGetProgramName, 24));
  }
  if (name == "savechunk") {
    void* data = nullptr;
    const auto bytes = e.call(effGetChunk, 0, 0, &data);
    if (!data || bytes <= 0) throw std::runtime_error("no chunk");
    chunks[w.at(1)].assign(static_cast<char*>(data), static_cast<std::size_t>(bytes));
    return say("chunk ", bytes);
  }
  if (name == "loadchunk") {  // from a copy without room, so that a sanitizer sees reads behind it
    const std::string& chunk = chunks.at(w.at(1));
    const auto bytes = std::min(chunk.size(), w.size() > 2 ? std::stoul(w[2]) : chunk.size());
    std::vector<char> data(chunk.begin(), chunk.begin() + static_cast<std::ptrdiff_t>(bytes));
    return void(e.call(effSetChunk, 0, static_cast<std::intptr_t>(data.size()), data.data()));
  }

  const std::lock_guard between(audio.gate);  // all of these happen between two blocks
  if (name == "inplace") return void(audio.inPlace = on);
  if (name == "wiggle") return void(audio.wiggle = on);
  if (name == "rewind") return void(host.frame = static_cast<double>(audio.clock = 0));
  if (name == "rate") return void(host.rate = number(1));
  if (name == "block") return void(host.block = std::clamp(index(1), 1, kMaxBlock));
  if (name == "suspend") return e.suspend();
  if (name == "resume") return e.resume();
  if (name == "instance" || name == "fresh") {
    auto& slot = effects[index(1) & 3];
    if (name == "fresh") slot.reset();
    if (!slot) slot = std::make_unique<HostedEffect>(entry, answer);
    return void(current = slot.get());
  }
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(index(i)); };
  if (name == "midi")
    return void(audio.midi = {kVstMidiType, 32, 0, 0, 0, 0, {byte(1), byte(2), byte(3)}, 0, 0, {}});
  if (name != "garbage") throw std::invalid_argument("no such command");
  pester(e);
  HostedEffect alone(entry, nullptr);
  pester(alone);
}

// ";" parts commands; "each %x 1,2,3 COMMANDS" runs the rest of the line with %x replaced.
void obey(const std::string& line) {
  std::istringstream in(line);
  Words words;
  std::string rest;
  for (std::string word; in >> word && word != ";";) {
    words.push_back(word);
    if (words[0] == "each" && words.size() == 3) break;
  }
  std::getline(in, rest, '\0');
  if (words.empty() || words[0] == "#") return;
  if (words[0] == "each") {
    std::istringstream values(words.at(2));
    for (std::string value; std::getline(values, value, ',');) {
      std::string filled = rest;
      for (auto at = filled.find(words[1]); at != std::string::npos; at = filled.find(words[1])) {
        filled.replace(at, words[1].size(), value);
      }
      obey(filled);
    }
    return;
  }
  const int before = failures;
  try {
    perform(words[0], words);
  } catch (const std::exception& error) {
    expect(false, error.what());
  }
  expect(!current->overrun, "wrote behind a buffer");
  current->overrun = false;
  if (failures > before) say("  at: ", line);
  obey(rest);
}

}  // namespace
}  // namespace zum::hosts

int main(int argc, char** argv) try {
  using namespace zum::hosts;
  std::ifstream file(argc == 3 ? argv[2] : "/dev/stdin");
  void* library = argc > 1 ? dlopen(argv[1], RTLD_NOW | RTLD_LOCAL) : nullptr;
  if (!library || !file) throw std::runtime_error("usage: headless_host PLUGIN [SCRIPT]");
  for (const char* name : {"main", "VSTPluginMain"})
    if (void* symbol = dlsym(library, name)) entry = reinterpret_cast<HostedEffect::Entry>(symbol);
  if (!entry) throw std::runtime_error("the file has no entry");
  current = (effects[0] = std::make_unique<HostedEffect>(entry, answer)).get();
  if (std::getenv("ZUM_RT_STATUS") && !realtimeEnter)
    throw std::runtime_error("realtime_check is not preloaded");
  alarm(120);  // ends a script that hangs
  std::thread thread([] { audio.run(); });
  for (std::string line; std::getline(file, line);) obey(line);
  audio.finish(true);
  thread.join();
  for (auto& e : effects) e.reset();
  dlclose(library);
  say(failures ? "FAIL" : "PASS");
  return failures ? 1 : 0;
} catch (const std::exception& error) {
  const char* detail = dlerror();
  std::cerr << error.what() << " " << (detail ? detail : "") << "\n";
  return 2;
}
