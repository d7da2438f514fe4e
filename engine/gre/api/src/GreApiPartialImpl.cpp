#include "GreApiPartialImpl.h"

#include "GRE_Interface.h"
#include "KZ_Assert.h"

GreResultData greResultData;

void GreResultData::clear() {
    gesture.clear();
    rect = KZ::Rect();
    points.clear();
    flipState = 0;
    score = 0;
    clickEvent = false;
    angle = 0;
}

void GRE_GetGesture(const char** gesture) {
    KZ_ASSERT_POINTER(gesture);
    *gesture = greResultData.gesture.c_str();
}

int GRE_GetGestureInt() {
    return greResultData.gesture == "palm" ? 1 : 0;
}

int GetGesture() {
    return GRE_GetGestureInt();
}

void GRE_GetResultRect(int* left, int* top, int* right, int* bottom) {
    KZ_ASSERT_POINTER(left);
    KZ_ASSERT_POINTER(top);
    KZ_ASSERT_POINTER(right);
    KZ_ASSERT_POINTER(bottom);
    *left = greResultData.rect.left;
    *top = greResultData.rect.top;
    *right = greResultData.rect.right;
    *bottom = greResultData.rect.bottom;
}

void GRE_GetScore(float* score) {
    KZ_ASSERT_POINTER(score);
    *score = greResultData.score;
}

void GRE_GetResultAngle(int* angle) {
    KZ_ASSERT_POINTER(angle);
    *angle = greResultData.angle;
}

int GRE_GetNumPoints() {
    return static_cast<int>(greResultData.points.size());
}

void GRE_GetPoint(int pointNumber, float* x, float* y, float* z) {
    KZ_ASSERT_GE(pointNumber, 0);
    KZ_ASSERT_LT(pointNumber, (int)greResultData.points.size());
    KZ_ASSERT_POINTER(x);
    KZ_ASSERT_POINTER(y);
    KZ_ASSERT_POINTER(z);
    const KZ::Point3d& point = greResultData.points[static_cast<size_t>(pointNumber)];
    *x = point.x;
    *y = point.y;
    *z = point.z;
}

void GRE_GetFlipState(bool* flipped) {
    KZ_ASSERT_POINTER(flipped);
    *flipped = greResultData.flipState > 0;
}

void GRE_GetClickEvent(bool* clicked) {
    KZ_ASSERT_POINTER(clicked);
    *clicked = greResultData.clickEvent;
}

int GRE_GetColorMode() {
    return 0;
}

const char* GRE_GetVersion() {
    return "2019_09_02_detector_21e9148ed00a4202bd0240d04fd6ffb4795094e3"
           "_engine_ad94e79d77e8d428f1d1d5c565180d58ce5a1392";
}
