#include <gtest/gtest.h>

#include <set>

#include "AdaGrouping.h"
#include "AdaSupport.h"

using namespace ada_test;

namespace {

AdaObject hit(int x, int y, float zoom = 1, int angle = 0, int weight = 1, int width = 36) {
    return AdaObject("palm", KZ::Size(width, 35), KZ::Point(x, y), 100, zoom, angle, weight, x);
}

std::vector<int> centers(const std::vector<AdaObject>& objects) {
    std::vector<int> values;
    for (const AdaObject& object : objects) values.push_back(object.center.x);
    return values;
}

}  // namespace

TEST(AdaGrouping, PartitionIsTheTransitiveClosure) {
    Random random(20260330);
    for (int round = 0; round < 60; ++round) {
        std::vector<AdaObject> objects;
        const int count = random.between(0, 40);
        for (int i = 0; i < count; ++i)
            objects.push_back(hit(random.between(0, 120), random.between(0, 60),
                                  1.0f + 0.2f * static_cast<float>(random.between(0, 3)),
                                  30 * random.between(-2, 2), 1, random.between(10, 36)));
        std::vector<int> expected(objects.size());
        for (size_t i = 0; i < expected.size(); ++i) expected[i] = static_cast<int>(i);
        for (bool changed = true; changed;) {
            changed = false;
            for (size_t i = 0; i < objects.size(); ++i)
                for (size_t j = 0; j < objects.size(); ++j)
                    if (expected[i] < expected[j] && (Similar(objects[i], objects[j], 0.2f, 30) ||
                                                      Similar(objects[j], objects[i], 0.2f, 30))) {
                        expected[j] = expected[i];
                        changed = true;
                    }
        }
        // Number the classes by first appearance.
        const std::vector<int> smallest = expected;
        const std::set<int> tops(smallest.begin(), smallest.end());
        for (int& label : expected)
            label = static_cast<int>(std::distance(tops.begin(), tops.find(label)));
        std::vector<int> labels;
        EXPECT_EQ(static_cast<int>(tops.size()),
                  KZ::partition(objects, labels, std::make_pair(0.2f, 30)));
        EXPECT_EQ(expected, labels);
    }
}

TEST(AdaGrouping, WhatMerges) {
    struct Row {
        const char* what;
        std::vector<AdaObject> objects;
        size_t groups;
    };
    const Row rows[] = {
        {"Manhattan distance 14", {hit(50, 50), hit(57, 57)}, 1},
        {"Manhattan distance 15", {hit(50, 50), hit(57, 58)}, 2},
        {"zooms 1 and 2", {hit(50, 50, 1), hit(50, 50, 2)}, 2},
        {"zooms 1 and 1.44", {hit(50, 50, 1), hit(50, 50, 1.44f)}, 1},
        {"angles 30 apart", {hit(50, 50, 1, -30), hit(50, 50, 1, 0)}, 1},
        {"angles 60 apart", {hit(50, 50, 1, -30), hit(50, 50, 1, 30)}, 2},
        {"linked", {hit(50, 50, 1, -30), hit(50, 50, 1, 30), hit(50, 50, 1, 0)}, 1},
        {"near for the wider one", {hit(50, 50, 1, 0, 1, 10), hit(60, 50, 1, 0, 1, 36)}, 1},
    };
    for (const Row& row : rows)
        EXPECT_EQ(row.groups, groupAdaObjects(row.objects, 1, 0.2f).size()) << row.what;
}

TEST(AdaGrouping, MeansAndOrder) {
    AdaObject light = hit(100, 41, 1.0f, -30, 1), heavy = hit(104, 40, 1.2f, 0, 3);
    light.side = -100;
    light.score = 900;
    const std::vector<AdaObject> objects = {hit(10, 10), light, heavy, hit(200, 90, 1, 0, 2)};
    const auto groups = groupAdaObjects(objects, 2, 0.2f);
    ASSERT_EQ((std::vector<int>{103, 200}), centers(groups));
    const AdaObject& group = groups[0];
    EXPECT_EQ(KZ::Point(103, 40), group.center);
    EXPECT_EQ(-7, group.angle);
    EXPECT_EQ(50, group.side);
    EXPECT_EQ(4, group.weight);
    EXPECT_EQ(900, group.score);
    EXPECT_FLOAT_EQ(1.15f, group.zoom);
    EXPECT_STREQ("palm", group.name);

    EXPECT_EQ((std::vector<int>{10, 100, 104, 200}), centers(groupAdaObjects(objects, 0, 0.2f)));
    EXPECT_TRUE(groupAdaObjects({hit(10, 10)}, 2, 0.2f).empty());
    KZ::History<AdaObject> history(2);
    for (const AdaObject& object : objects) history.add(object);
    EXPECT_EQ((std::vector<int>{104, 200}), centers(groupAdaObjects(history, 2, 0.2f)));
}

TEST(AdaObject, PlaceInTheFrame) {
    AdaObject object = hit(100, 60, 1.44f, -30);
    EXPECT_EQ(KZ::Rect(75, 35, 126, 85), object.getBaseRect());
    EXPECT_EQ(KZ::SizeF(51, 50), object.toLocationState().size);
    EXPECT_EQ(-30, object.toLocationState().angle);
    EXPECT_EQ(KZ::Side::RIGHT, object.toLocationState().side);
    object.side = 0;
    EXPECT_EQ(KZ::Side::LEFT, object.toLocationState().side);
    EXPECT_TRUE(object.isSet());
    object.reset();
    EXPECT_FALSE(object.isSet());
}
