// [main] The clipboard of an X server, on a connection of its own, so that it is there whatever
// becomes of windows. Conventions: "Inter-Client Communication Conventions Manual", 2.
#pragma once

#include <array>
#include <chrono>

#include "platform/clipboard.hpp"
#include "platform/x11_connection.hpp"

namespace zum {

class X11Clipboard final : public Clipboard {
 public:
  X11Clipboard();
  ~X11Clipboard() override;

  bool isOpen() const { return display != nullptr && !lost; }
  bool give(std::string text) override;
  void ask(const void* owner, Answer answer) override;
  void cancel(const void* owner) override { asked.endFor(owner); }
  void poll() override;

 private:
  using Clock = std::chrono::steady_clock;
  enum Name : std::uint8_t { clipboard, targets, timestamp, utf8, plainUtf8, incremental, kNames };
  enum class State : std::uint8_t { idle, converting, receiving, done };

  void handle(const XEvent& event);
  void answerRequest(const XSelectionRequestEvent& request) const;
  bool hand(const XSelectionRequestEvent& request, Atom property) const;
  void takeFirst(const XSelectionEvent& event);
  void takePiece();
  struct Piece {
    Atom type = 0;
    bool isText = false;
    std::string bytes;
  };
  /// Reads and deletes; that asks the owner for the next piece.
  Piece readProperty() const;
  void end(bool whole);

  bool lost = false;
  Display* display = nullptr;
  Window window = 0;
  std::array<Atom, kNames> atoms{};
  std::string text;  // given
  bool isOwner = false;
  Questions asked;
  State state = State::idle;  // of the latest one
  std::string received;
  bool isWhole = false;
  int question = 0;  // each has a property of its own: an old owner may still write into one
  Atom property = 0;
  Clock::time_point silentUntil;  // then the owner is given up
  Clock::time_point latest;       // however much it says
};

}  // namespace zum
