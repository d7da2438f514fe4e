#include "LibraryRing.h"

#include "KZ_IntegralImage.h"

namespace training {

namespace {

StrongClassifier makeStage(StageContent& content) {
    StrongClassifier stage;
    for (WeakClassifier& weak : content.weak) {
        const Feature& feature = weak.feature;
        if (feature.kind == Feature::RMCT) {
            WeakClassifierRmct rmct;
            rmct.set(static_cast<signed char>(feature.x), static_cast<signed char>(feature.y));
            rmct.setData(weak.votes.data());
            stage.addRmctClassifier(rmct);
        } else if (feature.kind == Feature::HAAR) {
            WeakClassifierHaar haar;
            haar.set(feature.outer, feature.inner, 0);
            haar.setData(weak.votes.data());
            stage.addHaarClassifier(haar);
        } else {
            WeakClassifierHog hog;
            hog.setBlock(feature.outer);
            hog.setCell(feature.inner);
            hog.setSector(static_cast<signed char>(feature.sector));
            hog.setData(weak.votes.data());
            stage.addHogClassifier(hog);
        }
    }
    stage.setThreshold(content.threshold);
    return stage;
}

}  // namespace

LibraryRing::LibraryRing(const RingContent& content) : content_(content) {
    std::vector<CascadedClassifier*> pointers;
    for (CascadeContent& cascade : content_.cascades) {
        CascadedClassifier& made = cascades_.emplace_back();
        made.setMonoSize(cascade.shape.size);
        made.setBaseSize(cascade.shape.size);
        made.setAngle(cascade.shape.angle);
        made.setName(cascade.shape.name);
        for (StageContent& stage : cascade.stages) made.addStrongClassifier(makeStage(stage));
        pointers.push_back(&made);
    }
    ring_ = std::make_unique<ClassifierRing>(pointers);
    ring_->setName(content_.name);
    ring_->generatePossibilities();
    ring_->setConfig(content_.config);
    ring_->log = "log\n" + content_.log;
}

std::vector<CascadedClassifier*> LibraryRing::cascades(KZ::Side::Value side) {
    return ring_->getClassifiers(KZ::AngleRange(-30, 30), side);
}

void preparePyramid(const KZ::Image& view, KZ::RmctPyramid& pyramid, KZ::Image& integral) {
    KZ::computeIntegral(view, integral);
    pyramid.setMono(view);
    pyramid.compute(view.rect());
}

std::vector<ScanHit> scanLayers(CascadedClassifier& cascade, const KZ::RmctPyramid& pyramid,
                                const KZ::Image& integral, ScanCount& count) {
    constexpr int STEP = 2;
    std::vector<ScanHit> hits;
    std::vector<AdaObject> objects;
    for (int layer = 0; layer < static_cast<int>(pyramid.numLayers()); ++layer) {
        const KZ::Image& mono = pyramid.getMono(layer);
        const int lastX = mono.width() - cascade.monoSize.width;
        const int lastY = mono.height() - cascade.monoSize.height;
        if (lastX < 0 || lastY < 0) break;
        count.searched += (lastX / STEP + 1.0) * (lastY / STEP + 1.0);
        objects.clear();
        cascade.addMatches(pyramid.getRmct(layer), mono, integral, objects,
                           pyramid.zoomAtLayer(layer), STEP);
        for (const AdaObject& object : objects) {
            hits.push_back({layer, KZ::Point(object.center.x - cascade.objectCenter.x,
                                             object.center.y - cascade.objectCenter.y)});
        }
    }
    count.passed += static_cast<double>(hits.size());
    return hits;
}

}  // namespace training
