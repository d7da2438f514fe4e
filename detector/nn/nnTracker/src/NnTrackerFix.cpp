// The types that correct a location or verify an object.

#include <algorithm>
#include <cmath>

#include "KZ_Assert.h"
#include "KZ_CopyImage.h"
#include "KZ_Geometry.h"
#include "NnTracker.h"

namespace {

const float FULL_SCORE = 255;
const float MOST_ZOOM = 0.1f;

float positiveShare(const std::vector<float>& out) {
    return std::exp(out[1]) / (std::exp(out[0]) + std::exp(out[1]));
}

KZ::ObjectLocation square(float x, float y, float side) {
    return KZ::ObjectLocation(KZ::PointF(x, y), KZ::SizeF(side, side), 0, KZ::Side::RIGHT);
}

void assign(LocationState& state, const KZ::ObjectLocation& location) {
    static_cast<KZ::ObjectLocation&>(state) = location;
}

}  // namespace

void NnTracker::fixPosition(KZ::Image& patch, LocationState& location, float& score) {
    const std::vector<float> out = results(patch);
    location.center = location.getPoint(patch.size(), KZ::PointF(out[0], out[1]));
    if (out.size() >= 3) score = out[2] / FULL_SCORE;
}

void NnTracker::fixRegressionLocation(KZ::Image& patch, LocationState& location, float&) {
    const std::vector<float> out = results(patch);
    assign(location, location.getLocationState(patch.size(), square(out[1], out[2], out[0])));
}

void NnTracker::fixLocationAngle(KZ::Image& patch, LocationState& location, float& score) {
    const std::vector<float> out = results(patch);
    const KZ::PointF p1 = location.getPoint(patch.size(), KZ::PointF(out[0], out[1]));
    const KZ::PointF p2 = location.getPoint(patch.size(), KZ::PointF(out[3], out[4]));
    score = (out[2] + out[5]) / (2 * FULL_SCORE);
    const float dx = p2.x - p1.x, dy = p2.y - p1.y;
    const float d = std::sqrt(dx * dx + dy * dy);
    location.center = KZ::PointF((p1.x + p2.x) * 0.5f, (p1.y + p2.y) * 0.5f);
    if (d > 1e-6f) location.angle = -KZ::radianToDegree(std::atan2(dy, dx));
    if (location.side == KZ::Side::LEFT) location.angle = 180 - location.angle;
    location.size =
        KZ::SizeF(d, d * static_cast<float>(patch.height()) / static_cast<float>(patch.width()));
}

void NnTracker::fixLocation(KZ::Image& patch, LocationState& location, float& score) {
    const float angle = location.angle;
    fixLocationAngle(patch, location, score);
    location.angle = angle;
}

void NnTracker::fixLocationSize(KZ::Image& patch, LocationState& location, float& score) {
    const std::vector<float> out = results(patch);
    assign(location, location.getLocationState(patch.size(), square(out[0], out[1], out[3])));
    score = (out[2] + out[5]) / (2 * FULL_SCORE);
}

void NnTracker::fixZoom(KZ::Image& patch, LocationState& location, float& score) {
    const std::vector<float> out = results(patch);
    const float z = std::max(std::min(out[0], MOST_ZOOM), -MOST_ZOOM);
    location.size = KZ::SizeF(location.size.width * (z + 1), location.size.height * (z + 1));
    if (out.size() >= 2) score = out[1] / FULL_SCORE;
}

void NnTracker::fixZoomAngle(KZ::Image& patch, LocationState& location, float& score) {
    const std::vector<float> out = results(patch);
    const float factor = out[0] + 1;
    location.size = KZ::SizeF(location.size.width * factor, location.size.height * factor);
    location.angle += out[1];
    if (out.size() >= 3) score = out[2] / FULL_SCORE;
}

void NnTracker::fixSide(KZ::Image& patch, LocationState& location, float& score) {
    const std::vector<float> out = results(patch);
    if (out[1] > out[0]) {
        location.side = location.side == KZ::Side::RIGHT ? KZ::Side::LEFT : KZ::Side::RIGHT;
    }
    score = std::fabs(out[1] - out[0]) / FULL_SCORE;
}

void NnTracker::fixVerify(KZ::Image& patch, LocationState&, bool& verified, float& score) {
    const float threshold = parameters_.threshold;
    const std::vector<float> out = results(patch);
    score = 0;
    if (out.size() == 1) {
        verified = out[0] > threshold;
        score = out[0];
    } else {
        score = positiveShare(out);
        verified = score > threshold;
    }
    if (verified || !parameters_.tryMirrored) return;
    KZ::flipLeftRight(patch);
    score = positiveShare(results(patch));
    verified = score > threshold;
}

void NnTracker::detectMtCnn(KZ::Image& patch, LocationState& location, bool& verified,
                            float& score) {
    parameters_.nnDetector->detect(patch);
    KZ_ASSERT_GE(parameters_.nnDetector->getOutputBlobs().size(), 3);
    const std::vector<KZ::Blob> outputs = parameters_.nnDetector->getOutputBlobs();
    const KZ::Blob &regression = outputs[0], &verification = outputs[1], &alignment = outputs[2];
    KZ_ASSERT_GE(regression.size(), 4);
    KZ_ASSERT_GE(verification.size(), 2);
    verified = verification.data()[1] > verification.data()[0];
    if (!verified) return;

    const float* shift = regression.data();
    const float z = std::max(shift[2], shift[3]) + 1;
    location.center.x += location.size.width * shift[0];
    location.center.y += location.size.height * shift[1];
    location.size = KZ::SizeF(location.size.width * z, location.size.height * z);
    score = verification.data()[1];

    const int pointCount = 5;
    KZ_ASSERT_GE(alignment.size(), 2 * pointCount);
    auto& points =
        states().get<KZ::InheritedState<std::vector<KZ::PointF>, NnTracker::_MtCnnAlignment>>();
    const KZ::RectF rect = location.getRect();
    points.clear();
    for (int i = 0; i < pointCount; ++i) {
        points.push_back(
            KZ::PointF(rect.left + alignment.data()[i] * location.size.width,
                       rect.top + alignment.data()[i + pointCount] * location.size.width));
    }
}
