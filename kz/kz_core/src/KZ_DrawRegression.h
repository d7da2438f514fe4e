#pragma once

#include <vector>

#include "KZ_Color.h"
#include "KZ_Image.h"

namespace KZ {

/// Draws the line of least squares through `points`, from the image's left border to its right one
/// as far as it lies inside. False, with nothing drawn, when there is no such line.
bool drawRegression(Image& image, const std::vector<PointF>& points, const Color& color,
                    int thickness);

}  // namespace KZ
