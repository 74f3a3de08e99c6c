// [main] The text that a user copies in one program and pastes in another.
#pragma once

#include <cstddef>
#include <deque>
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
  /// The answer comes from within poll(). Questions ahead of it are answered with nothing there,
  /// whoever asked them.
  virtual void ask(const void* owner, Answer answer) = 0;
  /// Who asked goes: nothing of his is answered.
  virtual void cancel(const void* owner) = 0;
  /// Some thirty times a second.
  virtual void poll() = 0;

 protected:
  /// Those that wait. Whoever hears an answer may ask again, or take questions back.
  class Questions {
   public:
    void add(const void* owner, Answer answer) { all.push_back({owner, std::move(answer)}); }
    void endFor(const void* owner) {
      for (Question& each : all) {
        if (each.owner == owner) each.answer = {};
      }
    }
    /// All but the latest, as they stand now.
    void answerEarlier() {
      for (std::size_t left = all.size(); left > 1; --left) answerFirst(std::nullopt);
    }
    bool hasEarlier() const { return all.size() > 1; }
    void answerFirst(const std::optional<std::string>& text) {
      if (all.empty()) return;
      const Answer answer = std::move(all.front().answer);
      all.pop_front();
      if (answer) answer(text);
    }

   private:
    struct Question {
      const void* owner;
      Answer answer;  // none once it is taken back
    };
    std::deque<Question> all;  // the latest one last
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
  void ask(const void* owner, Answer answer) override { asked.add(owner, std::move(answer)); }
  void cancel(const void* owner) override { asked.endFor(owner); }
  void poll() override {
    asked.answerEarlier();
    if (!asked.hasEarlier()) asked.answerFirst(std::optional(text));
  }

 private:
  std::optional<std::string> text;
  Questions asked;
};

}  // namespace zum
