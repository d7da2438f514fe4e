#pragma once

#include <opencv2/imgproc.hpp>
#include <vector>

#include "DetectorView.h"
#include "LibraryRing.h"
#include "Window.h"

/// Windows cut at random places of the first layers of a view of smoothed noise.
inline std::vector<training::Window> randomWindows(int count, const KZ::Size& size, uint64_t seed) {
    training::Random random(seed);
    cv::Mat frame(240, 320, CV_8U);
    cv::RNG(seed).fill(frame, cv::RNG::UNIFORM, 0, 255);
    cv::GaussianBlur(frame, frame, {0, 0}, 1.5);
    cv::normalize(frame, frame, 0, 255, cv::NORM_MINMAX);
    training::DetectorView view;
    view.make(frame, true);
    KZ::RmctPyramid pyramid;
    pyramid.init(training::PYRAMID_LAYERS, 1.0f, training::PYRAMID_STEP);
    KZ::Image integral;
    training::preparePyramid(view.image(), pyramid, integral);
    std::vector<training::Window> windows;
    for (int i = 0; i < count; ++i) {
        const int layer = random.below(9);
        const KZ::Image& mono = pyramid.getMono(layer);
        const KZ::Point corner(random.below(mono.width() - size.width + 1),
                               random.below(mono.height() - size.height + 1));
        windows.push_back(training::cutWindow(view.image(), pyramid, layer, corner, size));
    }
    return windows;
}

inline std::vector<const training::Window*> pointers(const std::vector<training::Window>& windows) {
    std::vector<const training::Window*> list;
    for (const training::Window& window : windows) list.push_back(&window);
    return list;
}

/// Features of all kinds, those of one kind together, in the order of a stage.
inline std::vector<training::Feature> someFeatures(const KZ::Size& size, int each, uint64_t seed) {
    training::Random random(seed);
    std::vector<training::Feature> features = training::rmctFeatures(size);
    features.resize(each);
    for (const auto& f : training::haarFeatures(size, each, random)) features.push_back(f);
    for (const auto& f : training::hogFeatures(size, each, random)) features.push_back(f);
    return features;
}

/// A ring of one cascade whose stages hold `each` features of a kind with random votes. Thresholds
/// let about half of the windows pass.
inline training::RingContent randomRing(const KZ::Size& size, int stages, int each, uint64_t seed) {
    training::Random random(seed);
    training::RingContent ring;
    ring.name = "palm";
    ring.cascades.resize(1);
    ring.cascades[0].shape = {"r0", size, 30};
    for (int s = 0; s < stages; ++s) {
        training::StageContent stage;
        for (const training::Feature& feature : someFeatures(size, each, seed + s)) {
            training::WeakClassifier weak;
            weak.feature = feature;
            for (int8_t& vote : weak.votes) vote = static_cast<int8_t>(random.below(255) - 127);
            stage.weak.push_back(weak);
        }
        ring.cascades[0].stages.push_back(stage);
    }
    return ring;
}
