#include "TangensLayer.h"

#include <cmath>

#include "KZ_Assert.h"

float TangensLayer::approxTanh(float x) const {
    const float square = x * x;
    const double a = square;
    const double y = 1 - 1 / (std::fabs(static_cast<double>(x)) + 1 + a + a * 1.41645 * a);
    return static_cast<float>(x < 0 ? -y : y);
}

void TangensLayer::forward() {
    KZ_ASSERT_EQ(bottomLayers_.size(), 1);
    top_ = bottomBlob(0);
    for (int i = 0; i < top_.size(); ++i) top_.data()[i] = approxTanh(top_.data()[i]);
}
