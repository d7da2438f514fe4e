#include "CascadedClassifier.h"

#include "KZ_Assert.h"
#include "KZ_IntegralHog.h"

void CascadedClassifier::addStrongClassifier(const StrongClassifier& stage) {
    strongClassifiers.push_back(stage);
    firstStage_ = nullptr;
}

void CascadedClassifier::activate(int rmctStrip, int monoStrip, int integralStrip, float zoom,
                                  const KZ::Size& windowSize) const {
    calculateHogRoi();
    monoStrip_ = monoStrip;
    if (!KZ::Rect(windowSize).contains(hogRoi_))
        KZ_FAIL_("KZ::Rect(monoSize).contains(hogRoi_)",
                 "image Size " << windowSize << " to small for Hog " << hogRoi_);
    for (const StrongClassifier& stage : strongClassifiers)
        stage.activate(rmctStrip, integralStrip, zoom);
    if (firstStage_) return;
    KZ_ASSERT(!strongClassifiers.empty(), "Activating empty cascade Classifier " << name);
    settleFirstStage();
}

void CascadedClassifier::settleFirstStage() const {
    const StrongClassifier& stage = strongClassifiers.front();
    const std::vector<WeakClassifierRmct>& rmct = stage.rmctClassifiers();
    rmctFirstStage_ =
        !rmct.empty() && stage.haarClassifiers().empty() && stage.hogClassifiers().empty();
    startStage_ = rmctFirstStage_ ? 1 : 0;
    pRmctClassifierStart_ = rmctFirstStage_ ? rmct.data() : nullptr;
    pRmctClassifierEnd_ = rmctFirstStage_ ? rmct.data() + rmct.size() : nullptr;
    firstStageThreshold_ = stage.threshold;
    firstStage_ = &stage;
}

void CascadedClassifier::calculateHogRoi() const {
    if (hogReady_) return;
    const int numStages = static_cast<int>(strongClassifiers.size());
    hogStart_ = numStages;
    for (int i = 0; i < numStages; ++i) {
        const KZ::Rect roi = strongClassifiers[static_cast<size_t>(i)].calculateHogRoi();
        if (roi == KZ::Rect()) continue;
        if (hogStart_ == numStages) {
            hogStart_ = i;
            hogRoi_ = roi;
        } else {
            hogRoi_ = hogRoi_.united(roi);
        }
    }
    const KZ::Rect monoRect(0, 0, monoSize.width + 1, monoSize.height + 1);
    KZ_ASSERT(monoRect.contains(hogRoi_),
              "Computed hogRoi " << hogRoi_ << " is out of monoSize + 1 " << monoRect);
    const int cells = hogRoi_.width() + HOG_SPREAD + 1;
    for (const StrongClassifier& stage : strongClassifiers) {
        stage.moveHogRoi(hogRoi_);
        stage.setHogStrip(cells * (WeakClassifierHog::NUM_SECTORS + 1));
    }
    hogReady_ = true;
}

// The cells of `gradientSums_` for windows from (x, y) on, whose corners lie `spread` apart.
KZ::Rect CascadedClassifier::hogWindow(int x, int y, const KZ::Size& spread) const {
    return KZ::Rect(x, y, x + hogRoi_.width() + spread.width + 1,
                    y + hogRoi_.height() + spread.height + 1);
}

// Sums the gradients of all windows with corners from `pMono` to `spread` to the right and below.
// `integralHog_` is then that of the first one.
void CascadedClassifier::sumGradients(const unsigned char* pMono, const KZ::Size& spread) const {
    const KZ::ColorMode mode = KZ::COLOR_MODE_INTEGRAL_HOG_UNSIGNED6;
    gradientSums_.create(hogWindow(0, 0, KZ::Size(HOG_SPREAD, HOG_SPREAD)).size(), mode);
    integralHog_.createRef(gradientSums_, hogWindow(0, 0, spread));
    const KZ::Rect area(hogRoi_.left, hogRoi_.top, hogRoi_.right + spread.width,
                        hogRoi_.bottom + spread.height);
    KZ::computeIntegralHog(pMono, monoStrip_, integralHog_, area, mode);
    integralHog_.createRef(gradientSums_, hogWindow(0, 0, KZ::Size()));
}

bool CascadedClassifier::detect(const unsigned char* pRmctTransform, const unsigned char* pMono,
                                const unsigned int* pIntegralImage, unsigned int firstStage,
                                int& score) const {
    KZ_ASSERT_POINTER(pMono);
    KZ_ASSERT_POINTER(pRmctTransform);
    KZ_ASSERT_POINTER(pIntegralImage);
    const unsigned int numStages = static_cast<unsigned int>(strongClassifiers.size());
    for (unsigned int i = firstStage; i < numStages; ++i) {
        const StrongClassifier& stage = strongClassifiers[i];
        if (static_cast<int>(i) == hogStart_) sumGradients(pMono, KZ::Size());
        score = stage.scoreRmct(pRmctTransform) + stage.scoreHaar(pIntegralImage) +
                stage.scoreHog(integralHog_);
        if (score < stage.threshold) return false;
    }
    return true;
}

AdaObject CascadedClassifier::objectAt(int x, int y, int score) const {
    return AdaObject(name.c_str(), baseSize_, KZ::Point(x + objectCenter.x, y + objectCenter.y),
                     side & KZ::Side::RIGHT ? SIDE_SCORE : -SIDE_SCORE, 1.0f, angle, 1, score);
}

void CascadedClassifier::clearActivation() {
    hogReady_ = false;
    monoStrip_ = 0;
    hogStart_ = 0x7fffffff;
    rmctFirstStage_ = false;
    startStage_ = 0;
    firstStageThreshold_ = KZ::minValue<int>();
    firstStage_ = nullptr;
    pRmctClassifierStart_ = nullptr;
    pRmctClassifierEnd_ = nullptr;
}

void CascadedClassifier::rotate() {
    clearActivation();
    for (StrongClassifier& stage : strongClassifiers) stage.rotate(monoSize);
    ClassifierProperties::rotate();
}

void CascadedClassifier::flipVertically() {
    clearActivation();
    for (StrongClassifier& stage : strongClassifiers) stage.flip(monoSize);
    ClassifierProperties::flip();
}
