// Integral images, RMCT, HOG and the scan: each beside OpenCV's counterpart where there is one.

#include <benchmark/benchmark.h>

#include <opencv2/imgproc.hpp>
#include <opencv2/objdetect.hpp>

#include "DetectorData.h"
#include "DetectorResult.h"
#include "Frames.h"
#include "KZ_IntegralHog.h"
#include "KZ_IntegralImage.h"
#include "KZ_RmctPyramid.h"
#include "KZ_RmctTransform.h"
#include "KZ_RotateImage.h"
#include "PalmCascade.h"

namespace {

using benchmark::State;

const float ZOOM = 1.152f;

// The picture that the scan sees of a camera frame.
KZ::Image upright(const KZ::Image& frame) {
    KZ::Image rotated(KZ::Size(387, 208), KZ::COLOR_MODE_MONO);
    KZ::rotateAndZoomImage(frame, rotated, 0, ZOOM, ZOOM, KZ::PointF(160, 120), true);
    return rotated;
}

void integralOurs(State& state) {
    const KZ::Image image = upright(bench::greyPalmFrame());
    KZ::Image integral;
    for (auto _ : state) {
        KZ::computeIntegral(image, integral);
        benchmark::DoNotOptimize(integral.data());
    }
}
BENCHMARK(integralOurs)->Name("features/integral_387x208/ours");

void integralPeer(State& state) {
    const KZ::Image image = upright(bench::greyPalmFrame());
    cv::Mat integral;
    for (auto _ : state) {
        cv::integral(bench::view(image), integral, CV_32S);
        benchmark::DoNotOptimize(integral.data);
    }
}
BENCHMARK(integralPeer)->Name("features/integral_387x208/peer:opencv");

void rmctOurs(State& state) {
    const KZ::Image image = upright(bench::greyPalmFrame());
    KZ::Image rmct;
    for (auto _ : state) {
        KZ::computeRmct(image, rmct);
        benchmark::DoNotOptimize(rmct.data());
    }
}
BENCHMARK(rmctOurs)->Name("features/rmct_387x208/ours");

void hogOurs(State& state) {
    const KZ::Image image = upright(bench::greyPalmFrame());
    KZ::Image hog;
    for (auto _ : state) {
        KZ::computeIntegralHog(image, hog, KZ::Rect(100, 100, 135, 133),
                               KZ::COLOR_MODE_INTEGRAL_HOG_UNSIGNED6);
        benchmark::DoNotOptimize(hog.data());
    }
}
BENCHMARK(hogOurs)->Name("features/hog_of_a_window/ours");

// Does a little more: it normalises its blocks.
void hogPeer(State& state) {
    const KZ::Image image = upright(bench::greyPalmFrame());
    const cv::HOGDescriptor hog(cv::Size(32, 32), cv::Size(16, 16), cv::Size(8, 8), cv::Size(8, 8),
                                6);
    const cv::Mat window = bench::view(image)(cv::Rect(100, 100, 32, 32));
    std::vector<float> descriptor;
    for (auto _ : state) {
        hog.compute(window, descriptor);
        benchmark::DoNotOptimize(descriptor.data());
    }
}
BENCHMARK(hogPeer)->Name("features/hog_of_a_window/peer:opencv");

void productsOurs(State& state) {
    const KZ::Image image = upright(bench::greyPalmFrame());
    DetectorData data;
    for (auto _ : state) {
        data.compute(image, image.rect());
        benchmark::DoNotOptimize(data.integral.data());
    }
}
BENCHMARK(productsOurs)->Name("features/integral_and_pyramid_of_20_layers/ours");

KZ::SharedPtr<BaseDetector> scanner() {
    return ada__ada_staticPalm_2014_12_05__17_40_12(
        PatternDetector::Parameters(2, 1, 0.2f, KZ::RangeF()));
}

// Six cascades over all layers at step 2, one frame of the clip after the other.
void scanOurs(State& state) {
    std::vector<DetectorData> frames(bench::greyFrames().size());
    for (size_t i = 0; i < frames.size(); ++i) {
        const KZ::Image image = upright(bench::greyFrames()[i]);
        frames[i].compute(image, image.rect());
    }
    KZ::SharedPtr<BaseDetector> detector = scanner();
    detector->reset();
    size_t i = 0;
    for (auto _ : state) {
        DetectorResult result;
        DetectorData& data = frames[i++ % frames.size()];
        detector->detect(
            data,
            KZ::DetectRegion(data.mono.rect(), KZ::RangeF(), KZ::AngleRange(), KZ::Side::BOTH),
            result);
        benchmark::DoNotOptimize(result.found);
    }
    // The detector is shared and remembers the pyramid that it saw last.
    detector->reset();
}
BENCHMARK(scanOurs)->Name("scan/six_cascades_387x208/ours")->Unit(benchmark::kMillisecond);

// One upright face cascade of OpenCV over the same pictures, at a like ratio of sizes.
void scanPeer(State& state) {
    cv::CascadeClassifier faces;
    const std::string file =
        std::string("/usr/share/opencv4/") + "lbpcascades/lbpcascade_frontalface.xml";
    if (!faces.load(file)) {
        state.SkipWithError("needs Debian's opencv-data");
        return;
    }
    std::vector<KZ::Image> frames;
    for (const KZ::Image& frame : bench::greyFrames()) frames.push_back(upright(frame));
    std::vector<cv::Rect> found;
    size_t i = 0;
    for (auto _ : state) {
        faces.detectMultiScale(bench::view(frames[i++ % frames.size()]), found, 1.2, 1);
        benchmark::DoNotOptimize(found.data());
    }
}
BENCHMARK(scanPeer)
    ->Name("scan/one_lbp_face_cascade_387x208/peer:opencv")
    ->Unit(benchmark::kMillisecond);

}  // namespace
