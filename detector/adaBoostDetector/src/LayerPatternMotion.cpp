#include <algorithm>

#include "KZ_Assert.h"
#include "KZ_Truncate.h"
#include "LayerPatternDetector.h"

// The two gates that keep the scan to where the picture has changed.

namespace {

// Side of a block, in layer pixels, and the mean grey level difference that counts as change.
const int BLOCK = 32;
const float MIN_MOTION = 5.0f;

KZ::Size largestBaseSize(const std::vector<CascadedClassifier*>& cascades) {
    KZ::Size largest;
    for (const CascadedClassifier* cascade : cascades) {
        largest.width = std::max(largest.width, cascade->baseSize_.width);
        largest.height = std::max(largest.height, cascade->baseSize_.height);
    }
    return largest;
}

// A coordinate of the motion integral's, kept inside it.
int mapped(int coordinate, float scale, int size) {
    const int moved = KZ::truncatedToInt(static_cast<float>(coordinate) * scale);
    return std::min(std::max(moved, 0), size - 1);
}

}  // namespace

bool LayerPatternDetector::isMoving(const KZ::Rect& window) const {
    const KZ::Image& sums = *motionIntegral_;
    const float scale = zoom / static_cast<float>(motionScale_);
    const KZ::Rect rect(
        mapped(window.left, scale, sums.width()), mapped(window.top, scale, sums.height()),
        mapped(window.right, scale, sums.width()), mapped(window.bottom, scale, sums.height()));
    if (rect.area() == 0) return false;
    const unsigned int* top = sums.row<unsigned int>(rect.top);
    const unsigned int* bottom = sums.row<unsigned int>(rect.bottom);
    const unsigned int sum =
        bottom[rect.right] + top[rect.left] - bottom[rect.left] - top[rect.right];
    return static_cast<float>(sum) / static_cast<float>(rect.area()) > MIN_MOTION;
}

void LayerPatternDetector::detectWithMotionOptimization(std::vector<AdaObject>& out,
                                                        const KZ::DetectRegion& region, int step) {
    const KZ::Size base = largestBaseSize(pClassifiers_);
    const auto blockAt = [&base](int x, int y) {
        return KZ::Rect(x, y, x + base.width + BLOCK, y + BLOCK + base.height);
    };
    KZ::DetectRegion blockRegion = region;
    for (int y = region.rect.top; y < region.rect.bottom; y += BLOCK) {
        for (int x = region.rect.left; x < region.rect.right; x += BLOCK) {
            if (!isMoving(blockAt(x, y))) continue;
            blockRegion.rect = blockAt(x, y);
            for (; x + BLOCK < region.rect.right && isMoving(blockAt(x + BLOCK, y)); x += BLOCK)
                blockRegion.rect.right += BLOCK;
            detectBase(out, blockRegion, step);
        }
    }
}

void LayerPatternDetector::activateMotionStatic() {
    KZ_ASSERT(pMotionClassifier_ && !pMotionClassifier_->strongClassifiers.empty() &&
                  !pMotionClassifier_->strongClassifiers.front().haarClassifiers().empty(),
              "MotionClassifier were not set.");
    KZ_ASSERT(motionIntegral_ && motionIntegral_->isCreated(),
              "No motion information for motion detect.");
    KZ_ASSERT(!pClassifiers_.empty(), "No classifiers set");
    const StrongClassifier& stage = pMotionClassifier_->strongClassifiers.front();
    motionFeature_ = KZ::SharedArray<AbsFeature>(new AbsFeature[1]);
    motionFeature_[0] = AbsFeature(stage.haarClassifiers().front(), stage.threshold);
    motionFeature_[0].setStripLength(static_cast<unsigned short>(motionIntegral_->stripLength()));
    shifts_.fill(zoom, std::max(mono_->width(), mono_->height()) + 1);
    for (CascadedClassifier* cascade : pClassifiers_)
        cascade->activate(rmct_->stripLength(), mono_->stripLength(), integral_->stripLength(),
                          zoom, cascade->monoSize);
}

void LayerPatternDetector::detectMotionStatic(std::vector<AdaObject>& out,
                                              const KZ::DetectRegion& region) {
    KZ_ASSERT(motionFeature_, "MotionClassifier were not set.");
    KZ_ASSERT(motionIntegral_ && motionIntegral_->isCreated(),
              "No motion information for motion detect.");
    KZ_ASSERT(!pClassifiers_.empty(), "No classifiers set");
    for (CascadedClassifier* cascade : pClassifiers_)
        if (inAngleSide(*cascade, region)) scanMoving(*cascade, out, region.rect);
}

void LayerPatternDetector::scanMoving(CascadedClassifier& cascade, std::vector<AdaObject>& out,
                                      const KZ::Rect& rect) const {
    const CascadedClassifier::ScanRange range = cascade.scanRange(mono_->size(), rect);
    const AbsFeature& feature = motionFeature_[0];
    const int lastX = motionIntegral_->width() - 1 - feature.rect.right;
    const int lastY = motionIntegral_->height() - 1 - feature.rect.bottom;
    for (int y = range.ys; y <= range.ye; y += motionStep_) {
        const int motionY = shifts_[y] / motionScale_;
        if (motionY > lastY) break;
        for (int x = range.xs; x <= range.xe; x += motionStep_) {
            const int motionX = shifts_[x] / motionScale_;
            if (motionX > lastX) break;
            if (!feature.passes(motionIntegral_->row<unsigned int>(motionY) + motionX)) continue;
            int score = 0;
            if (cascade.detect(rmct_->data(x, y), mono_->data(x, y),
                               integral_->row<unsigned int>(shifts_[y]) + shifts_[x], 0, score))
                out.push_back(cascade.objectAt(x, y, score));
        }
    }
}

LayerPatternDetector::Shifts& LayerPatternDetector::Shifts::operator=(const Shifts& other) {
    count_ = other.count_;
    copySharedShifts(other.values_, values_);
    return *this;
}

void LayerPatternDetector::Shifts::copySharedShifts(const KZ::SharedArray<int>& from,
                                                    KZ::SharedArray<int>& to) const {
    if (!from) {
        to.reset();
        return;
    }
    const KZ::SharedArray<int> copy(new int[static_cast<size_t>(count_)]);
    std::copy_n(from.get(), count_, copy.get());
    to = copy;
}

void LayerPatternDetector::Shifts::fill(float layerZoom, int newCount) {
    count_ = newCount;
    values_ = KZ::SharedArray<int>(new int[static_cast<size_t>(newCount)]);
    for (int i = 0; i < newCount; ++i)
        values_[i] = static_cast<int>(static_cast<float>(i) * layerZoom);
}
