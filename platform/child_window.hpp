// An empty black window inside of another program's, for a plug-in's view to lie in.
#pragma once

#include <cstdint>
#include <memory>
#include <string>

namespace zum {

struct ChildWindowRequest {
  std::uintptr_t parent;  // as the system names it
  int left = 0, top = 0;  // of the parent's corner, pixels
  int width = 0, height = 0;
  std::string title = {};
};

/// [main] Closed when it goes; it may be gone with its parent by then.
class ChildWindow {
 public:
  ChildWindow() = default;
  ChildWindow(const ChildWindow&) = delete;
  ChildWindow& operator=(const ChildWindow&) = delete;
  virtual ~ChildWindow() = default;
  virtual std::uintptr_t handle() const = 0;
};

/// [main] Null where there is no display, or no such parent.
std::unique_ptr<ChildWindow> openChildWindow(const ChildWindowRequest& request);

}  // namespace zum
