#include "RingConfig.h"

#include <cstdio>

#include "PositiveRenderer.h"

namespace training {

namespace {

std::string decimal(double value) {
    char text[32];
    std::snprintf(text, sizeof text, "%.2f", value);
    return text;
}

}  // namespace

std::map<std::string, std::string> ringConfig(const TrainingPlan& plan) {
    const WindowShape& upright = plan.shapes[plan.shapes.size() / 2];
    const std::string width = std::to_string(upright.size.width);
    const std::string height = std::to_string(upright.size.height);
    std::map<std::string, std::string> config = {
        {"MaxAngleChange", decimal(PositiveRenderer::ANGLE_SPREAD)},
        {"MaxBloorSigma", "0.60"},
        {"MaxBloorSize", "3"},
        {"MaxShift", "1"},
        {"MaxZoomChange", "1.10"},
        {"baseShapeAngle", "0.00"},
        {"baseShapeX", std::to_string(upright.centre().x)},
        {"baseShapeY", std::to_string(upright.centre().y)},
        {"baseShapeZoom", decimal(upright.palmWidth())},
        {"baseSizeX", width},
        {"baseSizeY", height},
        // Equal trainings give equal files: no clock in them.
        {"command",
         "train_cascade emit --ring data/trained/palm.ring --source "
         "engine/selfie/raisedHandDetector/src/ada__ada_staticPalm_2014_12_05__17_40_12.cpp"},
        {"creationTime", "as in the history of data/trained/palm.ring"},
        {"falsePositive1", "0"},
        {"falsePositive2", "0"},
        {"falsePositive3", "0"},
        {"falsePositive4", "0"},
        {"flip", "1"},
        {"haarThreshold", "0.00"},
        {"imageNumb", decimal(plan.rendersPerPalm)},
        {"inc1", "0"},
        {"maxHogFeature", std::to_string(plan.stages.back().hogPool)},
        {"maxIterationCoeff", "1.00"},
        {"maxNumbCascades", std::to_string(plan.stages.size())},
        {"negative", ""},
        {"ni_maxAngle", "30"},
        {"patchesPath", ""},
        {"plan", plan.fingerprint()},
        {"quantileFactor", "1.00"},
        {"ringName", "ada__ada_staticPalm_2014_12_05__17_40_12"},
        {"ringPath", "data/trained/palm.ring"},
        {"shape", "SimplePalm"},
        {"tab_allRectMinHeight", "6"},
        {"tab_allRectMinWidth", "6"},
        {"tab_dynamicGesture", "0"},
        {"tab_featureMoveStep", "1.00"},
        {"tab_featureZoomStep", "1.00"},
        {"tab_haarStartCascade", "2"},
        {"tab_hogStartCascade", "4"},
        {"tab_smallHaarWeigth", "0"},
        {"timeOfTrain", "0"},
        {"trueNegative", decimal(plan.stages.back().keptPalms)},
        {"userName", "train_cascade"},
        {"user_dbImages", "manifest.csv"},
        {"user_dbLabels", "manifest.csv"},
    };
    const char* const iterations[] = {"First", "Second", "Third", "Fourth"};
    for (size_t i = 0; i < 4; ++i) {
        config[std::string("tab_iterAt") + iterations[i] + "Cascade"] =
            std::to_string(plan.stages[i].boosting.weakCount);
    }
    for (const char* on : {"useHaar", "useHog", "useRmct", "user_addToQueue", "user_baseParameters",
                           "user_config", "user_log", "user_normalize", "user_patches",
                           "user_queue", "user_runQueue", "user_train"}) {
        config[on] = "1";
    }
    return config;
}

}  // namespace training
