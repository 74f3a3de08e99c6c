// [main] The text that a user copies in one program and pastes in another.
#pragma once

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace zum {

class Clipboard {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{1} << 20U;
  /// Nothing where there is no text, where it is longer, and where its owner does not answer.
  using Answer = std::function<void(const std::optional<std::string>& text)>;

  Clipboard() = default;
  Clipboard(const Clipboard&) = delete;
  Clipboard& operator=(const Clipboard&) = delete;
  virtual ~Clipboard() = default;

  /// UTF-8. Other programs get it as long as this object lives and is polled. False for what is too
  /// long, and where there is no clipboard.
  virtual bool give(std::string text) = 0;
  /// The answer comes from within poll(). A question ahead of it is answered with nothing there,
  /// whoever asked it.
  virtual void ask(const void* owner, Answer answer) = 0;
  /// Who asked goes: nothing of his is answered.
  virtual void cancel(const void* owner) = 0;
  /// Some thirty times a second.
  virtual void poll() = 0;

 protected:
  struct Question {
    const void* owner = nullptr;
    Answer answer;  // none once it is answered or taken back
    void endFor(const void* who) {
      if (owner == who) answer = {};
    }
  };
};

/// The system's. Never null; without a window system it knows no text but its own.
std::unique_ptr<Clipboard> openClipboard();

/// Keeps the text to itself: for tests, and where there is no window system.
class OwnClipboard final : public Clipboard {
 public:
  bool give(std::string given) override {
    if (given.size() > kMostBytes) return false;
    text = std::move(given);
    return true;
  }
  void ask(const void* owner, Answer answer) override { asked = {owner, std::move(answer)}; }
  void cancel(const void* owner) override { asked.endFor(owner); }
  void poll() override {
    const Answer answer = std::exchange(asked.answer, {});
    if (answer) answer(text);
  }

 private:
  std::optional<std::string> text;
  Question asked;
};

}  // namespace zum
