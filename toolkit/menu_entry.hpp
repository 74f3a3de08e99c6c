// A row of a menu and what it can carry.
#pragma once

#include <memory>
#include <string>

#include "toolkit/view/base_object.hpp"

namespace zum {

class KvOptionMenu;

/// Whoever hears of a menu's choice besides its listener. [main]
class KvOptionMenuExtraCallBack {
 public:
  KvOptionMenuExtraCallBack() = default;
  KvOptionMenuExtraCallBack(const KvOptionMenuExtraCallBack&) = delete;
  KvOptionMenuExtraCallBack& operator=(const KvOptionMenuExtraCallBack&) = delete;
  virtual ~KvOptionMenuExtraCallBack() = default;
  virtual void menuChose(int entry) = 0;
};

/// What a row carries for those who made it.
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

struct KvOptionMenuEntryInfo {
  Held<KvOptionMenu> subMenu;  // opens instead of being selected; null for a plain row
  std::unique_ptr<KvOptionMenuUserEntry> userEntry;
  std::string text;
  bool marked = false;
  bool enabled = true;
  bool isHeader = false;  // cannot be selected

  bool isChoice() const { return enabled && !isHeader && !subMenu; }
};

}  // namespace zum
