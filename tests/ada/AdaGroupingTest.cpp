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
        std::vector<int> expected, labels;
        for (int i = random.between(0, 40); i > 0; --i) {
            expected.push_back(static_cast<int>(objects.size()));
            objects.push_back(hit(random.between(0, 120), random.between(0, 60),
                                  1.0f + 0.2f * static_cast<float>(random.between(0, 3)),
                                  30 * random.between(-2, 2), 1, random.between(10, 36)));
        }
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
        const std::set<int> tops(expected.begin(), expected.end());
        for (int& label : expected)
            label = static_cast<int>(std::distance(tops.begin(), tops.find(label)));
        EXPECT_EQ(static_cast<int>(tops.size()),
                  KZ::partition(objects, labels, std::make_pair(0.2f, 30)));
        EXPECT_EQ(expected, labels);
    }
}

TEST(AdaGrouping, MergesWhatIsNear) {
    const auto groups = [](const std::vector<AdaObject>& objects) {
        return groupAdaObjects(objects, 1, 0.2f).size();
    };
    const AdaObject here = hit(50, 50), left = hit(50, 50, 1, -30), right = hit(50, 50, 1, 30);
    EXPECT_EQ(1u, groups({here, hit(57, 57)})) << "Manhattan distance 14";
    EXPECT_EQ(2u, groups({here, hit(57, 58)})) << "Manhattan distance 15";
    EXPECT_EQ(1u, groups({here, hit(50, 50, 1.44f)}));
    EXPECT_EQ(2u, groups({here, hit(50, 50, 2)}));
    EXPECT_EQ(1u, groups({left, here}));
    EXPECT_EQ(2u, groups({left, right}));
    EXPECT_EQ(1u, groups({left, right, here})) << "linked";
    EXPECT_EQ(1u, groups({hit(50, 50, 1, 0, 1, 10), hit(60, 50)})) << "near for the wider one";
}

TEST(AdaGrouping, WeighsMembersAndOrdersGroups) {
    AdaObject light = hit(100, 41, 1.0f, -30, 1), heavy = hit(104, 40, 1.2f, 0, 3);
    light.side = -100;
    light.score = 900;
    const std::vector<AdaObject> objects = {hit(10, 10), light, heavy, hit(200, 90, 1, 0, 2)};
    const auto groups = groupAdaObjects(objects, 2, 0.2f);
    ASSERT_EQ((std::vector<int>{103, 200}), centers(groups));
    const AdaObject& group = groups[0];
    EXPECT_EQ(KZ::Point(103, 40), group.center);
    EXPECT_EQ("-7 50 4 900",
              KZ::joined(group.angle, " ", group.side, " ", group.weight, " ", group.score));
    EXPECT_FLOAT_EQ(1.15f, group.zoom);
    EXPECT_EQ((std::vector<int>{10, 100, 104, 200}), centers(groupAdaObjects(objects, 0, 0.2f)));

    EXPECT_EQ(KZ::Rect(75, 35, 126, 85), hit(100, 60, 1.44f).getBaseRect());
    EXPECT_EQ(KZ::SizeF(51, 50), hit(100, 60, 1.44f).toLocationState().size);
    light.side = 0;
    EXPECT_EQ(KZ::Side::LEFT, light.toLocationState().side);
}
