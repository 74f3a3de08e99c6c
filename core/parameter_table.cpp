#include "core/parameter_table.hpp"

#include <algorithm>
#include <initializer_list>
#include <iterator>
#include <string_view>

#include "core/parameter_rows.hpp"

namespace zum {
namespace {

using rows::kGlobalTable;
using rows::kPanelTable;
using rows::kPresetTable;
using rows::PanelRow;
using rows::Row;

constexpr std::size_t kPanels = std::size(kPanelTable);
static_assert(kPresetRows + 4 * kPanels + std::size(kGlobalTable) == kParameterRows);

constexpr auto kAmounts = static_cast<std::size_t>(
    std::ranges::count_if(kPresetTable, [](const Row& row) { return row.knob >= 0; }));

/// Every amount, panel by panel: so the global reset centres them.
constexpr std::array<std::int16_t, kAmounts> kAllAmounts = [] {
  std::array<std::int16_t, kAmounts> tags{};
  auto* next = tags.data();
  for (const PanelRow& panel : kPanelTable) {
    for (const Row& row : kPresetTable) {
      if (row.knob == panel.knob) *next++ = static_cast<std::int16_t>(row.tag);
    }
  }
  return tags;
}();

constexpr std::array<KnobPanel, kPanels> kKnobPanels = [] {
  std::array<KnobPanel, kPanels> panels{};
  std::size_t first = 0;
  for (std::size_t i = 0; i < kPanels; ++i) {
    const PanelRow& row = kPanelTable[i];
    const auto count =
        static_cast<std::size_t>(std::ranges::count(kPresetTable, row.knob, &Row::knob));
    panels[i] = {row.knob, row.buttons, row.learns >= 0 ? row.learns : row.knob,
                 std::span(kAllAmounts).subspan(first, count)};
    first += count;
  }
  return panels;
}();

constexpr const KnobPanel* panelOf(int knob) {
  const auto* const found = std::ranges::find(kKnobPanels, knob, &KnobPanel::knob);
  return found != kKnobPanels.end() ? found : nullptr;
}

constexpr const Row& presetRowOf(int tag) {
  return *std::ranges::find(kPresetTable, tag, &Row::tag);
}

using Title = decltype(ParameterRow::title);

constexpr Title joined(std::initializer_list<std::string_view> words) {
  Title title{};
  std::size_t end = 0;
  for (const std::string_view word : words) {
    for (const char letter : word) title[end++] = letter;
  }
  title[end] = '\0';  // does not compile where a title has no room
  return title;
}

constexpr float homeOf(const Row& row) {
  if (isAmount(row.kind.rule)) return 0.5F;
  const auto* const found = std::ranges::find(rows::kHomes, row.tag, &rows::Home::tag);
  return found != std::end(rows::kHomes) ? found->value : 0.0F;
}

constexpr ParameterRow plainRow(const Row& row, const char* path, const Title& title) {
  ParameterRow made{row.tag, row.id,      row.name,    path,
                    title,   row.initial, homeOf(row), row.kind.rule};
  made.positions = row.kind.positions;
  made.flags = row.kind.flags;
  made.perCount = row.kind.perCount;
  made.unit = row.kind.unit;
  made.names = row.kind.names;
  made.value = row.value;
  return made;
}

constexpr ParameterRow presetRow(const Row& row) {
  if (row.knob < 0) {
    ParameterRow setting = plainRow(row, row.module.path, joined({row.title}));
    setting.panel = panelOf(row.tag);
    return setting;
  }
  const Row& knob = presetRowOf(row.knob);
  return plainRow(row, knob.module.path, joined({knob.title, row.module.by}));
}

constexpr ParameterRow panelButton(const PanelRow& panel, int tag, const char* name,
                                   const rows::Kind& kind, const char* does) {
  const Row& knob = presetRowOf(panel.knob);
  const Row button{tag, -1, 0.0F, kind, nullptr, name, knob.module};
  ParameterRow row = plainRow(button, knob.module.path, joined({knob.title, does}));
  row.panel = panelOf(panel.knob);
  return row;
}

constexpr std::array<ParameterRow, kParameterRows> kRows = [] {
  std::array<ParameterRow, kParameterRows> all{};
  auto* next = all.data();
  for (const Row& row : kPresetTable) *next++ = presetRow(row);
  for (const PanelRow& panel : kPanelTable) {
    const tag::PanelButtons& tags = panel.buttons;
    *next = panelButton(panel, tags.reset, panel.resetName, rows::resets, ": reset");
    next->resets = next->panel->amounts;
    ++next;
    *next++ = panelButton(panel, tags.close, panel.closeName, rows::inPanel, ": close");
    *next = panelButton(panel, tags.learn, panel.learnName, rows::inPanel, ": learn");
    next++->initial = panel.learnInitial;
    *next++ = panelButton(panel, tags.clear, panel.clearName, rows::inPanel, ": clear");
  }
  for (const Row& row : kGlobalTable) {
    *next = plainRow(row, row.module.path, joined({row.title}));
    if (row.kind.rule == Rule::resetButton) next->resets = kAllAmounts;
    ++next;
  }
  return all;
}();

constexpr std::array<std::int16_t, kLastTag + 1> kRowOfTag = [] {
  std::array<std::int16_t, kLastTag + 1> positions{};
  positions.fill(-1);
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    positions[static_cast<std::size_t>(kRows[i].tag)] = static_cast<std::int16_t>(i);
  }
  return positions;
}();

constexpr std::array<std::int16_t, kFaceParameters> kFaceTags = [] {
  std::array<std::int16_t, kFaceParameters> tags{};
  auto* next = tags.data();
  for (int tag = 0; tag < kHostParameters; ++tag) {
    if (kRowOfTag[static_cast<std::size_t>(tag)] >= 0) *next++ = static_cast<std::int16_t>(tag);
  }
  for (const int tag : {tag::bank, tag::multiType, tag::vowelType, tag::lfoStyle, tag::bypass}) {
    *next++ = static_cast<std::int16_t>(tag);
  }
  return tags;
}();

constexpr std::array<std::int8_t, kLastTag + 1> kFacePositions = [] {
  std::array<std::int8_t, kLastTag + 1> positions{};
  positions.fill(-1);
  for (std::size_t i = 0; i < kFaceTags.size(); ++i) {
    positions[static_cast<std::size_t>(kFaceTags[i])] = static_cast<std::int8_t>(i);
  }
  return positions;
}();

constexpr std::array<std::int16_t, kLastId + 1> kRowOfId = [] {
  std::array<std::int16_t, kLastId + 1> positions{};
  positions.fill(-1);
  for (std::size_t i = 0; i < kPresetTable.size(); ++i) {
    positions[static_cast<std::size_t>(kPresetTable[i].id)] = static_cast<std::int16_t>(i);
  }
  return positions;
}();

constexpr bool tagsAndIdsAreUnique() {
  for (std::size_t i = 0; i < kRows.size(); ++i) {
    const auto at = static_cast<std::int16_t>(i);
    if (kRowOfTag[static_cast<std::size_t>(kRows[i].tag)] != at) return false;
    if (kRows[i].id >= 0 && kRowOfId[static_cast<std::size_t>(kRows[i].id)] != at) return false;
  }
  return true;
}
static_assert(tagsAndIdsAreUnique());

}  // namespace

std::span<const ParameterRow> parameterRows() ZUM_REALTIME { return kRows; }

int rowOfTag(int tag) ZUM_REALTIME {
  return tag >= 0 && tag <= kLastTag ? kRowOfTag[static_cast<std::size_t>(tag)] : -1;
}

std::span<const std::int16_t, kFaceParameters> faceTags() ZUM_REALTIME { return kFaceTags; }

int facePosition(int tag) ZUM_REALTIME {
  return tag >= 0 && tag <= kLastTag ? kFacePositions[static_cast<std::size_t>(tag)] : -1;
}

int rowOfId(int id) ZUM_REALTIME {
  return id >= 0 && id <= kLastId ? kRowOfId[static_cast<std::size_t>(id)] : -1;
}

const ParameterRow* findRow(int tag) ZUM_REALTIME {
  const int row = rowOfTag(tag);
  return row >= 0 ? &kRows[static_cast<std::size_t>(row)] : nullptr;
}

}  // namespace zum
