#include "RenderedPalm.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>

#include "Random.h"
#include "Room.h"
#include "Sensor.h"

namespace evaluate {

namespace {

constexpr int WIDTH = 320, HEIGHT = 240;
/// The field of view of the renderer's camera of 640 by 480.
constexpr float FOCAL = 203.5f;
/// Electrons that white light of 1 frees in a pixel, and the noise of reading them.
constexpr float WHITE_ELECTRONS = 6000, READ_NOISE = 4;
/// Stops that the camera makes up for; what is darker still comes out dark.
constexpr float MOST_GAIN = 3;

std::array<cv::Mat, PalmStudio::BACKGROUNDS> paintBackgrounds() {
    const cv::Mat room = sample::lightRoom(sample::Room().at(0), {1, .5f});
    const cv::Rect whole(sample::roomMargin, sample::roomMargin, 640, 480);
    // The window and the desk from nearer, the other way round.
    const cv::Rect near(360, 130, 380, 285);
    std::array<cv::Mat, PalmStudio::BACKGROUNDS> backgrounds;
    cv::resize(room(whole), backgrounds[0], {WIDTH, HEIGHT}, 0, 0, cv::INTER_AREA);
    cv::resize(room(near), backgrounds[1], {WIDTH, HEIGHT}, 0, 0, cv::INTER_AREA);
    cv::flip(backgrounds[1], backgrounds[1], 1);
    return backgrounds;
}

hand::Light lightOf(const PalmView& view) {
    hand::Light light;
    if (view.sideLight) {
        light.toKey = {-.85f, .2f, .4f};
        light.key = {1.2f, 1.15f, 1.1f};
    }
    light.above = light.above * view.ambient;
    light.aside = light.aside * view.ambient;
    light.below = light.below * view.ambient;
    return light;
}

/// Mean light of the hand within `reach` of the middle of the palm.
double brightnessOf(const hand::HandLayer& layer, const cv::Point2d& middle, double reach) {
    hand::Vector3 sum;
    float covered = 0;
    for (int y = 0; y < layer.height; ++y) {
        for (int x = 0; x < layer.width; ++x) {
            if (std::hypot(x - middle.x, y - middle.y) > reach) continue;
            const size_t i = static_cast<size_t>(y) * layer.width + x;
            sum += layer.colour[i];
            covered += layer.coverage[i];
        }
    }
    return (sum.x + sum.y + sum.z) / (3 * std::max(covered, 1.f));
}

double brightnessOf(const cv::Mat& light, const cv::Point2d& middle, double reach) {
    const cv::Rect2d around(middle.x - reach, middle.y - reach, 2 * reach, 2 * reach);
    const cv::Scalar mean = cv::mean(light(cv::Rect(around) & cv::Rect({}, light.size())));
    return (mean[0] + mean[1] + mean[2]) / 3;
}

/// Fewer photons, and the gain by which the camera makes up for them.
void dim(cv::Mat& light, float stops, uint64_t seed) {
    const float electrons = WHITE_ELECTRONS * std::exp2(-stops);
    const float gain = std::exp2(std::min(stops, MOST_GAIN)) / WHITE_ELECTRONS;
    cv::Mat noise(light.size(), light.type());
    cv::RNG(seed).fill(noise, cv::RNG::NORMAL, 0, 1);
    float* values = light.ptr<float>();
    const float* deviates = noise.ptr<float>();
    for (size_t i = 0; i < light.total() * 3; ++i) {
        const float count = values[i] * electrons;
        const float counted = count + deviates[i] * std::sqrt(count + READ_NOISE * READ_NOISE);
        values[i] = std::max(0.f, counted * gain);
    }
}

}  // namespace

PalmStudio::PalmStudio(const hand::HandMesh& mesh)
    : mesh_(mesh), camera_{WIDTH, HEIGHT, FOCAL}, backgrounds_(paintBackgrounds()) {
    const std::array<float, TONES> darkness{.1f, .5f, .9f};
    const std::array<hand::SleeveColours, TONES> sleeves{
        {{}, {{.22f, .21f, .20f}, {.30f, .07f, .05f}}, {{.12f, .20f, .13f}, {.45f, .44f, .38f}}}};
    for (int i = 0; i < TONES; ++i) {
        surfaces_.push_back(hand::paintHand(mesh, hand::skinTone(darkness[i]), sleeves[i]));
    }
}

hand::PosedHand PalmStudio::pose(const PalmView& view, const PalmVariant& variant) const {
    hand::HandPose shape = hand::mix(hand::openPose(), hand::closedPose(), view.together);
    shape = hand::mix(shape, hand::fistPose(), view.folded);
    const float side = variant.left ? 1.f : -1.f;
    // The wrist gives half: a forearm comes from below.
    shape.wristTilt = side * .5f * view.lean;
    shape.wristBend = -.5f * view.tip;

    training::Random random(variant.seed);
    hand::HandPlacement placement;
    const float distance = FOCAL * hand::length(mesh_.indexSide - mesh_.pinkySide) / view.palmWidth;
    const auto aside = static_cast<float>(random.uniform(-30, 30));
    const auto up = static_cast<float>(random.uniform(-12, 12));
    placement.position = {aside * distance / FOCAL, up * distance / FOCAL, -distance};
    placement.roll = view.lean;
    placement.pitch = view.tip;
    placement.yaw = view.turn * -side * (variant.background % 2 ? -1.f : 1.f);
    placement.left = variant.left;
    return hand::pose(mesh_, shape, placement);
}

hand::HandLayer PalmStudio::expose(const PalmView& view, const PalmVariant& variant,
                                   const hand::PosedHand& posed) const {
    const hand::Light light = lightOf(view);
    const hand::Illumination illumination = hand::illuminate(mesh_, posed, light);
    const double direction = training::Random{variant.seed, 1}.uniform(0, CV_PI);
    const int moments = std::max(1, cvCeil(view.motion));
    hand::HandLayer sum(WIDTH, HEIGHT);
    for (int i = 0; i < moments; ++i) {
        const double way = view.motion * ((i + .5) / moments - .5);
        sum.add(hand::render(mesh_, surfaces_[variant.tone], posed, illumination, light, camera_,
                             hand::Parts::HAND_AND_FOREARM, 3,
                             static_cast<float>(way * std::cos(direction)),
                             static_cast<float>(way * std::sin(direction))),
                1.f / static_cast<float>(moments));
    }
    return sum;
}

RenderedPalm PalmStudio::take(const PalmView& view, const PalmVariant& variant) const {
    const hand::PosedHand posed = pose(view, variant);
    RenderedPalm result;
    result.truth = hand::measure(mesh_, posed, camera_);
    result.palm = {{result.truth.cx, result.truth.cy}, view.palmWidth};

    const hand::HandLayer layer = expose(view, variant, posed);
    cv::Mat light = backgrounds_[variant.background].clone();
    if (view.behind > 0) {
        const double palm = brightnessOf(layer, result.palm.centre, .75 * view.palmWidth);
        light *= view.behind * palm / brightnessOf(light, result.palm.centre, 2 * view.palmWidth);
    }
    sample::layOver(light, layer);
    dim(light, view.dimmed, variant.seed);
    const cv::Mat picture = sample::develop(light, static_cast<int>(variant.seed % 1000));
    cv::cvtColor(picture, result.frame, cv::COLOR_BGR2GRAY);
    return result;
}

}  // namespace evaluate
