// The window of this effect: one picture with some 170 controls on it, two pages above that share
// a place and three below, and a panel behind each main knob. It is built anew at each open; what
// it shows lives in the effect.
#pragma once

#include <array>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "core/group_selector.hpp"
#include "core/parameter_table.hpp"
#include "core/uni_client.hpp"
#include "editor/host_editor.hpp"
#include "editor/window_factor.hpp"
#include "toolkit/control_info.hpp"
#include "toolkit/resting_scale.hpp"

namespace zum {

class KvButton;
class KvMouseArea;
class KvOptionMenu;
class KvTextView;
class ValueField;
struct Reading;

namespace layout {
struct Knob;
struct Panel;
}  // namespace layout

/// [main] The effect outlives it.
class KvUniClientEditor final : public AEffGUIEditor, public CControlListener {
 public:
  explicit KvUniClientEditor(KvUniClient& owner);
  ~KvUniClientEditor() override { KvUniClientEditor::close(); }

  bool open(void* parent) override { return open(parent, openNativeWindow); }
  /// With windows of another kind, in tests and in a program of its own.
  bool open(void* parent, const CFrame::WindowOpener& opener);
  void close() override;
  void idle() override;

  void valueChanged(CControl& control) override;
  void controlBeginEdit(CControl& control) override;
  void controlEndEdit(CControl& control) override;

  /// All that a user can use, on all pages and in all panels, the window first; empty while it is
  /// closed. What a program that reads windows aloud is to be given.
  std::vector<ControlInfo> controlTree() const;

  void raiseAbout() override;
  void openManual() override;
  bool aboutIsOpen() const override;
  /// All knobs move by chance, unless the mouse holds one.
  void rollDice();
  // A preset by chance, and the state that the host gave last.
  void playAnyPreset();
  void revert();
  /// The sound as text, through the clipboard. A message tells what is wrong with a text that is no
  /// preset.
  void copySoundText();
  void pasteSoundText();
  /// Asks the user for one.
  void choosePresetFolder();

  bool setHostScale(double scale) override;
  WindowSize fitting(const WindowSize& offered) override;
  void limitFirstSize(const WindowSize& most) override { firstRoom = most; }
  void takeSize(const WindowSize& given) override;
  /// By the user. An open window has the factor at once where it is its own, or the host makes room
  /// for it; else those do that open from now on.
  void chooseFactor(double wanted);
  /// False where the host keeps the window as it is, as far as is known.
  bool mayResize() { return ownsWindow || (!isRefused && effect.maySizeWindow()); }
  /// Of this window, or of the next one where this one stays as it is.
  double factorChosen() { return mayResize() ? factor() : factorWanted.get(); }
  /// Their files may have come or gone, or lie in another folder.
  void refreshPresetMenus(const char* extension);

  KvFrame* shownFrame() const { return getFrame(); }
  /// While it is open; null for a tag that nothing has.
  KvControl* getControl(int tag) const;
  KvViewContainer* getAboutPanel() const { return aboutPanel; }

 private:
  void fillFrame();
  // The steps of fillFrame(), in its order. Each adds to the frame.
  void addHiddenMenus();
  void addPanels();
  void addPages();
  void addUpperControls();
  void addLowerControls();
  void addMarks();
  void addTraces();
  void addPanelControls();
  void addReadouts();
  void addGlobalControls();
  void addAboutControls();
  void resendPages();
  void cutOutRings();
  void linkKnobs();
  void addValueViews();

  template <class Control, class... More>
  Control* make(const CRect& rect, int tag, const More&... more);
  template <class Control>
  Control* add(Control* control, groups::Group group);
  void addKnob(const layout::Knob& row);
  void addRings(bool upper);
  void addSwitch(int tag);
  void addMenu(int tag);
  KvButton* addButton(int tag, const CRect& rect, int picture);
  void addSlider(KvViewContainer& panel, int tag, const CRect& rect);
  KvTextView* addText(KvViewContainer& panel, const CRect& rect, int size);
  void addPresetMenu();
  KvViewContainer* makePanel(const CRect& rect, int picture);

  // events
  void tellOfReset(const ParameterRow& row);
  void choosePreset(KvOptionMenu& menu);
  void stepProgram(int direction);
  void chooseFromLearnMenu(CControl& menu);
  void closePanel(int knob);
  void pressTabs(const KvMouseArea& area);
  bool keyPressed(const WindowKey& key) override;
  bool groundPressed(CPoint where) override { return openWindowMenu(where, true); }
  bool openWindowMenu(CPoint where, bool byPress);
  // values
  std::optional<ControlInfo> describe(const KvControl& control) const;
  std::string valueText(const KvControl& control) const;
  std::string movedText(const ParameterRow& row) const;
  Reading reading() const;
  std::string infoOf(const KvControl& control) override;
  bool typeValue(KvControl& control) override;

  void showPresetName();
  /// Also when the menus show something else meanwhile.
  void showPresetNameAnew();
  void showStatus();
  void showPresetFolder();
  void noteControllers();

  // size
  Scale firstScale();
  Scale scaleToBe();
  CPoint sizeForHost() override;
  bool showAt(const Scale& scale);
  /// Hosts may size our window themselves.
  void windowResized(int width, int height) override { takeSize({width, height}); }

  KvUniClient& effect;
  WindowFactor factorWanted;
  RestingScale resting;
  std::optional<WindowSize> firstRoom;  // for a window that opens; none: any size
  bool ownsWindow = false;              // it lies in nobody else's
  bool isAskingForRoom = false;
  bool isRefused = false;  // the last size that the user chose
  Held<CFontDesc> editorFont;
  std::array<KvControl*, kLastTag + 1> controls{};  // by tag
  std::vector<KvViewContainer*> panels;             // in the order of their table
  KvViewContainer* aboutPanel = nullptr;
  KvTextView* shownFolder = nullptr;  // of the about panel
  KvOptionMenu* learnMenu = nullptr;
  KvOptionMenu* windowMenu = nullptr;
  bool asksClipboard = false;  // it may wait for an answer
  const std::shared_ptr<bool> life = std::make_shared<bool>(true);
  ValueField* valueField = nullptr;
  std::vector<KvOptionMenu*> presetMenus;
  std::vector<Held<CView>> topViews;  // to lie above all pages, until they are added
  Held<CView> making;                 // the latest that was made, until all are
  std::array<char, SharedName::kRoom> shownName{};
  int restTicks = 0;    // until what a wheel or a key moves is over, as a step
  float status = 0.0F;  // picture of the status strip
  std::array<float, kLastTag + 1> isLearned{};  // 1 for a tag that a controller moves
};

}  // namespace zum
