#include "GreCameraState.h"

#include <cmath>
#include <vector>

#include "GRE_Interface.h"
#include "KZ_Assert.h"
#include "KZ_Geometry.h"
#include "KZ_Statistics.h"

bool isFlip = true;
KZ::BaseSize<int> frameSize;
KZ::BaseRect<int> roi;
KZ::Point3d cameraAccel;
KZ::Point3d cameraLastAccel;
float cameraAngle = 0;
KZ::History<float> angleHist(30);
float averageSpeed = 0;

namespace {

const float MAX_SPEED = 0.6f;
const float SPEED_MEMORY = 0.9f;
const float SPEED_UPDATE = 0.100000024f;  ///< 1 - 0.9f

// Beyond every sensor. What is no number, or whose square is beyond a float, would stay in the
// smoothed speed for good.
bool isReading(float value) {
    const float limit = 1e6f;
    return std::fabs(value) <= limit;
}

// Lying nearly flat: what gravity leaves in the picture plane is noise.
bool isFlat(float x, float y, float z) {
    return std::sqrt(x * x + y * y) * 0.5f < 2 && z > 8;
}

float medianAngle() {
    std::vector<float> angles;
    angles.reserve(angleHist.size());
    for (uint32_t i = 0; i < angleHist.size(); ++i) angles.push_back(angleHist.element(i));
    return KZ::median(angles);
}

}  // namespace

bool isCameraMoving() {
    const float dx = cameraAccel.x - cameraLastAccel.x;
    const float dy = cameraAccel.y - cameraLastAccel.y;
    const float dz = cameraAccel.z - cameraLastAccel.z;
    const float speed = std::sqrt(dx * dx + dy * dy + dz * dz);
    cameraLastAccel = cameraAccel;
    averageSpeed = averageSpeed * SPEED_MEMORY + speed * SPEED_UPDATE;
    return averageSpeed > MAX_SPEED;
}

void releaseCameraState() {
    frameSize = KZ::Size();
    cameraAccel = KZ::Point3d();
    cameraLastAccel = KZ::Point3d();
    angleHist.counter = 0;
    averageSpeed = 0;
    isFlip = false;
}

void GRE_SetCameraFlip(bool flip) {
    isFlip = flip;
}

void GRE_SetCameraAngle(int degrees) {
    cameraAngle = KZ::degreeToRadian(static_cast<float>(degrees));
}

void GRE_SetCameraAcceleration(float x, float y, float z) {
    KZ_ASSERT(isReading(x) && isReading(y) && isReading(z),
              "wrong acceleration: " << x << ", " << y << ", " << z);
    cameraAccel = KZ::Point3d(x, y, z);
    if (isFlat(x, y, z) && angleHist.size() != 0) {
        cameraAngle = medianAngle();
        return;
    }
    cameraAngle = -std::atan2(y, x);
    angleHist.add(cameraAngle);
}

void GRE_SetRoi(int left, int top, int right, int bottom) {
    roi = KZ::Rect(left, top, right, bottom);
}
