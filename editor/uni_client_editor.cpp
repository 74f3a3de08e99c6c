#include "editor/uni_client_editor.hpp"

#include <new>
#include <string_view>
#include <utility>

#include "editor/create_editor.hpp"
#include "editor/drawn_pictures.hpp"
#include "editor/layout.hpp"
#include "platform/content_folder.hpp"
#include "platform/desktop_scale.hpp"
#include "platform/files.hpp"
#include "platform/user_folders.hpp"
#include "resources/pictures.hpp"
#include "state/library_record.hpp"
#include "state/path_text.hpp"
#include "toolkit/dialogs/window_services.hpp"
#include "toolkit/option_menu.hpp"
#include "toolkit/panel.hpp"
#include "toolkit/text_view.hpp"

namespace zum {
namespace {

constexpr int kBackgroundPicture = 1000;

const PictureSource& windowPictures() {
  static const DrawnPictures source(pictures::pictureRows(), pictureBytes);
  return source;
}

}  // namespace

EffectEditor* createEditor(KvUniClient& effect) { return new KvUniClientEditor(effect); }

KvUniClientEditor::KvUniClientEditor(KvUniClient& owner)
    : AEffGUIEditor(layout::kWindow, owner.groups(), windowPictures()),
      effect(owner),
      editorFont(new CFontDesc("Arial", 12)) {}

bool KvUniClientEditor::open(void* parent, const CFrame::WindowOpener& opener) {
  const std::lock_guard turn(windowTurn());
  if (isOpen()) return false;
  ownsWindow = parent == nullptr;
  if (ownsWindow && !firstRoom) {
    if (const auto room = desktopRoom()) firstRoom = WindowSize{room->width, room->height};
  }
  setFactor(scaleToBe().factor());
  bool isWhole = false;
  try {
    isWhole = KvEditorBase::open(parent, editorFont.get(), opener);
    if (isWhole) fillFrame();
  } catch (const std::bad_alloc&) {
    // Half a window is none. Who has a second holder behind its frame had not come to a place.
    KvUniClientEditor::close();
    if (making && making->holderCount() > 1) making->forget();
    isWhole = false;
  }
  making = {};
  return isWhole;
}

void KvUniClientEditor::fillFrame() {
  getFrame()->setBackground(holdBitmap(kBackgroundPicture));
  addHiddenMenus();
  addPanels();
  addPages();
  addUpperControls();
  addLowerControls();
  addMarks();
  addPanelControls();
  addReadouts();
  addGlobalControls();
  addAboutControls();
  resendPages();
  getFrame()->enterTicks = 2;
  getFrame()->exitTicks = 5;
  cutOutRings();
  linkKnobs();
  for (const Held<CView>& view : topViews) {
    view->remember();
    getFrame()->addView(view.get());
  }
  topViews.clear();
  addValueViews();
  getFrame()->setDirty(true);
  effect.keepHistory();
}

// What is held while the window goes would be held for ever: a gesture in the host's ears, a button
// that is lit, a strip with its page. The host may close once more from inside of what it hears.
void KvUniClientEditor::close() {
  const std::lock_guard turn(windowTurn());
  if (isOpen()) holdFrame()->letGo();
  if (!isOpen()) return;
  effect.setMouseArea({});
  topViews.clear();
  presetMenus.clear();
  panels.clear();
  controls = {};
  aboutPanel = nullptr;
  shownFolder = nullptr;
  learnMenu = nullptr;
  windowMenu = nullptr;
  if (std::exchange(asksClipboard, false)) WindowServices::get().clipboard().cancel(this);
  valueField = nullptr;
  AEffGUIEditor::close();
  resting.forget();
  factorWanted.keep();
}

void KvUniClientEditor::idle() {
  const std::lock_guard turn(windowTurn());
  if (!isOpen()) return;
  if (restTicks > 0 && --restTicks == 0) effect.sealStep();
  showPresetName();
  showStatus();
  noteControllers();
  if (!getFrame()->isHolding()) {  // what is dragged is measured in pixels of its size
    if (const auto scale = resting.tick()) setFactor(scale->factor());
  }
  AEffGUIEditor::idle();
}

KvControl* KvUniClientEditor::getControl(int tag) const {
  return tag >= 0 && tag <= kLastTag ? controls[static_cast<std::size_t>(tag)] : nullptr;
}

void KvUniClientEditor::showPresetName() {
  std::array<char, SharedName::kRoom> name{};
  effect.slot().name.copyTo(name.data(), name.size());
  if (name == shownName) return;
  shownName = name;
  const std::string path = effect.slot().path.get();
  for (KvOptionMenu* menu : presetMenus) menu->setShownText(name.data(), path);
}

void KvUniClientEditor::showPresetNameAnew() {
  shownName = {};
  showPresetName();
}

// What keeps a user from hearing what he set comes first.
void KvUniClientEditor::showStatus() {
  enum Picture { ready, learning, bypassed, loading, offline };
  Picture picture = ready;
  if (loadShared(effect.value(tag::bypass).integer) != 0) picture = bypassed;
  if (effect.learning().load(std::memory_order_relaxed) >= 0) picture = learning;
  if (effect.isOffline()) picture = offline;
  if (effect.muteRequest.load(std::memory_order_relaxed)) picture = loading;
  status = static_cast<float>(picture);
}

void KvUniClientEditor::raiseAbout() {
  const std::lock_guard turn(windowTurn());
  if (aboutPanel != nullptr && !aboutIsOpen()) {
    showPresetFolder();
    aboutPanel->popup(PopupMode::closesInside, nullptr, 0);
  }
}

// As its user writes it: from the home folder on, without a slash at the end.
void KvUniClientEditor::showPresetFolder() {
  if (shownFolder == nullptr) return;
  std::string folder = toSystemPath(KvUniClient::presetRoot());
  if (folder.size() > 1 && folder.ends_with('/')) folder.pop_back();
  const std::string home = userHome().string();
  if (home.size() > 1 && folder.starts_with(home + '/')) folder = '~' + folder.substr(home.size());
  shownFolder->setText(folder.empty() ? "none" : folder);
}

bool KvUniClientEditor::aboutIsOpen() const {
  const std::lock_guard turn(windowTurn());
  return aboutPanel != nullptr && aboutPanel->isVisible();
}

void KvUniClientEditor::openManual() {
  const std::lock_guard turn(windowTurn());
  std::string file = readSettingString(kInstallPath).value_or("");
  ensureTrailingBackslash(file);
  // Another system's folder, or none, would be looked for where the host happens to run.
  if (!isAbsolutePath(file)) file = installedContentFolder();
  if (file.empty()) {
    return showMessage(libraryRecord().product,
                       "The manual is not installed. Run zum install-content.");
  }
  WindowServices::get().showFile(file + "Manual\\Manual.htm");
}

void KvUniClientEditor::refreshPresetMenus(const char* extension) {
  const std::lock_guard turn(windowTurn());
  const std::string root = KvUniClient::presetRoot();
  for (KvOptionMenu* menu : presetMenus) menu->setFolder(root, extension);
  showPresetNameAnew();
  showPresetFolder();
}

}  // namespace zum
