// What a real-time thread may not do is counted while one of these lives, if realtime_check
// (tests/hosts) is preloaded; otherwise it does nothing.
#pragma once

extern "C" {
[[gnu::weak]] void realtimeEnter();
[[gnu::weak]] void realtimeLeave();
}

namespace zum::test {

struct RealtimeWatch {
  RealtimeWatch() {
    if (realtimeEnter != nullptr) realtimeEnter();
  }
  ~RealtimeWatch() {
    if (realtimeLeave != nullptr) realtimeLeave();
  }
  RealtimeWatch(const RealtimeWatch&) = delete;
  RealtimeWatch& operator=(const RealtimeWatch&) = delete;
};

}  // namespace zum::test
