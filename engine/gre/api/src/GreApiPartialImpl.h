#pragma once

#include <string>
#include <vector>

#include "KZ_BasePoint.h"
#include "KZ_BaseRect.h"

/// The outcome of a frame, as the GRE_Get* functions read it.
struct GreResultData {
    std::string gesture;  ///< "palm", "MOVING" or empty
    KZ::Rect rect;        ///< box of the palm in frame pixels
    std::vector<KZ::Point3d> points;
    int flipState = 0;
    float score = 0;
    bool clickEvent = false;
    int angle = 0;  ///< degrees

    void clear();
};

/// The last frame's outcome. An engine writes it, the functions here read it.
extern GreResultData greResultData;
