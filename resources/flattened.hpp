// Pictures as they are kept in bitmap files, which have no alpha.
#pragma once

#include "resources/image.hpp"
#include "resources/picture_rows.hpp"

namespace zum::pictures {

/// All frames, one below the other, on what lies behind them.
Image makePicture(const PictureRow& row);

}  // namespace zum::pictures
