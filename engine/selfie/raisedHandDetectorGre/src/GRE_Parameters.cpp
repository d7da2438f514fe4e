#include <algorithm>
#include <cmath>
#include <cstdint>

#include "GRE_Interface.h"
#include "GRE_RaisedHand.h"
#include "GreCameraState.h"
#include "KZ_Assert.h"
#include "KZ_CommandLineParser.h"
#include "KZ_Geometry.h"

int minDistance = 30;
int maxDistance = 100;
int fovAngle = 89;

namespace {

using KZ::CommandLineParser;

void readOption(CommandLineParser& parser, const char* key, int& value) {
    if (parser.isSet(key)) value = parser.getInt(key);
}

void readOptions(const char* options) {
    const CommandLineParser::ValueType::Value kind = CommandLineParser::ValueType::INT;
    CommandLineParser parser;
    parser.add("", "--min-distance", "", false, kind, "Minimum distance for detect");
    parser.add("", "--max-distance", "", false, kind, "Maximum distance for detect");
    parser.add("", "--fov-angle", "", false, kind, "FoV angle of camera");
    parser.parse(std::string(options));
    readOption(parser, "--fov-angle", fovAngle);
    readOption(parser, "--min-distance", minDistance);
    readOption(parser, "--max-distance", maxDistance);
}

// Width of a hand in the unit of the distances, as part of the frame's diagonal at distance 1 and
// a half-angle of 45 degrees, by the frame's shape.
float handFactor() {
    const int64_t low = std::min(frameSize.width, frameSize.height);
    const int64_t high = std::max(frameSize.width, frameSize.height);
    if (high * 9 == low * 16) return 9.23f;
    if (high * 3 == low * 4) return 8.49f;
    if (low == high) return 10.06f;
    KZ_LOG_PLAIN("undefined ratio of camera (using default value)");
    return 9.17f;
}

float frameDiagonal() {
    const int64_t width = frameSize.width;
    const int64_t height = frameSize.height;
    return static_cast<float>(std::sqrt(static_cast<double>(width * width + height * height)));
}

}  // namespace

void GRE_SetParameters(const char* options) {
    if (frameSize.width == 0 || frameSize.height == 0) return;
    KZ_ASSERT_POINTER(options);
    readOptions(options);
    KZ_ASSERT(maxDistance > minDistance,
              "max-distance must be more than min-distance: min-distance = "
                  << minDistance << ", max-distance = " << maxDistance);

    const float halfTangent = std::tan(KZ::degreeToRadian(static_cast<float>(fovAngle) * 0.5f));
    const float span = handFactor() * frameDiagonal();
    const float minHandSize = span / (2 * halfTangent * static_cast<float>(maxDistance));
    const float maxHandSize = span / (2 * halfTangent * static_cast<float>(minDistance));
    KZ_GUARD(raisedHandDetector.setHandSizes(minHandSize, maxHandSize), raisedHandDetector.reset());
}

void GRE_SetFrameParameters(const char* options) {
    KZ_ASSERT_POINTER(options);
    // The text holds every parameter of the frame; most are for others.
    CommandLineParser::suppressWarnings();
    const CommandLineParser::ValueType::Value kind = CommandLineParser::ValueType::STRING;
    CommandLineParser parser;
    parser.add("", "--input-frame-part", "", false, kind, "Frame part path");
    parser.add("", "--output-frame-part", "", false, kind, "Frame part path");
    parser.parse(std::string(options));
    data.inputFramePart = parser.getString("--input-frame-part");
    data.outputFramePart = parser.getString("--output-frame-part");
}
