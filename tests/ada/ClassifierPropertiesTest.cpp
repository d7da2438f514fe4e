#include <gtest/gtest.h>

#include "ClassifierRing.h"

namespace {

ClassifierProperties pose(const KZ::Size& window, const KZ::Size& object, const KZ::Point& center) {
    ClassifierProperties properties;
    properties.setMonoSize(window);
    properties.setBaseSize(object);
    properties.setObjectCenter(center);
    return properties;
}

}  // namespace

TEST(ClassifierProperties, ResizeTruncatesAllButTheBaseSize) {
    ClassifierProperties scaled = pose(KZ::Size(37, 35), KZ::Size(20, 11), KZ::Point(18, 16));
    ASSERT_EQ(KZ::Rect(8, 11, 28, 22), scaled.objectRect);
    scaled.resize(0.7f);
    EXPECT_EQ(KZ::Size(25, 24), scaled.monoSize);
    EXPECT_EQ(KZ::Rect(5, 7, 19, 15), scaled.objectRect);
    EXPECT_EQ(KZ::Point(12, 11), scaled.objectCenter);
    EXPECT_EQ(KZ::Size(20, 11), scaled.baseSize_);
}

TEST(ClassifierProperties, WhatARegionAsksFor) {
    struct Row {
        const char* what;
        int angle;
        KZ::Side::Value side;
        float zoom;
        int width, height;
        bool in;
    };
    const Row rows[] = {
        {"lowest zoom", 30, KZ::Side::RIGHT, 1.2f, 50, 40, true},
        {"lowest zoom within the tolerance", 0, KZ::Side::RIGHT, 1.199995f, 50, 40, true},
        {"zoom too low", 0, KZ::Side::RIGHT, 1.1999f, 50, 40, false},
        {"highest zoom", 0, KZ::Side::BOTH, 2.0f, 50, 40, false},
        {"just fits", -30, KZ::Side::BOTH, 1.5f, 31, 23, true},
        {"as wide as the region", 0, KZ::Side::RIGHT, 1.5f, 30, 40, false},
        {"as high as the region", 0, KZ::Side::RIGHT, 1.5f, 50, 21, false},
        {"other angle", 31, KZ::Side::RIGHT, 1.5f, 50, 40, false},
        {"other side", 0, KZ::Side::LEFT, 1.5f, 50, 40, false},
    };
    for (const Row& row : rows) {
        ClassifierProperties asked = pose(KZ::Size(24, 18), KZ::Size(20, 14), KZ::Point(12, 9));
        asked.setAngle(row.angle);
        asked.side = row.side;
        KZ::DetectRegion region(KZ::Rect(7, 5, 7 + row.width, 5 + row.height), KZ::RangeF(),
                                KZ::AngleRange(-30, 30), KZ::Side::RIGHT);
        region.zoomRange = KZ::RangeF(1.2f, 2.0f);
        EXPECT_EQ(row.in, asked.in(region, row.zoom)) << row.what;
    }
}

TEST(ClassifierProperties, FirstWindowPlacesTheObject) {
    ClassifierProperties placed = pose(KZ::Size(24, 18), KZ::Size(20, 14), KZ::Point(12, 9));
    placed.setMonoSize(KZ::Size(40, 30));
    EXPECT_EQ(KZ::Rect(2, 2, 22, 16), placed.objectRect);
    EXPECT_EQ(KZ::Size(20, 14), placed.baseSize_);
}

TEST(CascadedClassifier, MirroredHitsAreLeft) {
    CascadedClassifier cascade;
    cascade.setMonoSize(KZ::Size(24, 18));
    EXPECT_EQ(100, cascade.objectAt(0, 0, 5).side);
    cascade.flipVertically();
    EXPECT_EQ(-100, cascade.objectAt(0, 0, 5).side);
    cascade.setSymmetry(true);
    EXPECT_EQ(100, cascade.objectAt(0, 0, 5).side);
}

TEST(ClassifierRing, FirstOfEquallyNearCascadesIsTurned) {
    CascadedClassifier cascades[2];
    std::vector<CascadedClassifier*> pointers;
    for (CascadedClassifier& cascade : cascades) {
        cascade.setMonoSize(KZ::Size(24, 18));
        cascade.setAngle(45);
        cascade.setSymmetry(true);
        StrongClassifier stage;
        stage.setThreshold(7 + static_cast<int>(pointers.size()));
        cascade.addStrongClassifier(stage);
        pointers.push_back(&cascade);
    }
    ClassifierRing ring(pointers);
    // At a multiple of 45 degrees the mirror images are among the turns.
    EXPECT_EQ(8u, ring.possibilities.size());
    for (const CascadedClassifier* turned :
         ring.getClassifiers(KZ::AngleRange(135), KZ::Side::RIGHT))
        EXPECT_EQ(7, turned->strongClassifiers.front().threshold);
}
