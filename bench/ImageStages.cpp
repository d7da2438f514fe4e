// Frame intake, grey, rotation, reduction: each beside OpenCV's counterpart.

#include <benchmark/benchmark.h>

#include <cmath>
#include <opencv2/imgproc.hpp>

#include "Frames.h"
#include "KZ_ColorConversion.h"
#include "KZ_ResizeImage.h"
#include "KZ_RotateImage.h"
#include "KZ_Yuv420Converter.h"

namespace {

using benchmark::State;

// The detector's zoom at the default distances, and the picture it makes of 320 by 240.
const float ZOOM = 1.152f;
const KZ::Size ROTATED(static_cast<int>(277 * 1.4f), 208);

void intakeOurs(State& state) {
    const std::vector<unsigned char>& nv21 = bench::palmFrame();
    KZ::Image buffer, bgr;
    buffer.createRef(const_cast<unsigned char*>(nv21.data()), KZ::Size(640, 720),
                     KZ::COLOR_MODE_BGR);
    for (auto _ : state) {
        KZ::yuv420toBgr(buffer, bgr, true, false, false);
        benchmark::DoNotOptimize(bgr.data());
    }
}
BENCHMARK(intakeOurs)->Name("intake/nv21_to_half_bgr/ours");

void intakePeer(State& state) {
    const std::vector<unsigned char>& nv21 = bench::palmFrame();
    const cv::Mat buffer(720, 640, CV_8UC1, const_cast<unsigned char*>(nv21.data()));
    cv::Mat bgr, half;
    for (auto _ : state) {
        cv::cvtColor(buffer, bgr, cv::COLOR_YUV2BGR_NV21);
        cv::resize(bgr, half, cv::Size(320, 240), 0, 0, cv::INTER_NEAREST);
        benchmark::DoNotOptimize(half.data);
    }
}
BENCHMARK(intakePeer)->Name("intake/nv21_to_half_bgr/peer:opencv");

void monoOurs(State& state) {
    const KZ::Image bgr = bench::noise(320, 240, KZ::COLOR_MODE_BGR);
    KZ::Image mono;
    for (auto _ : state) {
        KZ::toMono(bgr, mono, KZ::Rect());
        benchmark::DoNotOptimize(mono.data());
    }
}
BENCHMARK(monoOurs)->Name("grey/bgr_320x240/ours");

void monoPeer(State& state) {
    const KZ::Image bgr = bench::noise(320, 240, KZ::COLOR_MODE_BGR);
    cv::Mat mono;
    for (auto _ : state) {
        cv::cvtColor(bench::view(bgr), mono, cv::COLOR_BGR2GRAY);
        benchmark::DoNotOptimize(mono.data);
    }
}
BENCHMARK(monoPeer)->Name("grey/bgr_320x240/peer:opencv");

float radians(const State& state) {
    return static_cast<float>(state.range(0) * M_PI / 180);
}

void rotateOurs(State& state) {
    const KZ::Image frame = bench::greyPalmFrame();
    KZ::Image rotated(ROTATED, KZ::COLOR_MODE_MONO);
    for (auto _ : state) {
        KZ::rotateAndZoomImage(frame, rotated, radians(state), ZOOM, ZOOM, KZ::PointF(160, 120),
                               true);
        benchmark::DoNotOptimize(rotated.data());
    }
}
BENCHMARK(rotateOurs)->Name("upright/rotate_and_zoom_387x208/ours")->Arg(0)->Arg(25)->Arg(90);

void rotatePeer(State& state) {
    const KZ::Image frame = bench::greyPalmFrame();
    const double c = std::cos(radians(state)) * ZOOM, s = std::sin(radians(state)) * ZOOM;
    const double cx = (ROTATED.width - 1) / 2.0, cy = (ROTATED.height - 1) / 2.0;
    const cv::Mat map =
        (cv::Mat_<double>(2, 3) << c, -s, 160 - c * cx + s * cy, s, c, 120 - s * cx - c * cy);
    cv::Mat rotated;
    for (auto _ : state) {
        cv::warpAffine(bench::view(frame), rotated, map, cv::Size(ROTATED.width, ROTATED.height),
                       cv::INTER_LINEAR | cv::WARP_INVERSE_MAP, cv::BORDER_REPLICATE);
        benchmark::DoNotOptimize(rotated.data);
    }
}
BENCHMARK(rotatePeer)
    ->Name("upright/rotate_and_zoom_387x208/peer:opencv")
    ->Arg(0)
    ->Arg(25)
    ->Arg(90);

void halveOurs(State& state) {
    const KZ::Image image = bench::noise(ROTATED.width, ROTATED.height, KZ::COLOR_MODE_MONO);
    KZ::Image half;
    for (auto _ : state) {
        KZ::scaleHalfImage(image, half, KZ::Rect());
        benchmark::DoNotOptimize(half.data());
    }
}
BENCHMARK(halveOurs)->Name("pyramid/halve_387x208/ours");

void halvePeer(State& state) {
    const KZ::Image image = bench::noise(ROTATED.width, ROTATED.height, KZ::COLOR_MODE_MONO);
    cv::Mat half;
    for (auto _ : state) {
        cv::resize(bench::view(image), half, cv::Size(ROTATED.width / 2, ROTATED.height / 2), 0, 0,
                   cv::INTER_AREA);
        benchmark::DoNotOptimize(half.data);
    }
}
BENCHMARK(halvePeer)->Name("pyramid/halve_387x208/peer:opencv");

void skipOurs(State& state) {
    const KZ::Image image = bench::noise(ROTATED.width, ROTATED.height, KZ::COLOR_MODE_MONO);
    KZ::Image layer;
    for (auto _ : state) {
        KZ::zoomSkipImage(image, layer, 1.2f, image.rect());
        benchmark::DoNotOptimize(layer.data());
    }
}
BENCHMARK(skipOurs)->Name("pyramid/skip_387x208_by_1.2/ours");

void skipPeer(State& state) {
    const KZ::Image image = bench::noise(ROTATED.width, ROTATED.height, KZ::COLOR_MODE_MONO);
    const cv::Size size(static_cast<int>(ROTATED.width / 1.2f),
                        static_cast<int>(ROTATED.height / 1.2f));
    cv::Mat layer;
    for (auto _ : state) {
        cv::resize(bench::view(image), layer, size, 0, 0, cv::INTER_NEAREST);
        benchmark::DoNotOptimize(layer.data);
    }
}
BENCHMARK(skipPeer)->Name("pyramid/skip_387x208_by_1.2/peer:opencv");

}  // namespace
