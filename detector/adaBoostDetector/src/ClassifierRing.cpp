#include "ClassifierRing.h"

#include "PatternDetector.h"

ClassifierRing::ClassifierRing(const std::string& path) {
    load(path);
}

ClassifierRing::ClassifierRing(std::vector<CascadedClassifier*>& cascades) {
    for (CascadedClassifier* cascade : cascades)
        addClassifier(KZ::SharedPtr<CascadedClassifier>::unowned(cascade));
    generatePossibilities();
}

void ClassifierRing::addClassifier(const KZ::SharedPtr<CascadedClassifier>& cascade) {
    classifiers_.push_back(cascade);
    baseClassifiers_.push_back(cascade);
}

void ClassifierRing::generatePossibilities() {
    possibilities.clear();
    for (const KZ::SharedPtr<CascadedClassifier>& cascade : baseClassifiers_) {
        cascade->name = name;
        ClassifierProperties pose = *cascade;
        for (int turn = 0; turn < 4; ++turn) {
            if (angleRange.contains(pose.angle)) possibilities.push_back(pose);
            // A symmetric pattern at a multiple of 45 degrees is its own mirror image, turned.
            if (!(pose.side == KZ::Side::BOTH && pose.angle % 45 == 0)) {
                ClassifierProperties mirrored = pose;
                mirrored.flip();
                if (angleRange.contains(mirrored.angle)) possibilities.push_back(mirrored);
            }
            pose.rotate();
        }
    }
}

std::vector<CascadedClassifier*> ClassifierRing::getClassifiers(const KZ::AngleRange& angles,
                                                                const KZ::Side::Value& sides) {
    std::vector<CascadedClassifier*> result;
    std::vector<ClassifierProperties> missing;
    for (const ClassifierProperties& pose : possibilities) {
        if ((pose.side & sides) == 0 || !angles.contains(pose.angle)) continue;
        if (CascadedClassifier* found = findClassifier(pose)) {
            result.push_back(found);
        } else {
            missing.push_back(pose);
        }
    }
    for (const ClassifierProperties& pose : missing) result.push_back(deriveClassifier(pose));
    return result;
}

CascadedClassifier* ClassifierRing::findClassifier(const ClassifierProperties& pose) const {
    for (const KZ::SharedPtr<CascadedClassifier>& cascade : classifiers_)
        if (*cascade == pose) return cascade.get();
    return nullptr;
}

CascadedClassifier* ClassifierRing::deriveClassifier(const ClassifierProperties& pose) {
    const CascadedClassifier* best = classifiers_.front().get();
    ClassifierProperties::Transformation way = best->transformCost(pose);
    for (const KZ::SharedPtr<CascadedClassifier>& cascade : classifiers_) {
        const ClassifierProperties::Transformation other = cascade->transformCost(pose);
        if (other.cost() >= way.cost()) continue;
        best = cascade.get();
        way = other;
    }
    const KZ::SharedPtr<CascadedClassifier> derived(new CascadedClassifier(*best));
    if (way.flip) derived->flipVertically();
    for (int i = 0; i < way.rotations; ++i) derived->rotate();
    classifiers_.push_back(derived);
    return derived.get();
}

KZ::SharedPtr<PatternDetector> ClassifierRing::getDetector(const KZ::AngleRange& angles,
                                                           const KZ::Side::Value& sides,
                                                           int neighbors) {
    const KZ::SharedPtr<PatternDetector> detector(new PatternDetector);
    for (CascadedClassifier* cascade : getClassifiers(angles, sides))
        detector->addClassifier(cascade);
    detector->parameters().minNeighbors = neighbors;
    return detector;
}

bool ClassifierRing::isSymmetric() const {
    for (const KZ::SharedPtr<CascadedClassifier>& cascade : classifiers_)
        if (cascade->side == KZ::Side::BOTH) return true;
    return false;
}

void ClassifierRing::setLastCascadeThreshold(int threshold) {
    if (threshold == KZ::maxValue<int>()) return;
    for (const KZ::SharedPtr<CascadedClassifier>& cascade : classifiers_)
        if (!cascade->strongClassifiers.empty())
            cascade->strongClassifiers.back().setThreshold(threshold);
}
