// The view that the host gets: the effect's editor.
#pragma once

#include "adaptor/wrapper_process.hpp"

namespace zum {

/// [main] The process outlives it.
class KvRTASWrapperCustomView final : public CCustomView {
 public:
  explicit KvRTASWrapperCustomView(KvRTASWrapperProcess& shown) : process(shown) {}
  void drawContents(const ViewRect* part) override { process.drawEditor(part); }

 private:
  KvRTASWrapperProcess& process;
};

}  // namespace zum
