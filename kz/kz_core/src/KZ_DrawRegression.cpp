#include "KZ_DrawRegression.h"

#include <algorithm>
#include <cmath>

#include "KZ_Draw.h"
#include "KZ_Math.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

Point nearestPixel(float x, float y) {
    return Point(truncatedToInt(std::floor(x + 0.5f)), truncatedToInt(std::floor(y + 0.5f)));
}

}  // namespace

bool drawRegression(Image& image, const std::vector<PointF>& points, const Color& color,
                    int thickness) {
    float slope = 0;
    float intercept = 0;
    if (!regression(points, slope, intercept)) return false;
    float from = 0;
    float to = static_cast<float>(image.width() - 1);
    const float lastRow = static_cast<float>(image.height() - 1);
    if (slope != 0) {
        const float atTop = -intercept / slope;
        const float atBottom = (lastRow - intercept) / slope;
        from = std::max(from, std::min(atTop, atBottom));
        to = std::min(to, std::max(atTop, atBottom));
    } else if (intercept < 0 || intercept > lastRow) {
        return true;
    }
    if (from <= to)
        drawLine(image, nearestPixel(from, slope * from + intercept),
                 nearestPixel(to, slope * to + intercept), color, thickness);
    return true;
}

}  // namespace KZ
