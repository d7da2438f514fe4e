#include <algorithm>
#include <cstddef>

#include "AbsFeature.h"
#include "CascadedClassifier.h"
#include "KZ_Assert.h"

namespace {

const int BLOCK = StrongClassifier::BLOCK;

// Sums of the first stage's votes at several windows at once, see StrongClassifier::scoreBlock.
inline void sumVotes(const WeakClassifierRmct* begin, const WeakClassifierRmct* end,
                     const unsigned char* const (&windows)[BLOCK], int (&sums)[BLOCK]) {
    const unsigned char *const window0 = windows[0], *const window1 = windows[1],
                               *const window2 = windows[2], *const window3 = windows[3];
    int sum0 = 0, sum1 = 0, sum2 = 0, sum3 = 0;
    for (const WeakClassifierRmct* weak = begin; weak != end; ++weak) {
        const signed char* const data = weak->data;
        const int offset = weak->offset;
        sum0 += data[window0[offset]];
        sum1 += data[window1[offset]];
        sum2 += data[window2[offset]];
        sum3 += data[window3[offset]];
    }
    sums[0] = sum0;
    sums[1] = sum1;
    sums[2] = sum2;
    sums[3] = sum3;
}

inline int sumVotes(const WeakClassifierRmct* begin, const WeakClassifierRmct* end,
                    const unsigned char* rmct) {
    int sum = 0;
    for (const WeakClassifierRmct* weak = begin; weak != end; ++weak) sum += weak->vote(rmct);
    return sum;
}

}  // namespace

CascadedClassifier::ScanRange CascadedClassifier::scanRange(const KZ::Size& layerSize,
                                                            const KZ::Rect& rect) const {
    int xs = rect.left - objectRect.left;
    int ys = std::max(rect.top - objectRect.top, 0);
    int xe = std::min(layerSize.width, monoSize.width - objectRect.right + rect.right);
    int ye = std::min(layerSize.height, monoSize.height - objectRect.bottom + rect.bottom);
    if (ys > ye || std::max(xs, 0) > xe) xs = ys = xe = ye = 0;
    return ScanRange{std::max(xs, 0), ys, xe - monoSize.width, ye - monoSize.height};
}

const std::vector<int>& CascadedClassifier::shifts(int key, int last, float zoom) {
    std::vector<int>& shift = shifts_[key];
    const size_t needed = static_cast<size_t>(std::max(last, 1)) + 1;
    if (shift.size() >= needed) return shift;
    shift.resize(needed);
    for (size_t i = 0; i < needed; ++i) shift[i] = static_cast<int>(static_cast<float>(i) * zoom);
    return shift;
}

void CascadedClassifier::addMatches(const KZ::Image& rmct, const KZ::Image& mono,
                                    const KZ::Image& integral, std::vector<AdaObject>& out,
                                    float zoom, int step) {
    addMatches(rmct, mono, integral, out, rmct.rect(), zoom, step);
}

void CascadedClassifier::addMatches(const KZ::Image& rmct, const KZ::Image& mono,
                                    const KZ::Image& integral, std::vector<AdaObject>& out,
                                    const KZ::Rect& rect, float zoom, int step) {
    KZ_ASSERT_GT(step, 0);
    const ScanRange range = scanRange(mono.size(), rect);
    if (range.empty()) return;
    const std::vector<int>& shift = shifts(zoomKey(zoom), std::max(range.ye, range.xe), zoom);
    activate(rmct.stripLength(), mono.stripLength(), integral.stripLength(), zoom, monoSize);

    const StrongClassifier& stage = strongClassifiers.front();
    if (stage.haarClassifiers().size() == 1 && stage.rmctClassifiers().empty() &&
        stage.hogClassifiers().empty()) {
        addMatchesDynamic(rmct, mono, integral, out, range, shift, step);
    } else {
        addMatchesStatic(rmct, mono, integral, out, range, shift, step);
    }
}

void CascadedClassifier::addMatchesStatic(const KZ::Image& rmctTransform, const KZ::Image& mono,
                                          const KZ::Image& integralImage,
                                          std::vector<AdaObject>& out, const ScanRange& range,
                                          const std::vector<int>& shift, int step) const {
    const int* const pShift = shift.data();
    const KZ::Rect rect(range.xs, range.ys, range.xe, range.ye);
    KZ_ASSERT(pShift[rect.right] < integralImage.width(),
              "ShiftX " << pShift[rect.right] << " not compatible with integral image "
                        << integralImage.size());
    KZ_ASSERT(pShift[rect.bottom] < integralImage.height(),
              "ShiftY " << pShift[rect.bottom] << " not compatible with integral image "
                        << integralImage.size());
    if (rmctFirstStage_) KZ_ASSERT_POINTER(pRmctClassifierStart_);
    KZ_ASSERT(rmctTransform.isCreated(), "rmctTransform not created");
    KZ_ASSERT(mono.isCreated(), "mono not created");
    KZ_ASSERT(integralImage.isCreated(), "integralImage not created");

    waiting_.resize(strongClassifiers.size());
    for (Waiting& waiting : waiting_) waiting.count = 0;
    for (int y = rect.top; y <= rect.bottom; y += step) {
        const Window row = {rect.left, y, rmctTransform.data(0, y), mono.data(0, y),
                            integralImage.row<unsigned int>(pShift[y])};
        scanRow(row, pShift, rect.right, step, out);
    }
    for (size_t stage = 0; stage < waiting_.size(); ++stage) judge(stage, out);
}

// The first stage on every window of a row. `row` holds the row's begin in each image, and `shift`
// the frame coordinate of each layer coordinate.
void CascadedClassifier::scanRow(const Window& row, const int* shift, int last, int step,
                                 std::vector<AdaObject>& out) const {
    const WeakClassifierRmct* const begin = pRmctClassifierStart_;
    const WeakClassifierRmct* const end = pRmctClassifierEnd_;
    const int threshold = rmctFirstStage_ ? firstStageThreshold_ : KZ::minValue<int>();
    const auto pass = [&](int x, int sum) {
        if (sum < threshold) return;
        const Window window = {x, row.y, row.rmct + x, row.mono + x, row.integral + shift[x]};
        advance(window, startStage_, sum, out);
    };
    int x = row.x;
    for (; x + (BLOCK - 1) * step <= last; x += BLOCK * step) {
        const unsigned char* const p = row.rmct + x;
        const unsigned char* const windows[BLOCK] = {p, p + step, p + 2 * step, p + 3 * step};
        int sums[BLOCK];
        sumVotes(begin, end, windows, sums);
        for (int i = 0; i < BLOCK; ++i) pass(x + i * step, sums[i]);
    }
    for (; x <= last; x += step) pass(x, sumVotes(begin, end, row.rmct + x));
}

// Sends a window that passed with `score` to `stage`, where it waits for others: a stage takes
// several windows at once. They come to each stage, and to `out`, in the order of the scan.
void CascadedClassifier::advance(const Window& window, size_t stage, int score,
                                 std::vector<AdaObject>& out) const {
    if (stage == waiting_.size()) {
        out.push_back(objectAt(window.x, window.y, score));
        return;
    }
    Waiting& waiting = waiting_[stage];
    const int i = waiting.count;
    waiting.x[i] = window.x;
    waiting.y[i] = window.y;
    waiting.rmct[i] = window.rmct;
    waiting.mono[i] = window.mono;
    waiting.integral[i] = window.integral;
    if (++waiting.count == BLOCK) judge(stage, out);
}

// `stage` on the windows that wait for it.
void CascadedClassifier::judge(size_t stage, std::vector<AdaObject>& out) const {
    Waiting& waiting = waiting_[stage];
    if (waiting.count == 0) return;
    const StrongClassifier& strong = strongClassifiers[stage];
    int scores[BLOCK];
    strong.scoreBlock(waiting.rmct, waiting.integral, waiting.count, scores);
    if (static_cast<int>(stage) == hogStart_) {
        judgeHog(waiting, stage, scores, out);
    } else {
        for (int i = 0; i < waiting.count; ++i) {
            if (scores[i] < strong.threshold) continue;
            const Window window = {waiting.x[i], waiting.y[i], waiting.rmct[i], waiting.mono[i],
                                   waiting.integral[i]};
            advance(window, stage + 1, scores[i], out);
        }
    }
    waiting.count = 0;
}

// `stage`, the first with HOG classifiers, whose others voted `scores`, and those after it, to
// which windows go on one by one.
void CascadedClassifier::judgeHog(const Waiting& waiting, size_t stage, int* scores,
                                  std::vector<AdaObject>& out) const {
    const StrongClassifier& strong = strongClassifiers[stage];
    int summed = 0;
    KZ::Rect corners;
    for (int i = 0; i < waiting.count; ++i) {
        if (i == summed) summed = sumNeighbours(waiting, i, corners);
        integralHog_.createRef(gradientSums_, hogWindow(waiting.x[i] - corners.left,
                                                        waiting.y[i] - corners.top, KZ::Size()));
        scores[i] += strong.scoreHog(integralHog_);
        if (scores[i] >= strong.threshold &&
            detect(waiting.rmct[i], waiting.mono[i], waiting.integral[i],
                   static_cast<unsigned int>(stage) + 1, scores[i]))
            out.push_back(objectAt(waiting.x[i], waiting.y[i], scores[i]));
    }
}

// Sums the gradients of window `first` and of those after it that overlap it almost whole. Returns
// the number of the first one that does not; `corners` is what the others' corners span.
int CascadedClassifier::sumNeighbours(const Waiting& waiting, int first, KZ::Rect& corners) const {
    corners = KZ::Rect(waiting.x[first], waiting.y[first], waiting.x[first], waiting.y[first]);
    int i = first + 1;
    for (; i < waiting.count; ++i) {
        const KZ::Rect wider(
            std::min(corners.left, waiting.x[i]), std::min(corners.top, waiting.y[i]),
            std::max(corners.right, waiting.x[i]), std::max(corners.bottom, waiting.y[i]));
        if (wider.width() > HOG_SPREAD || wider.height() > HOG_SPREAD) break;
        corners = wider;
    }
    const unsigned char* const corner =
        waiting.mono[first] - (waiting.x[first] - corners.left) -
        static_cast<ptrdiff_t>(waiting.y[first] - corners.top) * monoStrip_;
    sumGradients(corner, corners.size());
    return i;
}

void CascadedClassifier::addMatchesDynamic(const KZ::Image& rmctTransform, const KZ::Image& mono,
                                           const KZ::Image& integralImage,
                                           std::vector<AdaObject>& out, const ScanRange& range,
                                           const std::vector<int>& shift, int step) const {
    KZ_ASSERT(rmctTransform.isCreated(), "rmctTransform not created");
    KZ_ASSERT(mono.isCreated(), "mono not created");
    KZ_ASSERT(integralImage.isCreated(), "integralImage not created");

    AbsFeature feature(firstStage_->haarClassifiers().front(), firstStageThreshold_);
    feature.setStripLength(static_cast<unsigned short>(integralImage.stripLength()));
    for (int y = range.ys; y <= range.ye; y += step) {
        const unsigned int* const integralRow =
            integralImage.row<unsigned int>(shift[static_cast<size_t>(y)]);
        for (int x = range.xs; x <= range.xe; x += step) {
            const unsigned int* const p = integralRow + shift[static_cast<size_t>(x)];
            if (!feature.passes(p)) continue;
            // A cascade without further stages leaves the stage's own sum as the score.
            int score = firstStage_->scoreHaar(p);
            if (detect(rmctTransform.data(x, y), mono.data(x, y), p, 1, score))
                out.push_back(objectAt(x, y, score));
        }
    }
}
