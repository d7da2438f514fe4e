#include "Exposure.h"

#include <algorithm>
#include <opencv2/imgproc.hpp>

#include "Phone.h"
#include "Sensor.h"

namespace sample {

namespace {

constexpr int moments = 4;  // within one exposure

double startOf(int index) {
    return index / framesPerSecond;
}

hand::Light handLightAt(double time) {
    const RoomLight room = roomLightAt(time);
    hand::Light light;
    light.toKey = {.62f, .42f, .62f};
    light.key = hand::Vector3{.84f, .85f, .85f} * room.window;
    const hand::Vector3 lamp = hand::Vector3{.20f, .155f, .10f} * room.lamp;
    light.above = light.above * room.window + lamp * .7f;
    light.aside = light.aside * (.85f * room.window) + lamp;
    light.below += lamp * .4f;
    return light;
}

// The forearm comes from below, whichever way the hand is rolled.
float wristTilt(const Appearance& appearance) {
    const float side = appearance.left ? 1.f : -1.f;
    return side * .5f * appearance.key.roll * std::cos(appearance.key.yaw * hand::degrees);
}

bool facesWithin(float yaw, float direction) {
    return std::abs(std::remainder(yaw - direction, 360.f)) <= 30;
}

State stateOf(const HandKey& key, const hand::HandTruth& where) {
    if (!where.inside || std::abs(where.angle) > 35) return State::IGNORE;
    if (key.curl > .85f) return State::FIST;
    if (key.curl > .15f) return State::IGNORE;
    if (facesWithin(key.yaw, 0)) return State::PALM;
    return facesWithin(key.yaw, 180) ? State::BACK : State::IGNORE;
}

}  // namespace

std::string nameOf(State state) {
    switch (state) {
        case State::PALM:
            return "palm";
        case State::BACK:
            return "back";
        case State::FIST:
            return "fist";
        case State::MOVING:
            return "moving";
        case State::IGNORE:
            return "ignore";
        default:
            return "none";
    }
}

Exposure::Exposure(const hand::HandMesh& mesh)
    : mesh_(mesh),
      rightSurface_(hand::paintHand(mesh, hand::skinTone(.16f), {})),
      leftSurface_(
          hand::paintHand(mesh, hand::skinTone(.42f), {{.22f, .21f, .20f}, {.30f, .07f, .05f}})) {}

hand::PosedHand Exposure::poseAt(const Appearance& appearance) const {
    const HandKey& key = appearance.key;
    hand::HandPose shape = hand::mix(hand::openPose(), hand::closedPose(), key.together);
    shape = hand::mix(shape, hand::fistPose(), key.curl);
    shape.wristTilt = wristTilt(appearance);
    hand::HandPlacement placement;
    const float palm = hand::length(mesh_.indexSide - mesh_.pinkySide);
    const float distance = camera_.focal * palm / key.palmWidth;
    placement.position = {(key.cx - camera_.width * .5f) * distance / camera_.focal,
                          (camera_.height * .5f - key.cy) * distance / camera_.focal, -distance};
    placement.roll = key.roll;
    // Mirrored, so that both hands turn their thumbs the same way round.
    placement.yaw = appearance.left ? -key.yaw : key.yaw;
    placement.left = appearance.left;
    return hand::pose(mesh_, shape, placement);
}

hand::HandLayer Exposure::handLayer(double start) const {
    hand::HandLayer sum(camera_.width, camera_.height);
    for (int i = 0; i < moments; ++i) {
        const double time = start + shutter * (i + .5) / moments;
        Appearance appearance;
        if (!handAt(time, appearance)) continue;
        const hand::PosedHand posed = poseAt(appearance);
        const hand::Light light = handLightAt(time);
        const hand::Surface& surface = appearance.left ? leftSurface_ : rightSurface_;
        // Each moment has its samples elsewhere in the pixel.
        const float shift = (float(i) + .5f) / (2 * moments) - .25f;
        sum.add(hand::render(mesh_, surface, posed, hand::illuminate(mesh_, posed, light), light,
                             camera_, hand::Parts::HAND_AND_FOREARM, 2, shift, -shift * .5f),
                1.f / moments);
    }
    return sum;
}

// Linear light, 32-bit BGR.
cv::Mat Exposure::roomPicture(double start) const {
    const cv::Mat room = lightRoom(room_.at(start + shutter / 2), roomLightAt(start));
    const cv::Size size(camera_.width, camera_.height);
    cv::Mat sum = cv::Mat::zeros(size, CV_32FC3);
    for (int i = 0; i < moments; ++i) {
        const PictureMotion motion = pictureMotionAt(start + shutter * (i + .5) / moments);
        cv::Mat turn = cv::getRotationMatrix2D({room.cols * .5f, room.rows * .5f}, motion.roll, 1);
        turn.at<double>(0, 2) += motion.x - roomMargin;
        turn.at<double>(1, 2) += motion.y - roomMargin;
        cv::Mat moved;
        cv::warpAffine(room, moved, turn, size, cv::INTER_LINEAR, cv::BORDER_REFLECT);
        sum += moved * (1.f / moments);
    }
    return sum;
}

cv::Mat Exposure::frame(int index) const {
    const double start = startOf(index);
    cv::Mat picture = roomPicture(start);
    layOver(picture, handLayer(start));
    return develop(picture, index);
}

FrameTruth Exposure::truth(int index) const {
    const double time = startOf(index) + shutter / 2;
    FrameTruth truth;
    Appearance appearance;
    if (!handAt(time, appearance)) {
        if (shakeAt(time) > 0) truth.state = State::MOVING;
        return truth;
    }
    const hand::PosedHand posed = poseAt(appearance);
    // Still, or already, below the picture's edge, finger tips and all.
    const bool seen =
        std::any_of(posed.positions.begin(), posed.positions.end(), [&](const hand::Vector3& p) {
            return hand::project(camera_, p).y < float(camera_.height);
        });
    if (!seen) return truth;
    truth.hand = true;
    truth.left = appearance.left;
    truth.where = hand::measure(mesh_, posed, camera_);
    truth.state = stateOf(appearance.key, truth.where);
    return truth;
}

}  // namespace sample
