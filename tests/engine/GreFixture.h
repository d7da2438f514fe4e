#pragma once

#include <gtest/gtest.h>

#include <string>

#include "FakeDetector.h"
#include "GRE_Interface.h"
#include "GRE_RaisedHand.h"
#include "GreApiPartialImpl.h"
#include "GreCameraState.h"

/// Starts each test with the gesture engine as it is at load time, and with a chain of the test's
/// own in place of the palm chain.
class GreFixture : public testing::Test {
protected:
    void SetUp() override {
        GRE_Release();
        minDistance = 30;
        maxDistance = 100;
        fovAngle = 89;
        isFlip = true;
        roi = KZ::Rect();
        cameraAngle = 0;
        useSmoothing = false;
        framesToSkip = 0;
        chain = new testing_support::FakeDetector(nullptr, KZ::Rect(0, 0, 10000, 10000));
        raisedHandDetector.setDetector(KZ::SharedPtr<BaseDetector>(chain));
    }
    void TearDown() override {
        GRE_Release();
        isFlip = true;
        framesToSkip = 0;
        raisedHandDetector.setDetector(KZ::SharedPtr<BaseDetector>());
    }

    /// A frame size of which the detector sees every pixel as it is, at camera angle 0.
    void startUnzoomed(int width, int height) {
        GRE_Init(width, height);
        raisedHandDetector.setHandSizes(15, 60);
        isFlip = false;
    }
    /// Lets the chain find `location` in the picture that it sees, on every frame.
    void find(const KZ::ObjectLocation& location, float score = 0.5f) {
        chain->act = [location, score](DetectorData&, const KZ::DetectRegion&,
                                       DetectorResult& result) {
            testing_support::setHit(result, location, score);
        };
    }
    static std::string gesture() {
        const char* text = nullptr;
        GRE_GetGesture(&text);
        return text;
    }
    static KZ::Rect box() {
        KZ::Rect rect;
        GRE_GetResultRect(&rect.left, &rect.top, &rect.right, &rect.bottom);
        return rect;
    }
    static float score() {
        float value = -1;
        GRE_GetScore(&value);
        return value;
    }

    testing_support::FakeDetector* chain = nullptr;
};
