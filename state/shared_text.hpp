// Texts that one thread replaces while others read them: names and paths of presets.
#pragma once

#include <algorithm>
#include <array>
#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "engine/realtime.hpp"

namespace zum {

/// At most `kRoom` - 1 bytes; what is longer is cut. A sequence lock (L. Lamport, "Concurrent
/// reading and writing", CACM 20, 1977): the writer never waits; a reader tries again while a
/// writer is at work.
template <std::size_t kRoom>
class SharedText {
 public:
  SharedText() = default;
  explicit SharedText(std::string_view text) { set(text); }
  SharedText(const SharedText&) = delete;
  SharedText& operator=(const SharedText&) = delete;

  /// [any] One writer at a time; two at once leave a mixture.
  void set(std::string_view text) ZUM_REALTIME {
    const std::size_t length = std::min(text.size(), kRoom - 1);
    sequence.fetch_add(1, std::memory_order_acq_rel);
    for (std::size_t at = 0; at <= length; at += kWordBytes) {
      std::uint32_t word = 0;
      if (at < length) std::memcpy(&word, text.data() + at, std::min(kWordBytes, length - at));
      words[at / kWordBytes].store(word, std::memory_order_release);
    }
    sequence.fetch_add(1, std::memory_order_release);
  }

  /// [any] A copy with its terminator, cut to `room` bytes. Returns its length.
  std::size_t copyTo(char* to, std::size_t room) const ZUM_REALTIME {
    constexpr int kTries = 1000;
    std::size_t length = 0;
    for (int i = 0; i < kTries; ++i) {
      const std::uint32_t before = sequence.load(std::memory_order_acquire);
      length = read(to, room);
      if (before % 2 == 0 && before == sequence.load(std::memory_order_acquire)) break;
    }
    return length;
  }

  /// [main]
  std::string get() const {
    std::string text(kRoom, '\0');
    text.resize(copyTo(text.data(), kRoom));
    return text;
  }

 private:
  static constexpr std::size_t kWordBytes = sizeof(std::uint32_t);
  static_assert(kRoom % kWordBytes == 0);

  std::size_t read(char* to, std::size_t room) const ZUM_REALTIME {
    std::size_t length = 0;
    for (const std::atomic<std::uint32_t>& shared : words) {
      const std::uint32_t word = shared.load(std::memory_order_acquire);
      std::array<char, kWordBytes> bytes{};
      std::memcpy(bytes.data(), &word, kWordBytes);
      for (const char byte : bytes) {
        if (byte == '\0' || length + 1 >= room) {
          to[length] = '\0';
          return length;
        }
        to[length++] = byte;
      }
    }
    to[length] = '\0';
    return length;
  }

  std::array<std::atomic<std::uint32_t>, kRoom / kWordBytes> words{};
  std::atomic<std::uint32_t> sequence{0};
};

/// A name that is set by the audio thread, too. Either side has a text of its own, so that nobody
/// waits; what was set last counts. It never gets empty: no state without a name can be read.
class SharedName {
 public:
  static constexpr std::size_t kRoom = 1024;

  explicit SharedName(std::string_view text) { set(text); }

  /// [main] One at a time.
  void set(std::string_view text) ZUM_REALTIME { setIn(kElsewhere, text); }
  /// [audio]
  void setInBlock(std::string_view text) ZUM_REALTIME { setIn(kBlock, text); }
  /// [any] As SharedText::copyTo.
  std::size_t copyTo(char* to, std::size_t room) const ZUM_REALTIME {
    return texts[latest.load(std::memory_order_acquire)].copyTo(to, room);
  }
  std::string get() const { return texts[latest.load(std::memory_order_acquire)].get(); }

 private:
  enum Side : std::uint8_t { kElsewhere, kBlock };

  void setIn(Side side, std::string_view text) ZUM_REALTIME {
    if (text.empty() || text.front() == '\0') return;
    texts[side].set(text);
    latest.store(side, std::memory_order_release);
  }

  std::array<SharedText<kRoom>, 2> texts;
  std::atomic<Side> latest{kElsewhere};
};

}  // namespace zum
