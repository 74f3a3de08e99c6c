// The three parameters that choose pages of the window. Applied by setParameter.
#pragma once

#include "core/tags.hpp"
#include "state/group_mask.hpp"

namespace zum {

/// A group that a selector shows at one of its positions.
struct SelectorGroup {
  int group;
  int position;
  int resend;  // tag whose stored value is set again when the group appears or goes, -1 for none
};

struct GroupSelector {
  int tag;
  int parent;  // group that must be shown for the selector's own ones to show
  int count;
  SelectorGroup groups[3];  // ascending
};

inline constexpr GroupSelector kGroupSelectors[] = {
    {tag::bank, 0, 2, {{1, 0, tag::multiType}, {2, 1, tag::vowelType}}},
    {tag::modChoice, 0, 3, {{3, 0, -1}, {4, 1, tag::lfoStyle}, {5, 2, -1}}},
    {tag::lfoStyle, 4, 2, {{6, 0, -1}, {7, 1, -1}}},
};

/// Brings the mask in line with `position`; calls `resend(tag)` behind each change that asks so.
template <class Resend>
void applySelector(int tag, int position, GroupMask& mask, const Resend& resend) ZUM_REALTIME {
  for (const GroupSelector& selector : kGroupSelectors) {
    if (selector.tag != tag) continue;
    for (int i = 0; i < selector.count; ++i) {
      const SelectorGroup& g = selector.groups[i];
      const bool wanted = mask.test(selector.parent) && g.position == position;
      if (mask.test(g.group) == wanted) continue;
      mask.set(g.group, wanted);
      if (g.resend >= 0) resend(g.resend);
    }
  }
}

}  // namespace zum
