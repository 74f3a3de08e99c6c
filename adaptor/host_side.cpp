#include "adaptor/host_side.hpp"

#include <algorithm>
#include <array>
#include <bit>
#include <chrono>
#include <cstring>
#include <exception>
#include <mutex>
#include <thread>

#include "core/effect_editor.hpp"
#include "core/host_text.hpp"
#include "core/parameter_text.hpp"
#include "engine/shared_value.hpp"

namespace zum {
namespace {

constexpr std::intptr_t kHostVersion = 2400;
constexpr std::size_t kMostStateBytes = std::size_t{1} << 20U;

/// Both signs of zero are silence.
bool isSilent(const float* channel, std::int32_t frames) ZUM_REALTIME {
  std::uint32_t bits = 0;
  for (std::int32_t i = 0; i < frames; ++i) bits |= std::bit_cast<std::uint32_t>(channel[i]);
  return bits << 1U == 0;
}

thread_local bool isWindowThread = false;

std::intptr_t giveText(void* ptr, const char* text) {
  if (ptr == nullptr) return 0;
  copyText(static_cast<char*>(ptr), text, kHostTextRoom);
  return 1;
}

}  // namespace

// ---- life

HostSide::HostSide(EditorFactory makeEditor, Listener* told, const char* product)
    : listener(told),
      productName(product),
      effect(std::make_unique<KvUniClient>(&HostSide::answer, makeEditor)) {
  effect->getAeffect()->reservedForHost[0] = reinterpret_cast<std::intptr_t>(this);
  if (listener != nullptr) effect->setFace();
  effect->takeChanges();  // the first values are no news
  effect->open();
}

HostSide::~HostSide() {
  closeWindow();
  if (active) deactivate();
  effect->close();
}

void HostSide::activate(double rate, std::int32_t mostFrames) {
  sampleRate = rate;
  blockSize = mostFrames;
  effect->setSampleRate(static_cast<float>(rate));
  effect->setBlockSize(mostFrames);
  effect->resume();
  hasSideChain = false;
  active = true;
}

void HostSide::deactivate() {
  effect->suspend();
  active = false;
}

// ---- states

std::vector<std::byte> HostSide::saveState() {
  void* data = nullptr;
  const std::int32_t size = effect->getChunk(&data, false);
  const auto* const bytes = static_cast<const std::byte*>(data);
  return size > 0 ? std::vector<std::byte>(bytes, bytes + size) : std::vector<std::byte>();
}

bool HostSide::loadState(std::span<const std::byte> state) {
  constexpr std::size_t kWord = 4;
  if (state.empty() || state.size() > kMostStateBytes || state.size() % kWord != 0) return false;
  // The first word counts all of them: what is cut may still make sense otherwise.
  std::uint32_t words = 0;
  std::memcpy(&words, state.data(), kWord);
  if (words != state.size() / kWord) return false;
  if (!effect->loadState(state.data(), words)) return false;
  effect->takeChanges();  // the host asks for all values behind a state
  return true;
}

// ---- parameters

float HostSide::plainValue(int tag) const ZUM_REALTIME {
  const ParameterRow* const row = findRow(tag);
  return row != nullptr ? plainOfRaw(*row, loadShared(effect->value(tag).raw)) : 0.0F;
}

void HostSide::setPlain(int tag, float plain) ZUM_REALTIME {
  const ParameterRow* const row = findRow(tag);
  if (row != nullptr && plain == plain) effect->setFromHost(tag, rawOfPlain(*row, plain));
}

// ---- the block

const float* const* HostSide::heardSideChain(const float* const* channels, std::int32_t frames)
    ZUM_REALTIME {
  hasSideChain = channels != nullptr &&
                 (hasSideChain || !isSilent(channels[0], frames) || !isSilent(channels[1], frames));
  return hasSideChain ? channels : nullptr;
}

HostSide::Block::Block(HostSide& of, const Buffers& all, const Song& song) ZUM_REALTIME
    : host(of),
      buffers(all) {
  host.now = song;
}

void HostSide::Block::setPlain(std::int32_t frame, int tag, float plain) ZUM_REALTIME {
  playTo(frame);
  host.setPlain(tag, plain);
}

void HostSide::Block::midi(std::int32_t frame, const std::uint8_t* threeBytes) ZUM_REALTIME {
  playTo(frame);
  host.receiveMidi(0, threeBytes);
}

void HostSide::Block::moveSong(std::int32_t frame, const Song& song) ZUM_REALTIME {
  playTo(frame);
  host.now = song;
}

void HostSide::Block::playTo(std::int32_t frame) ZUM_REALTIME {
  const std::int32_t frames = std::min(frame, buffers.frames) - done;
  if (frames <= 0) return;
  const auto from = [this](auto* const* channels) ZUM_REALTIME {
    return std::array{channels[0] + done, channels[1] + done};
  };
  const auto inputs = from(buffers.inputs);
  const auto outputs = from(buffers.outputs);
  if (buffers.sideChain == nullptr) {
    host.effect->process(inputs.data(), nullptr, outputs.data(), frames);
  } else {
    host.effect->process(inputs.data(), from(buffers.sideChain).data(), outputs.data(), frames);
  }
  done += frames;
  if (host.now.isPlaying) host.now.beats += frames * host.now.tempo / (60.0 * host.sampleRate);
}

// ---- what the effect asks

// It asks before it has a record, and before the record knows this host.
std::intptr_t HostSide::answer(AEffect* record, std::int32_t opcode, std::int32_t index,
                               std::intptr_t value, void* ptr, float opt) {
  auto* const host =
      record == nullptr ? nullptr : std::bit_cast<HostSide*>(record->reservedForHost[0]);
  switch (opcode) {
    case audioMasterVersion: return kHostVersion;
    case audioMasterGetVendorString: return giveText(ptr, "ZUM");
    case audioMasterGetProductString:
      return giveText(ptr, host != nullptr ? host->productName : "");
    case audioMasterGetVendorVersion: return 1;
    case audioMasterBeginEdit:
    case audioMasterAutomate:
    case audioMasterEndEdit:
    case audioMasterUpdateDisplay:
      return host != nullptr && host->listener != nullptr ? host->tell(opcode, index, opt) : 0;
    case audioMasterSizeWindow:
      return host != nullptr ? host->askForSize({index, static_cast<int>(value)}) : 0;
    case audioMasterCanDo:
      return host != nullptr && std::strcmp(static_cast<const char*>(ptr), "sizeWindow") == 0 &&
                     !host->mayAskForSize()
                 ? -1
                 : 0;
    default: return host != nullptr ? host->answerFor(opcode) : 0;
  }
}

std::intptr_t HostSide::answerFor(std::int32_t opcode) ZUM_REALTIME {
  switch (opcode) {
    case audioMasterGetTime: return reinterpret_cast<std::intptr_t>(fillTime());
    case audioMasterGetSampleRate: return static_cast<std::intptr_t>(sampleRate);
    case audioMasterGetBlockSize: return blockSize;
    case audioMasterGetCurrentProcessLevel:
      return kVstProcessLevelRealtime;  // at the offline level the effect leaves the buffers alone
    default: return 0;
  }
}

std::intptr_t HostSide::tell(std::int32_t opcode, std::int32_t index, float raw) {
  if (isWindowThread) {  // a host may wait for it, in a call on its own thread
    if (opcode == audioMasterAutomate) effect->setParameter(index, raw);
    return 1;
  }
  const int position = facePosition(index);
  const std::uint64_t held = position >= 0 ? std::uint64_t{1} << position : 0;
  switch (opcode) {
    case audioMasterBeginEdit:
      toldHeld |= held;
      listener->gestureBegan(index);
      break;
    case audioMasterAutomate: listener->gestureMoved(index, raw); break;
    case audioMasterEndEdit:
      // The host that closes a window ends what a hand began there on our own thread, untold.
      if ((toldHeld & held) == 0) break;
      toldHeld &= ~held;
      listener->gestureEnded(index);
      break;
    default: listener->presetChanged(); break;
  }
  return 1;
}

// On a thread of our own nobody is called.
bool HostSide::mayAskForSize() const { return windowFrame != nullptr && !isWindowThread; }

std::intptr_t HostSide::askForSize(const Size& wanted) {
  return mayAskForSize() && windowFrame->resize(wanted) ? 1 : 0;
}

VstTimeInfo* HostSide::fillTime() ZUM_REALTIME {
  time.sampleRate = sampleRate;
  time.tempo = now.tempo;
  time.ppqPos = now.beats;
  time.timeSigNumerator = time.timeSigDenominator = 4;
  time.flags = kVstTempoValid | kVstTimeSigValid;
  if (now.isPlaying) time.flags |= kVstTransportPlaying | kVstPpqPosValid;
  return &time;
}

// ---- the window

HostSide::Size HostSide::windowSize() {
  ERect* rect = nullptr;
  if (editor() == nullptr || !editor()->getRect(&rect) || rect == nullptr) return {0, 0};
  return {rect->right - rect->left, rect->bottom - rect->top};
}

HostSide::Size HostSide::fittingSize(const Size& offered) {
  return editor() != nullptr ? editor()->fitting(offered) : Size{};
}

bool HostSide::setWindowScale(double scale) {
  return editor() != nullptr && editor()->setHostScale(scale);
}

void HostSide::limitWindow(const Size& most) {
  if (editor() != nullptr) editor()->limitFirstSize(most);
}

void HostSide::resizeWindow(const Size& given) {
  if (editor() != nullptr) editor()->takeSize(given);
}

bool HostSide::openWindow(std::uintptr_t parent, WindowFrame* around) {
  windowFrame = around;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): editors take the system's number as a pointer
  if (editor() != nullptr && editor()->open(reinterpret_cast<void*>(parent))) return true;
  windowFrame = nullptr;
  return false;
}

void HostSide::closeWindow() {
  windowThread = {};
  if (editor() != nullptr) editor()->close();
  windowFrame = nullptr;
}

bool HostSide::isWindowOpen() { return editor() != nullptr && editor()->isOpen(); }

void HostSide::idleWindow() {
  if (editor() != nullptr) editor()->idle();
}

void HostSide::idleByOwnThread() {
  if (windowThread.joinable()) return;
  windowThread = std::jthread([this](const std::stop_token& end) {
    isWindowThread = true;
    while (!end.stop_requested()) {
      std::this_thread::sleep_for(std::chrono::milliseconds(33));
      // who closes may hold the turn and wait for this thread
      const std::unique_lock turn(windowTurn(), std::try_to_lock);
      if (!turn.owns_lock() || end.stop_requested()) continue;
      try {
        idleWindow();
      } catch (const std::exception&) {  // a tick without memory is not the last one
      }
    }
  });
}

}  // namespace zum
