#include <algorithm>

#include "AbsFeature.h"
#include "CascadedClassifier.h"
#include "KZ_Assert.h"

namespace {

const int BLOCK = 4;

// Sums of a stage's votes at several windows: each classifier's fields are then loaded once for all
// of them, and their table look-ups overlap.
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

    const bool blocksOfSecond = startStage_ == 1 && hasOnlyRmct(1);
    for (int y = rect.top; y <= rect.bottom; y += step) {
        ScanRow row = {rmctTransform.data(0, y),
                       mono.data(0, y),
                       integralImage.row<unsigned int>(pShift[y]),
                       pShift,
                       y,
                       blocksOfSecond,
                       0,
                       {},
                       {}};
        scanRow(row, rect.left, rect.right, step, out);
    }
}

bool CascadedClassifier::hasOnlyRmct(size_t stage) const {
    return stage < strongClassifiers.size() && strongClassifiers[stage].haarClassifiers().empty() &&
           strongClassifiers[stage].hogClassifiers().empty();
}

// The first stage on every window of a row; those that pass gather for the second.
void CascadedClassifier::scanRow(ScanRow& row, int first, int last, int step,
                                 std::vector<AdaObject>& out) const {
    const WeakClassifierRmct* const begin = pRmctClassifierStart_;
    const WeakClassifierRmct* const end = pRmctClassifierEnd_;
    const int threshold = rmctFirstStage_ ? firstStageThreshold_ : KZ::minValue<int>();
    int x = first;
    for (; x + (BLOCK - 1) * step <= last; x += BLOCK * step) {
        const unsigned char* const p = row.rmct + x;
        const unsigned char* const windows[BLOCK] = {p, p + step, p + 2 * step, p + 3 * step};
        int sums[BLOCK];
        sumVotes(begin, end, windows, sums);
        for (int i = 0; i < BLOCK; ++i) {
            if (sums[i] >= threshold) gather(row, x + i * step, sums[i], out);
        }
    }
    for (; x <= last; x += step) {
        const int sum = sumVotes(begin, end, row.rmct + x);
        if (sum >= threshold) gather(row, x, sum, out);
    }
    judgeGathered(row, out);
}

void CascadedClassifier::gather(ScanRow& row, int x, int sum, std::vector<AdaObject>& out) const {
    row.x[row.count] = x;
    row.sum[row.count] = sum;
    if (++row.count == BLOCK) judgeGathered(row, out);
}

// The further stages on the gathered windows, in their order.
void CascadedClassifier::judgeGathered(ScanRow& row, std::vector<AdaObject>& out) const {
    unsigned int next = static_cast<unsigned int>(startStage_);
    int threshold = KZ::minValue<int>();
    if (row.blocksOfSecond && row.count == BLOCK) {
        const StrongClassifier& second = strongClassifiers[1];
        const unsigned char* const windows[BLOCK] = {row.rmct + row.x[0], row.rmct + row.x[1],
                                                     row.rmct + row.x[2], row.rmct + row.x[3]};
        const std::vector<WeakClassifierRmct>& weak = second.rmctClassifiers();
        sumVotes(weak.data(), weak.data() + weak.size(), windows, row.sum);
        threshold = second.threshold;
        next = 2;
    }
    for (int i = 0; i < row.count; ++i) {
        if (row.sum[i] < threshold) continue;
        const int x = row.x[i];
        int score = row.sum[i];
        if (detect(row.rmct + x, row.mono + x, row.integral + row.shift[x], next, score))
            out.push_back(objectAt(x, row.y, score));
    }
    row.count = 0;
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
