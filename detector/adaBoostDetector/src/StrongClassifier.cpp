#include "StrongClassifier.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

#include "KZ_Assert.h"
#include "KZ_Check.h"

namespace {

// What the assertions on ranges test, without an address beyond the range, which may not exist.
template <typename Weak>
bool isSaneRange(const Weak* begin, const Weak* end, bool inputGiven) {
    if (begin == end) return true;
    const ptrdiff_t limit = static_cast<ptrdiff_t>(10000 * sizeof(Weak));
    return begin && end && end - begin < limit && inputGiven;
}

// True when the places that turns and mirroring lead to are numbers of the classifier's type, too.
bool staysInRange(const WeakClassifierRmct& weak, const KZ::Size& size) {
    const KZ::Point opposite(size.width - 1 - weak.x, size.height - 1 - weak.y);
    return opposite.x <= KZ::maxValue<signed char>() && opposite.y <= KZ::maxValue<signed char>();
}

template <typename Weak>
void checkVotes(const std::vector<Weak>& classifiers) {
    for (const Weak& weak : classifiers) {
        const Weak* pClassifiers = &weak;
        KZ_ASSERT_POINTER(pClassifiers->getData());
    }
}

template <typename Weak>
void setRange(const std::vector<Weak>& classifiers, const Weak*& begin, const Weak*& end) {
    begin = classifiers.empty() ? nullptr : classifiers.data();
    end = begin ? begin + classifiers.size() : nullptr;
}

// Adds the votes of all classifiers at N windows: each classifier's fields are loaded once for all
// of them, and their table look-ups overlap.
template <int N, typename Weak, typename Cell>
void addVotes(const Weak* begin, const Weak* end, const Cell* const* windows, int* scores) {
    const Cell* window[N];
    int sums[N];
    for (int i = 0; i < N; ++i) {
        window[i] = windows[i];
        sums[i] = scores[i];
    }
    for (const Weak* weak = begin; weak != end; ++weak)
        for (int i = 0; i < N; ++i) sums[i] += weak->vote(window[i]);
    for (int i = 0; i < N; ++i) scores[i] = sums[i];
}

template <typename Weak, typename Cell>
void addVotes(const Weak* begin, const Weak* end, const Cell* const* windows, int count,
              int* scores) {
    switch (count) {
        case 1:
            return addVotes<1>(begin, end, windows, scores);
        case 2:
            return addVotes<2>(begin, end, windows, scores);
        case 3:
            return addVotes<3>(begin, end, windows, scores);
        default:
            return addVotes<StrongClassifier::BLOCK>(begin, end, windows, scores);
    }
}

}  // namespace

#define CHECK_RANGE(begin, end, type)                                                             \
    do {                                                                                          \
        if (!isSaneRange(begin, end, true))                                                       \
            KZ_FAIL_("((" #begin " && " #end " && (" #end " < " #begin " + 10000 * sizeof(" #type \
                     "))) || (" #begin " == " #end "))",                                          \
                     false << " == NULL");                                                        \
    } while (0)

#define CHECK_RANGE_AND_INPUT(begin, end, type, input)                                            \
    do {                                                                                          \
        if (!isSaneRange(begin, end, (input) != nullptr))                                         \
            KZ_FAIL_("((" #begin " && " #end " && (" #end " < " #begin " + 10000 * sizeof(" #type \
                     ")) && " #input ") || (" #begin " == " #end "))",                            \
                     false << " == NULL");                                                        \
    } while (0)

int zoomKey(float zoom) {
    KZ_ASSERT(zoom > 0 && zoom <= KZ::maxValue<float>(), "incorrect zoom: " << zoom);
    // 0.1823216 is ln 1.2, the ratio of the pyramid's layers.
    return static_cast<int>(std::log(zoom) / 0.1823216f + 0.5);
}

void StrongClassifier::addRmctClassifier(const WeakClassifierRmct& weak) {
    rmct_.push_back(weak);
    // `activate` tells from the first one whether offsets have to be made.
    if (rmct_.size() > 1) rmct_.back().setStrip(rmct_.front().strip());
    pRmctBegin_ = pRmctEnd_ = nullptr;
}

void StrongClassifier::addHaarClassifier(const WeakClassifierHaar& weak) {
    haar_.push_back(weak);
}

void StrongClassifier::addHogClassifier(const WeakClassifierHog& weak) {
    hog_.push_back(weak);
    pHogBegin_ = pHogEnd_ = nullptr;
}

bool StrongClassifier::fits(const KZ::Size& size) const {
    const KZ::Rect window(size);
    for (const WeakClassifierRmct& weak : rmct_)
        if (!window.contains(KZ::Rect(weak.x, weak.y, weak.x + 1, weak.y + 1)) ||
            !staysInRange(weak, size))
            return false;
    for (const WeakClassifierHaar& weak : haar_)
        if (!window.contains(weak.allRect) || !window.contains(weak.posRect)) return false;
    return true;
}

void StrongClassifier::reset() {
    *this = StrongClassifier();
}

void StrongClassifier::activate(int rmctStrip, int integralStrip, float zoom) const {
    activateRmct(rmctStrip);
    activateHaar(integralStrip, zoom);
    activateHog();
}

void StrongClassifier::activateRmct(int rmctStrip) const {
    setRange(rmct_, pRmctBegin_, pRmctEnd_);
    if (rmct_.empty()) return;
    CHECK_RANGE(pRmctBegin_, pRmctEnd_, WeakClassifierRmct);
    if (rmct_.front().strip() != rmctStrip)
        for (WeakClassifierRmct& weak : rmct_) weak.setStrip(rmctStrip);
    checkVotes(rmct_);
}

void StrongClassifier::activateHaar(int integralStrip, float zoom) const {
    if (haar_.empty()) {
        pHaarBegin_ = pHaarEnd_ = nullptr;
        return;
    }
    const int key = zoomKey(zoom);
    KZ_ASSERT_GE(key, 0);
    const size_t entry = static_cast<size_t>(key);
    if (haarByZoom_.size() <= entry) {
        haarByZoom_.resize(entry + 1);
        haarStrips_.resize(entry + 1);
    }
    std::vector<WeakClassifierHaar>& resized = haarByZoom_[entry];
    int& strip = haarStrips_[entry];
    if (resized.size() != haar_.size()) {
        resized.resize(haar_.size());
        for (size_t i = 0; i < haar_.size(); ++i) resized[i].resize(haar_[i], zoom);
        strip = 0;
    }
    setRange(resized, pHaarBegin_, pHaarEnd_);
    CHECK_RANGE(pHaarBegin_, pHaarEnd_, WeakClassifierHaar);
    if (strip != integralStrip)
        for (WeakClassifierHaar& weak : resized) weak.setStrip(integralStrip >> 2);
    strip = integralStrip;
    checkVotes(resized);
}

void StrongClassifier::activateHog() const {
    setRange(hog_, pHogBegin_, pHogEnd_);
    if (hog_.empty()) return;
    CHECK_RANGE(pHogBegin_, pHogEnd_, WeakClassifierHog);
    checkVotes(hog_);
}

int StrongClassifier::scoreRmct(const unsigned char* p_data) const {
    CHECK_RANGE_AND_INPUT(pRmctBegin_, pRmctEnd_, WeakClassifierRmct, p_data);
    int score = 0;
    addVotes<1>(pRmctBegin_, pRmctEnd_, &p_data, &score);
    return score;
}

int StrongClassifier::scoreHaar(const unsigned int* integralPtr) const {
    CHECK_RANGE_AND_INPUT(pHaarBegin_, pHaarEnd_, WeakClassifierHaar, integralPtr);
    int score = 0;
    addVotes<1>(pHaarBegin_, pHaarEnd_, &integralPtr, &score);
    return score;
}

void StrongClassifier::scoreBlock(const unsigned char* const* p_data,
                                  const unsigned int* const* integralPtr, int count,
                                  int* scores) const {
    CHECK_RANGE_AND_INPUT(pRmctBegin_, pRmctEnd_, WeakClassifierRmct, p_data);
    CHECK_RANGE_AND_INPUT(pHaarBegin_, pHaarEnd_, WeakClassifierHaar, integralPtr);
    std::fill(scores, scores + count, 0);
    addVotes(pRmctBegin_, pRmctEnd_, p_data, count, scores);
    addVotes(pHaarBegin_, pHaarEnd_, integralPtr, count, scores);
}

int StrongClassifier::scoreHog(const KZ::Image& integralHog) const {
    if (hog_.empty()) return 0;
    KZ_ASSERT_POINTER(pHogBegin_);
    KZ_ASSERT(integralHog.isCreated(), "IntegralHog not created");
    pHogEnd_ = hog_.data() + hog_.size();
    const unsigned int* sums = integralHog.row<unsigned int>(0);
    int sum = 0;
    const WeakClassifierHog* const end = pHogEnd_;
    for (const WeakClassifierHog* weak = pHogBegin_; weak != end; ++weak) sum += weak->vote(sums);
    return sum;
}

KZ::Rect StrongClassifier::calculateHogRoi() const {
    if (hog_.empty()) return KZ::Rect();
    KZ::Rect roi = hog_.front().block;
    for (const WeakClassifierHog& weak : hog_) roi = roi.united(weak.block);
    return roi.resize(1, 1);
}

void StrongClassifier::moveHogRoi(const KZ::Rect& roi) const {
    const int cellBytes = static_cast<int>(KZ::depth(KZ::COLOR_MODE_INTEGRAL_HOG_UNSIGNED6));
    const int strip = (roi.width() + 1) * cellBytes >> 2;
    const auto moved = [&roi](const KZ::Rect& r) {
        return KZ::Rect(r.left - roi.left, r.top - roi.top, r.right - roi.left, r.bottom - roi.top);
    };
    for (WeakClassifierHog& weak : hog_) {
        weak.setCell(moved(weak.cell));
        weak.setBlock(moved(weak.block));
        weak.setStrip(strip);
    }
}

void StrongClassifier::setHogStrip(int elements) const {
    for (WeakClassifierHog& weak : hog_) weak.setStrip(elements);
}

void StrongClassifier::clearActivation() {
    pRmctBegin_ = pRmctEnd_ = nullptr;
    pHaarBegin_ = pHaarEnd_ = nullptr;
    pHogBegin_ = pHogEnd_ = nullptr;
    haarByZoom_.clear();
    haarStrips_.clear();
}

void StrongClassifier::rotate(const KZ::Size& size) {
    clearActivation();
    for (WeakClassifierRmct& weak : rmct_) {
        weak.rotate(size);
        // One from the top row does not know its strip, the first one may: all are to be made anew.
        weak.setStrip(0);
    }
    for (WeakClassifierHaar& weak : haar_) weak.rotate(size);
    for (WeakClassifierHog& weak : hog_) weak.rotate(size);
}

void StrongClassifier::flip(const KZ::Size& size) {
    clearActivation();
    for (WeakClassifierRmct& weak : rmct_) weak.flip(size);
    for (WeakClassifierHaar& weak : haar_) weak.flip(size);
    for (WeakClassifierHog& weak : hog_) weak.flip(size);
}
