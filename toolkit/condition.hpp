// What a button's light may depend on besides a variable.
#pragma once

#include <atomic>
#include <cstdint>

namespace zum {

/// [main]
class KvCondition {
 public:
  KvCondition() = default;
  KvCondition(const KvCondition&) = delete;
  KvCondition& operator=(const KvCondition&) = delete;
  virtual ~KvCondition() = default;
  virtual bool isTrue() const = 0;
};

/// True while an integer, which another thread may write and which outlives this, has one value.
class KvIntEqualCondition final : public KvCondition {
 public:
  KvIntEqualCondition(const std::atomic<std::int32_t>& variable, std::int32_t wantedValue)
      : integer(variable), wanted(wantedValue) {}
  bool isTrue() const override { return integer.load(std::memory_order_relaxed) == wanted; }

 private:
  const std::atomic<std::int32_t>& integer;
  std::int32_t wanted;
};

}  // namespace zum
