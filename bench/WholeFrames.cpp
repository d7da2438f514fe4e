// Whole frames, from the camera's buffer to the result.

#include <benchmark/benchmark.h>

#include <chrono>
#include <fstream>

#include "DetectorData.h"
#include "DetectorResult.h"
#include "Frames.h"
#include "KZ_ColorConversion.h"
#include "KZ_Yuv420Converter.h"
#include "PalmDetectionChain.h"
#include "RaisedHandDetector.h"

namespace {

using benchmark::State;

// What the engine does with one camera frame, without its rest after a hit, so that a palm which
// stays in view is tracked on every frame.
class FramePath {
public:
    FramePath() { detector_.setHandSizes(17.28f, 57.6f); }

    // Returns the milliseconds it took.
    double run(const std::vector<unsigned char>& nv21) {
        const auto start = std::chrono::steady_clock::now();
        KZ::Image buffer;
        buffer.createRef(const_cast<unsigned char*>(nv21.data()), KZ::Size(640, 720),
                         KZ::COLOR_MODE_BGR);
        KZ::yuv420toBgr(buffer, bgr_, true, false, false);
        KZ::toMono(bgr_, mono_, KZ::Rect());
        data_.inputImage.createRef(mono_);
        DetectorResult result;
        detector_.detect(
            data_, KZ::DetectRegion(mono_.rect(), KZ::RangeF(), KZ::AngleRange(), KZ::Side::BOTH),
            result);
        found_ = result.found;
        return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now() - start)
            .count();
    }
    bool found() const { return found_; }

private:
    RaisedHandDetector detector_;
    DetectorData data_;
    KZ::Image bgr_, mono_;
    bool found_ = false;
};

// In search every third frame is scanned in full; only those count.
void fullScanFrame(State& state) {
    FramePath path;
    size_t frame = 0;
    const auto& clip = bench::nv21Frames();
    path.run(clip[0]);  // builds the cascades
    int phase = 1;
    for (auto _ : state) {
        for (; phase % 3 != 0; ++phase) path.run(clip[frame % clip.size()]);
        ++phase;
        state.SetIterationTime(path.run(clip[frame++ % clip.size()]) / 1000);
    }
}
BENCHMARK(fullScanFrame)
    ->Name("frame/clip_searched_in_turn")
    ->Unit(benchmark::kMillisecond)
    ->UseManualTime();

void trackingFrame(State& state) {
    FramePath path;
    for (int i = 0; i < 6; ++i) path.run(bench::palmFrame());
    if (!path.found()) {
        state.SkipWithError("the palm of the sample clip is not found");
        return;
    }
    for (auto _ : state) state.SetIterationTime(path.run(bench::palmFrame()) / 1000);
}
BENCHMARK(trackingFrame)->Name("frame/tracking")->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace
