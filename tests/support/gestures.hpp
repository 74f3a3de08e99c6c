// What a host hears of gestures. Asks for no memory.
#pragma once

#include <bitset>

#include "tests/support/test_host.hpp"

namespace zum::test {

class Gestures {
 public:
  explicit Gestures(HostState& host) {
    host.onCall = [this, &host](std::int32_t opcode) {
      const auto tag = static_cast<std::size_t>(host.calls.back()[1]);
      host.calls.clear();
      if (opcode != audioMasterBeginEdit && opcode != audioMasterEndEdit) return;
      const bool begins = opcode == audioMasterBeginEdit;
      if (open.test(tag) == begins) ++wrong;
      open.set(tag, begins);
      if (!begins) ++ended;
    };
  }
  std::bitset<256> open;  // by tag
  int wrong = 0;          // begun twice, or ended without a begin
  int ended = 0;
};

}  // namespace zum::test
