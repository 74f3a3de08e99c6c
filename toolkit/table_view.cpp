#include "toolkit/table_view.hpp"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>

#include "engine/shared_value.hpp"
#include "toolkit/bound_value.hpp"
#include "toolkit/control_frame.hpp"
#include "toolkit/panel.hpp"

namespace zum {
namespace {

constexpr float kSlideStep = -0.002F;  // of the value, for each pixel downwards
constexpr float kWheelStep = 0.05F;
constexpr float kFine = 0.1F;
constexpr int kGap = 2;  // pixels between bars

}  // namespace

void KvTableView::setTable(KvTableXY* stepTable) {
  table = stepTable;
  scratchTable.assign(table != nullptr ? static_cast<std::size_t>(table->size()) : 0, 0.0F);
  setDirty(true);
}

float KvTableView::xToStep(int x) const {
  const auto steps = static_cast<float>(table != nullptr ? table->size() : 0);
  return static_cast<float>(x - bars().left) * steps /
         static_cast<float>(std::max(bars().width(), 1));
}

float KvTableView::yToValue(int y) const {
  return static_cast<float>(bars().bottom - y) / static_cast<float>(std::max(bars().height(), 1));
}

int KvTableView::stepAt(int x) const {
  const float step = xToStep(x);
  return step > 0.0F ? std::min(static_cast<int>(step), table->size() - 1) : 0;
}

bool KvTableView::takesMouse(CPoint where) const {
  return canEdit() && isShown() && getViewSize().contains(where);
}

void KvTableView::changed() {
  setDirty(true);
  if (has(kTells)) report();
}

void KvTableView::write(int step, float value) {
  editColumn = step;
  editValue = inside(value);
  table->setValue(step, editValue);
}

float KvTableView::inside(float value) const {
  const float low = loadShared(table->minValue);
  const float high = loadShared(table->maxValue);
  return low <= high ? std::clamp(value, low, high) : std::clamp(value, 0.0F, 1.0F);
}

// Moves may come several steps apart: those between are written, too.
void KvTableView::writeBetween(int fromStep, float fromValue, int toStep, float toValue) {
  const int count = std::abs(toStep - fromStep);
  const int direction = toStep > fromStep ? 1 : -1;
  for (int i = 1; i <= count; ++i) {
    const float part = static_cast<float>(i) / static_cast<float>(count);
    write(fromStep + direction * i, fromValue + part * (toValue - fromValue));
  }
  if (count == 0) write(toStep, toValue);
}

void KvTableView::keepSteps() {
  const int count = table->size();
  scratchTable.resize(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    scratchTable[static_cast<std::size_t>(i)] = table->cell(i, 0);
  }
}

// A straight line from the press. Steps that a longer line had covered get their old values back.
void KvTableView::drawTo(int step, float value) {
  const auto [first, last] = std::minmax(pressColumn, step);
  const auto [from, to] = std::minmax(pressColumn, editColumn);
  const int kept = std::min(table->size(), static_cast<std::int32_t>(scratchTable.size()));
  for (int i = from; i <= to && i < kept; ++i) {
    if (i < first || i > last) table->setValue(i, scratchTable[static_cast<std::size_t>(i)]);
  }
  if (step != pressColumn) write(pressColumn, pressValue);
  writeBetween(pressColumn, pressValue, step, value);
}

MouseResult KvTableView::onMouseDown(CPoint& where, int buttons) {
  if (!takesMouse(where)) return MouseResult::notHandled;
  const int step = stepAt(where.x);
  if (opensPanel(menu, where, buttons, step)) return MouseResult::done;
  lastY = where.y;
  if (has(kOnOff)) {
    beginEdit();
    write(step, table->cell(step, 0) != 0.0F ? 0.0F : 1.0F);
    changed();
    endEdit();
    return MouseResult::done;
  }
  showCompanions();
  drawLine = (buttons & buttons::kShift) != 0;
  fineEdit = (buttons & buttons::kControl) != 0;
  beginEdit();
  if ((buttons & buttons::kAlt) != 0) {
    stroke = Stroke::slides;
    dragOffset = 0.0F;
    keepSteps();
  } else {
    stroke = Stroke::draws;
    if (drawLine) keepSteps();
    write(step, yToValue(where.y));
    pressColumn = step;
    pressValue = editValue;
    changed();
  }
  return MouseResult::handled;
}

MouseResult KvTableView::onMouseMoved(CPoint& where, int buttons) {
  const bool isHeld = (buttons & (buttons::kLeft | buttons::kRight)) != 0;
  if (!isHeld || stroke == Stroke::none || table == nullptr || table->size() < 1) {
    return MouseResult::notHandled;
  }
  const int step = stepAt(where.x);
  const int down = where.y - lastY;
  lastY = where.y;
  if (stroke == Stroke::slides) {
    dragOffset += static_cast<float>(down) * kSlideStep;
    slide();
  } else {
    const float moved = static_cast<float>(-down) * kFine / static_cast<float>(bars().height());
    const float value = fineEdit ? editValue + moved : yToValue(where.y);
    if (drawLine && pressColumn < table->size()) {
      drawTo(step, inside(value));
    } else {
      writeBetween(editColumn, editValue, step, inside(value));
    }
  }
  changed();
  return MouseResult::handled;
}

// All steps move by the same offset from where they were at the press, each held inside the ends;
// so a pattern that was pushed against an end comes back in shape.
void KvTableView::slide() {
  const int count = std::min(table->size(), static_cast<std::int32_t>(scratchTable.size()));
  for (int i = 0; i < count; ++i) {
    const float value = scratchTable[static_cast<std::size_t>(i)] + dragOffset;
    table->setValue(i, std::clamp(value, 0.0F, 1.0F));
  }
}

MouseResult KvTableView::onMouseUp(CPoint& where, int /*buttons*/) {
  if (stroke == Stroke::none) return MouseResult::notHandled;
  stroke = Stroke::none;
  endEdit();
  if (!getViewSize().contains(where)) startExit();
  setDirty(true);
  return MouseResult::handled;
}

bool KvTableView::onWheel(CPoint& where, float distance, int /*buttons*/) {
  if (!takesMouse(where) || stroke != Stroke::none) return false;
  const int step = stepAt(where.x);
  const float value = table->cell(step, 0);
  beginEdit();
  write(step, has(kInteger) ? value - static_cast<float>(static_cast<int>(distance))
                            : value - distance * kWheelStep);
  changed();
  endEdit();
  return true;
}

int KvTableView::chosenStep() const {
  return table != nullptr ? std::clamp(keyColumn, 0, std::max(table->size() - 1, 0)) : 0;
}

std::string KvTableView::stepText() const {
  if (table == nullptr || table->size() < 1) return "";
  const int step = chosenStep();
  return std::to_string(step + 1) + ": " + numberText(100.0F * table->cell(step, 0), 0, 0) + " %";
}

void KvTableView::moveStep(float value) {
  getFrame().keyFocus().beginEdit(*this);
  write(chosenStep(), value);
  changed();
}

bool KvTableView::onFocusKey(const WindowKey& key, bool /*repeats*/) {
  if (!canEdit() || stroke != Stroke::none) return false;
  constexpr float kPage = 0.1F;
  const bool fine = (key.modifier & keys::kShiftBit) != 0;
  const float step = has(kInteger) ? 1.0F : fine ? kFine * kWheelStep : kWheelStep;
  const float value = table->cell(chosenStep(), 0);
  const auto go = [this](int to) {
    if (to < 0 || to >= table->size()) return false;
    getFrame().keyFocus().endEdit();
    keyColumn = to;
    setDirty(true);
    return true;
  };
  switch (key.virt) {
    case keys::kLeft: return go(chosenStep() - 1);
    case keys::kRight: return go(chosenStep() + 1);
    case keys::kUp: moveStep(value + step); return true;
    case keys::kDown: moveStep(value - step); return true;
    case keys::kPageUp: moveStep(value + std::max(step, kPage)); return true;
    case keys::kPageDown: moveStep(value - std::max(step, kPage)); return true;
    case keys::kHome: moveStep(0.0F); return true;
    case keys::kEnd: moveStep(1.0F); return true;
    default: return false;
  }
}

void KvTableView::idleStep(int /*flag*/) {
  if (!isShown()) return;
  companionTick();
  if (table == nullptr) return;
  if (has(kLayout) != geometryFlag) {
    geometryFlag = has(kLayout);
    setDirty(true);
  }
  if (!has(kPlays)) return;
  const float position = table->lastColumn();
  if (position == playPosition) return;
  playPosition = position;
  changed();
}

int KvTableView::edgeOf(int step) const {
  const CRect area = bars();
  const int count = std::max(table->size(), 1);  // another thread may just have emptied it
  return area.left + static_cast<int>(std::int64_t{area.width()} * step / count);
}

/// A file may hold more steps than there are pixels.
int KvTableView::stepsApart() const {
  return std::max((table->size() + bars().width() - 1) / std::max(bars().width(), 1), 1);
}

CRect KvTableView::barRect(int step) const {
  const CRect area = bars();
  const bool isNarrow = edgeOf(step + 1) - edgeOf(step) <= kGap;
  const int gap = has(kNoGap) || isNarrow ? 0 : kGap;
  const float value = std::clamp(table->cell(step, 0), 0.0F, 1.0F);
  const int height = static_cast<int>(std::lround(value * static_cast<float>(area.height())));
  return {edgeOf(step) + gap / 2, area.bottom - height, edgeOf(step + 1) - gap + gap / 2,
          area.bottom};
}

void KvTableView::draw(CDrawContext& context) {
  if (table == nullptr || table->size() < 1) return;
  context.setFillColor(backgroundColor);
  context.drawRect(getViewSize(), DrawStyle::filled);
  drawGrid(context);
  const CRect area = bars();
  const int playing = static_cast<int>(playPosition);
  for (int step = 0; step < table->size(); step += stepsApart()) {
    const CRect bar = barRect(step);
    context.setFillColor(has(kPlays) && step == playing ? barShade : barColor);
    context.drawRect(bar, DrawStyle::filled);
    context.setFillColor(barHighlight);
    context.drawRect({bar.left, std::max(bar.top - 1, area.top), bar.right, bar.top + 1},
                     DrawStyle::filled);
  }
  if (has(kPlays) && playing >= 0 && playing < table->size()) drawCursor(context, playing);
  if (hasFocus()) {
    const int step = chosenStep();
    context.setFrameColor(barHighlight);
    context.drawRect({edgeOf(step), area.top, edgeOf(step + 1), area.bottom}, DrawStyle::stroked);
  }
  KvControl::draw(context);
}

void KvTableView::drawGrid(CDrawContext& context) const {
  const CRect area = bars();
  context.setFrameColor(gridColor);
  if (has(kCentreLine)) {
    const int middle = (area.top + area.bottom) / 2;
    context.drawLine({area.left, middle}, {area.right - 1, middle});
    context.drawLine({area.left, area.bottom - 1}, {area.right - 1, area.bottom - 1});
  }
  for (int step = stepsApart(); step < table->size(); step += stepsApart()) {
    context.drawLine({edgeOf(step), area.top}, {edgeOf(step), area.bottom - 1});
  }
}

void KvTableView::drawCursor(CDrawContext& context, int playing) const {
  const CRect area = bars();
  const CRect bar = barRect(playing);
  context.setFillColor(cursorColor);
  context.drawRect({bar.left, area.bottom - 3, bar.right, area.bottom}, DrawStyle::filled);
  std::array<char, 32> label{};
  (void)std::snprintf(label.data(), label.size(), "%d.%d", table->currentPage() + 1, playing + 1);
  context.setFont(font, 10);
  context.setFontColor(barHighlight);
  context.drawString(label.data(), {area.left + 2, area.top, area.right, area.top + 12}, false,
                     TextAlign::left);
}

}  // namespace zum
