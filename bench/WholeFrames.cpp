// Whole frames, from the camera's buffer to the result.

#include <benchmark/benchmark.h>

#include <time.h>

#include <algorithm>

#include "DetectorData.h"
#include "DetectorResult.h"
#include "Frames.h"
#include "KZ_ColorConversion.h"
#include "KZ_Yuv420Converter.h"
#include "PalmDetectionChain.h"
#include "RaisedHandDetector.h"

namespace {

using benchmark::State;

// Time that this thread had a core: what else runs on the machine does not count.
double cpuSeconds() {
    timespec now;
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

// What the engine does with one camera frame, without its rest after a hit, so that a palm which
// stays in view is tracked on every frame.
class FramePath {
public:
    // One for all runs, as the library has one: its detectors are shared.
    static FramePath& get() {
        static FramePath path;
        return path;
    }

    // Returns the milliseconds it took.
    double run(const std::vector<unsigned char>& nv21) {
        const double start = cpuSeconds();
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
        return (cpuSeconds() - start) * 1000;
    }
    bool found() const { return found_; }

private:
    FramePath() { detector_.setHandSizes(17.28f, 57.6f); }

    RaisedHandDetector detector_;
    DetectorData data_;
    KZ::Image bgr_, mono_;
    bool found_ = false;
};

// In search every third frame is scanned in full: a run of three costs one scan, so the dearest of
// the three is what counts. Frames with a palm would turn to tracking and are left out.
void fullScanFrame(State& state) {
    FramePath& path = FramePath::get();
    const auto& clip = bench::nv21Frames();
    const size_t empty[] = {0, 1, 2, 21, 22, 37, 38};  // no hand in these
    for (int i = 0; i < 9; ++i) path.run(clip[0]);
    size_t next = 0;
    for (auto _ : state) {
        const auto& frame = clip[empty[next++ % 7] % clip.size()];
        double dearest = 0;
        for (int i = 0; i < 3; ++i) dearest = std::max(dearest, path.run(frame));
        state.SetIterationTime(dearest / 1000);
    }
}
BENCHMARK(fullScanFrame)->Name("frame/full_scan")->Unit(benchmark::kMillisecond)->UseManualTime();

void trackingFrame(State& state) {
    FramePath& path = FramePath::get();
    for (int i = 0; i < 9; ++i) path.run(bench::palmFrame());
    if (!path.found()) {
        state.SkipWithError("the palm of the sample clip is not found");
        return;
    }
    for (auto _ : state) state.SetIterationTime(path.run(bench::palmFrame()) / 1000);
}
BENCHMARK(trackingFrame)->Name("frame/tracking")->Unit(benchmark::kMillisecond)->UseManualTime();

}  // namespace
