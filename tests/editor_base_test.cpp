// An editor without controls: opened and closed as hosts do, and asked for things by other threads.
#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "platform/offscreen_window.hpp"
#include "toolkit/editor_base.hpp"
#include "toolkit/knob.hpp"

namespace zum::test {
namespace {

/// One red pixel.
std::string redDot() {
  std::string file(58, '\0');
  const auto put = [&file](std::size_t at, std::uint32_t value) {
    std::memcpy(file.data() + at, &value, 4);
  };
  file[0] = 'B';
  file[1] = 'M';
  for (const auto& [at, value] : {std::pair{10U, 54U}, {14U, 40U}, {18U, 1U}, {22U, 1U}}) {
    put(at, value);
  }
  put(26, 1 | 24U << 16U);
  put(54, 0xFF0000);
  return file;
}

class Editor final : public KvEditorBase, public CControlListener {
 public:
  Editor(GroupMask& mask, const std::string& file)
      : KvEditorBase({0, 0, 50, 40}, mask, [&file](int id) {
          return id == 1058 ? std::as_bytes(std::span(file)) : std::span<const std::byte>();
        }) {}
  bool open(void* parent) override {
    return KvEditorBase::open(parent, nullptr,
                              [&](const WindowRequest& request, WindowEvents& events) {
                                std::unique_ptr<OffscreenWindow> opened;
                                if (request.parent == 0) return opened;
                                opened = std::make_unique<OffscreenWindow>(request, events);
                                window = opened.get();
                                return opened;
                              });
  }
  /// A knob with that picture at 0, 0. The host closes the window at whatever is told.
  KvKnob* addKnob(int picture) {
    auto* const knob =
        new KvKnob({0, 0, 20, 20}, this, 3, *getFrame(), getBitmap(picture), 1, 1, 1.0F);
    getFrame()->addView(knob);
    return knob;
  }
  void valueChanged(CControl& /*control*/) override {
    ++told;
    close();
  }
  bool keyPressed(const WindowKey& key) override { return key.virt == keys::kF1 + 1; }

  OffscreenWindow* window = nullptr;
  int told = 0;
};

TEST(EditorBase, OpensAgainSharesItsPicturesAndLosesNoRequest) {
  GroupMask mask;
  const std::string dot = redDot();
  Editor one(mask, dot);
  Editor two(mask, dot);
  int parent = 0;
  EXPECT_FALSE(one.open(nullptr));
  EXPECT_EQ(one.getBitmap(1058), nullptr);
  one.idle();
  one.close();
  for (int i = 0; i < 3; ++i) {
    EXPECT_TRUE(one.open(&parent));
    EXPECT_TRUE(two.open(&parent));
    CBitmap* const shared = one.getBitmap(1058);
    ASSERT_NE(shared, nullptr);
    EXPECT_EQ(shared, two.getBitmap(1058));
    for (const int none : {-1, 0, 999, 1000, 1059}) EXPECT_EQ(one.getBitmap(none), nullptr);
    one.close();
    EXPECT_EQ(two.getBitmap(1058), shared);
    two.idle();
    two.window->forgetShows();
    two.idle();
    EXPECT_EQ(two.window->shows(), 0);
    two.requestFullRedraw();
    two.idle();
    EXPECT_EQ(two.window->shownPixels(), 50 * 40);
    two.update();
    two.idle();
    EXPECT_EQ(two.window->shownPixels(), 2 * 50 * 40);
    two.close();
    EXPECT_EQ(two.getBitmap(1058), nullptr);
  }
}

TEST(EditorBase, MayBeClosedByTheHostFromInsideOfWhatAControlTells) {
  GroupMask mask;
  const std::string dot = redDot();
  Editor editor(mask, dot);
  int parent = 0;
  ASSERT_TRUE(editor.open(&parent));
  editor.addKnob(1058);
  editor.window->press(10, 10);
  editor.window->move(10, 5, buttons::kLeft);
  editor.window->move(10, 0, buttons::kLeft);
  editor.idle();
  EXPECT_FALSE(editor.isOpen());
  EXPECT_EQ(editor.told, 1);
  editor.idle();
}

TEST(EditorBase, HandsKeysThatNobodyWantsToTheHost) {
  GroupMask mask;
  const std::string dot = redDot();
  Editor editor(mask, dot);
  int parent = 0;
  ASSERT_TRUE(editor.open(&parent));
  EXPECT_TRUE(editor.keyDown({0, keys::kF1 + 1, 0}));
  EXPECT_FALSE(editor.keyDown({0, keys::kHome, 0}));
  editor.window->keyDown({0, keys::kF1 + 1, 0});
  editor.window->keyDown({'a', 0, 0});
  editor.idle();
  ASSERT_EQ(editor.window->hostKeys().size(), 1U);
  EXPECT_EQ(editor.window->hostKeys()[0].character, 'a');
}

}  // namespace
}  // namespace zum::test
