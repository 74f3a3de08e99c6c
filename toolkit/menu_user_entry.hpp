// What a row can carry for those who made it, and who hears of a choice besides the listener, which
// nobody does in this effect's window.
#pragma once

namespace zum {

class KvOptionMenuUserEntry {
 public:
  KvOptionMenuUserEntry() = default;
  KvOptionMenuUserEntry(const KvOptionMenuUserEntry&) = delete;
  KvOptionMenuUserEntry& operator=(const KvOptionMenuUserEntry&) = delete;
  virtual ~KvOptionMenuUserEntry() = default;
};

class KvOptionMenuUserEntryLong final : public KvOptionMenuUserEntry {
 public:
  explicit KvOptionMenuUserEntryLong(long number) : value(number) {}
  long value;
};

/// Hears of a menu's choice besides its listener. [main]
class KvOptionMenuExtraCallBack {
 public:
  KvOptionMenuExtraCallBack() = default;
  KvOptionMenuExtraCallBack(const KvOptionMenuExtraCallBack&) = delete;
  KvOptionMenuExtraCallBack& operator=(const KvOptionMenuExtraCallBack&) = delete;
  virtual ~KvOptionMenuExtraCallBack() = default;
  virtual void menuChose(int entry) = 0;
};

}  // namespace zum
