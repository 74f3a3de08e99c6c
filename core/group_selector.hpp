// The three parameters that choose pages of the window. Applied by setParameter.
#pragma once

#include <cstdint>

#include "core/tags.hpp"
#include "state/group_mask.hpp"

namespace zum {

/// What the window shows and hides together.
namespace groups {
enum Group : std::uint8_t {
  always = 0,
  filterPage,
  vowelPage,
  followerPage,
  lfoPage,
  sequencerPage,
  freeLfo,
  syncedLfo,
};
}  // namespace groups

/// A group that a selector shows at one of its positions.
struct SelectorGroup {
  groups::Group group;
  int position;
  int resend;  // tag whose stored value is set again when the group appears or goes, -1 for none
};

struct GroupSelector {
  int tag;
  groups::Group parent;  // must be shown for the selector's own ones to show
  int count;
  SelectorGroup groups[3];  // ascending
};

// clang-format off
inline constexpr GroupSelector kGroupSelectors[] = {
    {tag::bank, groups::always, 2, {{groups::filterPage, 0, tag::multiType},
                                    {groups::vowelPage,  1, tag::vowelType}}},
    {tag::modChoice, groups::always, 3, {{groups::followerPage,  0, -1},
                                         {groups::lfoPage,       1, tag::lfoStyle},
                                         {groups::sequencerPage, 2, -1}}},
    {tag::lfoStyle, groups::lfoPage, 2, {{groups::freeLfo,   0, -1},
                                         {groups::syncedLfo, 1, -1}}},
};
// clang-format on

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
