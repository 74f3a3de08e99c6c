#include "apps/zum/play/strip.hpp"

#include <algorithm>
#include <cmath>
#include <filesystem>

#include "apps/zum/play/strip_views.hpp"
#include "editor/drawn_pictures.hpp"
#include "editor/palette_color.hpp"
#include "platform/ascii_case.hpp"
#include "platform/file_dialogs.hpp"
#include "platform/files.hpp"
#include "platform/message_box.hpp"
#include "resources/strip_pictures.hpp"
#include "resources/strip_places.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "state/settings.hpp"
#include "toolkit/image.hpp"

namespace zum {
namespace {

namespace places = pictures::strip;

enum StripControl {
  kGround,
  kPlay,
  kRecord,
  kTempo,
  kTap,
  kInput,
  kLevelIn,
  kLevelOut,
  kClipIn,
  kClipOut,
  kLoopName,
  kLine,
  kXruns
};

struct StripRow {
  pictures::Rect rect;
  int picture;  // 0 for none
};
// clang-format off
constexpr StripRow kStripRows[] = {
  {places::kStrip,    1100},
  {places::kPlay,     1101},
  {places::kRecord,   1102},
  {places::kTempo,       0},
  {places::kTap,      1103},
  {places::kInput,    1104},
  {places::kLevelIn,  1105},
  {places::kLevelOut, 1105},
  {places::kClipIn,   1106},
  {places::kClipOut,  1106},
  {places::kLoop,        0},
  {places::kDevice,      0},
  {places::kXruns,       0},
};
// clang-format on
static_assert(std::size(kStripRows) == kXruns + 1);

constexpr int kTextSize = 11;  // pixels
constexpr int kTempoSize = 12;
const CColor kFine = colorOf(pictures::kReadoutGreen);
const CColor kAlarm = colorOf(pictures::kRose);
const CColor kIdle = colorOf(pictures::kFaint);

const PictureSource& stripPictures() {
  static const DrawnPictures source(pictures::stripPictureRows(), stripPictureBytes);
  return source;
}

bool isPreset(const std::filesystem::path& path) {
  return lowerCase(path.extension().string()) == ".kvz";
}

float segmentsAt(double decibels) {
  const double above = (decibels - places::kLowestLevel) / places::kSegmentRange;
  return static_cast<float>(std::clamp(std::floor(above) + 1.0, 0.0, double{places::kSegments}));
}

}  // namespace

CPoint Strip::size() { return {places::kStrip.w, places::kStrip.h}; }

Strip::Strip(KvFrame& shownIn, CPoint place, StripOwner& told)
    : frame(shownIn),
      corner(place),
      owner(told),
      pictures(kFirstStripPicture, kStripPictures),
      font(new CFontDesc("Arial", kTextSize)) {
  pictures.open(stripPictures());
  add<KvImage>(kGround, pictures.get(kStripRows[kGround].picture));
  addButtons();
  addReadouts();
  addLevels();
  ask();
}

Strip::~Strip() {
  cancelFileQuestions(this);
  pictures.close();
}

template <class Control, class... More>
Control* Strip::add(int control, const More&... more) {
  const auto& [x, y, w, h] = kStripRows[control].rect;
  const CRect rect = CRect{x, y, x + w, y + h}.movedBy(corner.x, corner.y);
  auto* const made = new Control(rect, this, control, frame, more...);
  made->font = font.get();
  frame.addView(made);
  return made;
}

void Strip::addButtons() {
  const struct {
    StripControl control;
    ButtonMode mode;
    const float* shown;
    int border;  // by which the mouse may miss, pixels
  } rows[] = {
      {kPlay, ButtonMode::cycle, &playing, 0},
      {kRecord, ButtonMode::cycle, &recording, 0},
      {kTap, ButtonMode::momentary, nullptr, 0},
      {kInput, ButtonMode::cycle, &input, 0},
      {kClipIn, ButtonMode::press, &sides[0].clipped, 3},
      {kClipOut, ButtonMode::press, &sides[1].clipped, 3},
  };
  for (const auto& row : rows) {
    auto* const button = add<KvButton>(row.control, nullptr, 0.0F, row.mode);
    CBitmap* const picture = pictures.get(kStripRows[row.control].picture);
    if (picture != nullptr) picture->remember();
    button->setBackground(Held<CBitmap>(picture));
    button->bind(row.shown);
    button->setMouseableArea(button->getViewSize().grownBy(row.border));
  }
}

void Strip::addReadouts() {
  add<TempoView>(kTempo, &tempo)->setFont(font.get(), kTempoSize, kFine);
  auto* const count = add<KvDisplay>(kXruns, nullptr, 0, 0);
  count->setFont(font.get(), kTextSize, kFine);
  count->bind(&xruns, 1.0F, 0.0F, false);
  count->showNumber = count->noBackground = count->intFormat = true;
  count->decimalsWidth = 0;
  xrunView = count;
  loopName = add<TextButton>(kLoopName, kTextSize);
  line = add<TextButton>(kLine, kTextSize);
  const auto& [x, y, w, h] = places::kLoopButton;
  CRect pressed = loopName->getViewSize();
  pressed.left = corner.x + x;
  loopName->setMouseableArea(pressed);
}

void Strip::addLevels() {
  for (const auto& [control, side] : {std::pair(kLevelIn, &sides[0]), {kLevelOut, &sides[1]}}) {
    const CBitmap* const lit = pictures.get(kStripRows[control].picture);
    add<LevelView>(control, lit, &side->level, &side->highest);
  }
}

void Strip::poll() {
  space.tick();
  ask();
  takeLevels();
}

void Strip::ask() {
  playing = owner.isPlaying() ? 1.0F : 0.0F;
  recording = owner.isRecording() ? 1.0F : 0.0F;
  tempo = static_cast<float>(owner.tempo());
  input = owner.isInputHeard() ? 1.0F : 0.0F;
  xruns = static_cast<float>(owner.xruns());
  xrunView->textColor = xruns > 0.0F ? kAlarm : kFine;
  showTexts();
}

void Strip::takeLevels() {
  const auto [in, out] = owner.takePeaks();
  sides[0].meter.take(in);
  sides[1].meter.take(out);
  for (Side& side : sides) {
    side.level = segmentsAt(side.meter.level());
    side.highest = segmentsAt(side.meter.highest());
    side.clipped = side.meter.hasClipped() ? 1.0F : 0.0F;
  }
}

void Strip::showTexts() {
  const std::string loop = owner.loop().filename().string();
  const bool heard = !loop.empty() && !owner.isInputHeard();
  loopName->setText(loop.empty() ? "choose or drop a file" : loop, heard ? kFine : kIdle);
  std::string message = owner.message();
  const CColor color = message.empty() ? kFine : kAlarm;
  line->setText(message.empty() ? owner.deviceName() : std::move(message), color);
}

void Strip::valueChanged(CControl& control) {
  switch (control.getTag()) {
    case kPlay: owner.playOrStop(); break;
    case kRecord: owner.recordOrEnd(); break;
    case kTempo:
      owner.setTempo(std::round(static_cast<double>(control.getValue()) * 100.0) / 100.0);
      break;
    case kTap:
      if (control.getValue() != 0.0F) owner.tapTempo();
      break;
    case kInput: owner.hearInput(control.getValue() != 0.0F); break;
    case kClipIn: sides[0].forgetClip(); break;
    case kClipOut: sides[1].forgetClip(); break;
    case kLoopName: chooseLoop(); break;
    case kLine:
      if (!line->text().empty()) showMessage(libraryRecord().product, line->text().c_str());
      break;
    default: break;
  }
  ask();  // a second press may come with the same tick
}

bool Strip::pressKey(const WindowKey& key) {
  if (key.virt != keys::kSpace || key.modifier != 0) return false;
  if (!space.press(key)) owner.playOrStop();
  return true;
}

void Strip::takeFiles(const std::vector<std::string>& paths) {
  const auto preset = std::find_if(paths.begin(), paths.end(), isPreset);
  const auto loop = std::find_if_not(paths.begin(), paths.end(), isPreset);
  if (preset != paths.end()) owner.loadPreset(*preset);
  if (loop != paths.end()) owner.setLoop(*loop);
}

void Strip::chooseLoop() {
  // Without filters: there are too many kinds of music files for a list, and one that is not known
  // is told of.
  const FileQuestion question{
      "Choose a music file", {}, readSettingString(kAudioFilePath).value_or(""), this};
  askForFile(&FileDialogs::load, question, [this](const std::optional<std::string>& chosen) {
    if (!chosen || chosen->empty()) return;
    std::string folder = *chosen;
    cutToFolder(folder);
    if (folder.size() > 1) folder.pop_back();
    writeSettingString(kAudioFilePath, folder);
    owner.setLoop(toSystemPath(*chosen));
  });
}

}  // namespace zum
