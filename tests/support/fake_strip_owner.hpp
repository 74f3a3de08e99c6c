// Whom the transport strip tells what the user does, in tests: writes it down, and shows what a
// test wants.
#pragma once

#include <cstdio>
#include <string>
#include <utility>

#include "apps/zum/play/strip_owner.hpp"

namespace zum::test {

class FakeStripOwner final : public StripOwner {
 public:
  bool isPlaying() const override { return playing; }
  void playOrStop() override { add("play"), playing = !playing; }
  double tempo() const override { return beats; }
  void setTempo(double tempo) override {
    char text[32];
    (void)std::snprintf(text, sizeof text, "tempo %g", tempo);
    add(text), beats = tempo;
  }
  void tapTempo() override { add("tap"); }
  bool isInputHeard() const override { return input; }
  void hearInput(bool heard) override { add(heard ? "card" : "loop"), input = heard; }
  std::filesystem::path loop() const override { return loopPath; }
  void setLoop(const std::filesystem::path& path) override {
    add("loop " + path.string()), loopPath = path;
  }
  void loadPreset(const std::filesystem::path& path) override { add("preset " + path.string()); }
  bool isRecording() const override { return recording; }
  void recordOrEnd() override { add("record"), recording = !recording; }
  LiveSound::Peaks takePeaks() override { return std::exchange(peaks, {0.0F, 0.0F}); }
  int xruns() const override { return lateBlocks; }
  std::string deviceName() const override { return deviceText; }
  std::string message() const override { return messageText; }

  /// What was told since the last call.
  std::string told() { return std::exchange(log, {}); }

  bool playing = false;
  bool recording = false;
  bool input = false;
  double beats = 120.0;
  std::filesystem::path loopPath;
  LiveSound::Peaks peaks{0.0F, 0.0F};
  int lateBlocks = 0;
  std::string deviceText = "JACK: system, 48000 Hz, 128 frames";
  std::string messageText;

 private:
  void add(const std::string& what) { log += (log.empty() ? "" : ", ") + what; }

  std::string log;
};

}  // namespace zum::test
