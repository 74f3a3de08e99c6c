// The effect's editor in the host's plug-in window.

#include <algorithm>
#include <cstdint>

#include "adaptor/dae/wrapper_process.hpp"
#include "core/effect_editor.hpp"
#include "state/library_record.hpp"

namespace zum {
namespace {

/// [main] The view that the host gets: the effect's editor. The process outlives it.
class KvRTASWrapperCustomView final : public CCustomView {
 public:
  explicit KvRTASWrapperCustomView(KvRTASWrapperProcess& shown) : process(shown) {}
  void drawContents(const ViewRect* part) override { process.drawEditor(part); }

 private:
  KvRTASWrapperProcess& process;
};

ERect editorRect(AEffEditor& editor) {
  ERect* rect = nullptr;
  return editor.getRect(&rect) && rect != nullptr ? *rect : ERect{};
}

}  // namespace

void KvRTASWrapperProcess::GetViewRect(ViewRect& rect) {
  AEffEditor* const editor = getEditor();
  if (editor == nullptr) return;
  const ERect size = editorRect(*editor);
  rect = {0, 0, size.bottom, size.right};
}

void KvRTASWrapperProcess::SetViewPort(const ViewPort* port) {
  CEffectProcess::SetViewPort(port);
  // Window systems place windows by 16-bit numbers.
  constexpr std::int32_t kFarthest = INT16_MAX;
  AEffEditor* const editor = getEditor();
  if (editor == nullptr) return;
  editor->close();
  editorWindow.reset();
  if (port == nullptr || port->nativeWindow == 0) return;
  // A port that begins beyond the window's corner has its origin below 0.
  const bool isInside = port->originX > 0 || port->originY > 0;
  const auto behind = [isInside](std::int32_t origin) {
    return isInside ? 0 : -std::max(origin, -kFarthest);
  };
  const ERect size = editorRect(*editor);
  editorWindow = openChildWindow({.parent = port->nativeWindow,
                                  .left = behind(port->originX),
                                  .top = behind(port->originY),
                                  .width = size.right,
                                  .height = size.bottom,
                                  .title = libraryRecord().product});
  if (editorWindow == nullptr) return;
  // NOLINTNEXTLINE(performance-no-int-to-ptr): editors take the system's number as a pointer
  editor->open(reinterpret_cast<void*>(editorWindow->handle()));
}

void KvRTASWrapperProcess::ViewIdle() {
  if (AEffEditor* const editor = getEditor()) editor->idle();
}

std::unique_ptr<CCustomView> KvRTASWrapperProcess::MakeCustomView() {
  return std::make_unique<KvRTASWrapperCustomView>(*this);
}

void KvRTASWrapperProcess::drawEditor(const ViewRect* part) {
  AEffEditor* const editor = getEditor();
  if (editor == nullptr) return;
  ERect rect = editorRect(*editor);
  if (part != nullptr) rect = {part->top, part->left, part->bottom, part->right};
  editor->draw(&rect);
}

}  // namespace zum
