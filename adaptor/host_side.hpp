// The host of one effect, for whoever speaks to it in another interface than its own: faces towards
// other hosts, and programs of our own. Owns the effect and answers what it asks.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <thread>
#include <vector>

#include "core/create_effect.hpp"
#include "core/uni_client.hpp"

namespace zum {

class HostSide {
 public:
  /// [main] What the user does in the window, told at once, but for one that works on a thread of
  /// our own: no host expects to hear of that, so what moves there moves by itself. Values are raw.
  class Listener {
   public:
    virtual void gestureBegan(int tag) = 0;
    virtual void gestureMoved(int tag, float raw) = 0;
    virtual void gestureEnded(int tag) = 0;
    /// Another preset, or another name: all is to be shown anew.
    virtual void presetChanged() = 0;

   protected:
    ~Listener() = default;
  };

  /// Where the song is at the start of a block.
  struct Song {
    bool isPlaying = false;
    double beats = 0.0;    // quarter notes
    double tempo = 120.0;  // beats per minute
  };

  /// Two channels each. Without a side-chain its pointer is null.
  struct Buffers {
    const float* const* inputs;
    const float* const* sideChain;
    float* const* outputs;
    std::int32_t frames;
  };

  /// [main] An effect that is switched off. With a listener it has a face: parameters beyond the
  /// sixty of the old interface are told of, and bypass fades. Throws std::bad_alloc.
  HostSide(EditorFactory makeEditor, Listener* told, const char* product = "");
  ~HostSide();
  HostSide(const HostSide&) = delete;
  HostSide& operator=(const HostSide&) = delete;

  // ---- [main] while no block runs
  /// Hz; false for a rate that the effect does not have, and for no number.
  static bool isRate(double rate) {
    return rate >= static_cast<double>(KvSystemInfo::kLowestSampleRate) &&
           rate <= static_cast<double>(KvSystemInfo::kHighestSampleRate);
  }
  /// A rate that the effect does not have leaves the one before.
  void activate(double rate, std::int32_t mostFrames);
  void deactivate();
  bool isActive() const { return active; }

  // ---- [main] states
  /// The bytes of a preset file; empty when the memory does not suffice.
  std::vector<std::byte> saveState();
  /// False for bytes that are no whole state, and then nothing changes.
  bool loadState(std::span<const std::byte> state);

  // ---- [any] parameters, by tag and in plain values
  float plainValue(int tag) const ZUM_REALTIME;
  void setPlain(int tag, float plain) ZUM_REALTIME;

  // ---- [audio]
  /// One block, cut at each event: the same sound as from a host that cuts its blocks there. What
  /// is left is played when it goes.
  class Block {
   public:
    Block(HostSide& host, const Buffers& all, const Song& song) ZUM_REALTIME;
    Block(const Block&) = delete;
    Block& operator=(const Block&) = delete;
    ~Block() ZUM_REALTIME { playTo(buffers.frames); }

    // Frames may not go backwards; one that does counts as the last one.
    void setPlain(std::int32_t frame, int tag, float plain) ZUM_REALTIME;
    void midi(std::int32_t frame, const std::uint8_t* threeBytes) ZUM_REALTIME;
    void moveSong(std::int32_t frame, const Song& song) ZUM_REALTIME;
    /// Up to that frame: then song() tells of it.
    void playTo(std::int32_t frame) ZUM_REALTIME;

   private:
    HostSide& host;
    const Buffers buffers;
    std::int32_t done = 0;
  };
  /// What moved by itself since the last call (learned controllers, programs, presets, and what a
  /// gesture does not tell): bits by facePosition().
  std::uint64_t takeChanges() ZUM_REALTIME { return effect->takeChanges(); }
  /// What is to be heard as the side-chain, two channels or null, where hosts hand in silence for
  /// what nobody has connected: there the follower would go deaf, so it counts from its first sound
  /// on, until there is none or the effect is switched on anew.
  const float* const* heardSideChain(const float* const* channels, std::int32_t frames)
      ZUM_REALTIME;
  /// A message of three bytes for the next block, due at one of its frames.
  void receiveMidi(std::int32_t frame, const std::uint8_t* threeBytes) ZUM_REALTIME {
    effect->receiveMidi(frame, threeBytes);
  }
  Song& song() ZUM_REALTIME { return now; }

  // ---- [main] the window: by the host's timer, or where it has none by a thread of our own
  using Size = WindowSize;
  /// Of the window that ours lies in.
  class WindowFrame {
   public:
    /// False when it stays as it is.
    virtual bool resize(const Size& wanted) = 0;

   protected:
    ~WindowFrame() = default;
  };
  Size windowSize();
  /// The window at factor 1, and the nearest that it can have to a size that is offered.
  Size plainWindowSize() { return fittingSize({}); }
  Size fittingSize(const Size& offered);
  /// How large the host shows its windows. False for what is no scale.
  bool setWindowScale(double scale);
  /// Windows that open from now on come up no larger, whatever the user chose; they may grow.
  void limitWindow(const Size& most);
  /// The host made so much room.
  void resizeWindow(const Size& given);
  /// Inside of the host's window, or for 0 in one of its own. False when there is none to be had.
  /// `around` is asked for other sizes; null where there is one alone.
  bool openWindow(std::uintptr_t parent, WindowFrame* around = nullptr);
  void closeWindow();
  bool isWindowOpen();
  /// Some thirty times a second.
  void idleWindow();
  /// From now on until the window is closed a thread calls idleWindow().
  void idleByOwnThread();

  KvUniClient& client() { return *effect; }
  const KvUniClient& client() const { return *effect; }

 private:
  static std::intptr_t answer(AEffect* record, std::int32_t opcode, std::int32_t index,
                              std::intptr_t value, void* ptr, float opt);
  std::intptr_t answerFor(std::int32_t opcode) ZUM_REALTIME;
  /// Of the window.
  std::intptr_t tell(std::int32_t opcode, std::int32_t index, float raw);
  bool mayAskForSize() const;
  std::intptr_t askForSize(const Size& wanted);
  VstTimeInfo* fillTime() ZUM_REALTIME;
  EffectEditor* editor() const { return static_cast<EffectEditor*>(effect->getEditor()); }

  Listener* const listener;
  const char* const productName;
  Song now;
  VstTimeInfo time{};
  double sampleRate = 44100.0;
  std::int32_t blockSize = 1024;
  bool active = false;
  bool hasSideChain = false;  // it sounded
  WindowFrame* windowFrame = nullptr;
  std::uint64_t toldHeld = 0;  // gestures that the listener has heard begin, by facePosition()
  std::unique_ptr<KvUniClient> effect;
  std::jthread windowThread;  // goes first
};

}  // namespace zum
