// A view that the host shows in its plug-in window.
#pragma once

#include "adaptor/hostlib/routines.hpp"

namespace zum {

/// [main]
class CPlugInView {
 public:
  CPlugInView() = default;
  CPlugInView(const CPlugInView&) = delete;
  CPlugInView& operator=(const CPlugInView&) = delete;
  virtual ~CPlugInView() = default;
};

/// Drawn by the plug-in itself.
class CCustomView : public CPlugInView {
 public:
  /// A part of it; null for all.
  virtual void drawContents(const ViewRect* part) = 0;
};

}  // namespace zum
