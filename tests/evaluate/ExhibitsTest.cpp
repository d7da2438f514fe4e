#include "Exhibits.h"

#include <gtest/gtest.h>

#include "Bounds.h"
#include "DataFolder.h"
#include "Failure.h"

namespace {

using evaluate::Exhibit;
using evaluate::Exhibits;
using training::Kind;

/// Pictures of 200 by 150 whose left half is dark (40) and whose right half is light (200).
class ExhibitsTest : public testing::Test {
protected:
    void write(const std::string& rows) {
        cv::Mat picture(150, 200, CV_8U, cv::Scalar(40));
        picture.colRange(100, 200) = 200;
        for (const char* name : {"a", "b", "c", "d", "e"}) {
            cv::imwrite(folder_.path(std::string(name) + ".png"), picture);
        }
        std::ofstream(folder_.path("manifest.csv"))
            << "image,source,split,kind,cx,cy,palm_width,angle,side,x0,y0,x1,y1\n"
            << rows;
        store_ = std::make_unique<training::PhotoStore>(folder_.path());
    }

    TemporaryFolder folder_;
    std::unique_ptr<training::PhotoStore> store_;
};

const char* const ROWS =
    "a.png,p,val,hand,60,80,30,0,,,,,\n"
    "a.png,p,val,palm,60,80,30,35,LEFT,110,20,150,60\n"
    "a.png,p,val,palm,140,70,15,0,LEFT,90,20,110,60\n"
    "a.png,p,val,ignore,100,90,20,0,LEFT,,,,\n"
    "b.png,p,val,palm,60,80,30,35.1,LEFT,,,,\n"
    "c.png,p,val,hand,60,80,30,0,,,,,\n"
    "c.png,p,val,ignore,60,80,30,0,,,,,\n"
    "d.png,q,val,hand,,,,,,,,,\n"
    "e.png,q,val,scene,,,,,,,,,\n";

TEST_F(ExhibitsTest, TakesWhatCounts) {
    write(ROWS);
    const Exhibits exhibits(*store_, "val");
    const auto keys = [&](Kind kind) {
        std::string text;
        for (const Exhibit& exhibit : exhibits.of(kind)) text += exhibit.key() + ";";
        return text;
    };
    EXPECT_EQ("palm a.png#1;palm a.png#2;", keys(Kind::PALM));
    EXPECT_EQ("hand d.png#0;", keys(Kind::HAND));
    EXPECT_EQ("scene e.png#0;", keys(Kind::SCENE));
    EXPECT_DOUBLE_EQ(200, exhibits.brightness(exhibits.of(Kind::PALM)[0]));
    EXPECT_DOUBLE_EQ(120, exhibits.brightness(exhibits.of(Kind::PALM)[1]));
    EXPECT_THROW(Exhibits(*store_, "train"), training::Failure);

    evaluate::Bounds bounds;
    bounds.exhibits = {"scene e.png#0", "palm a.png#2"};
    ASSERT_EQ(2u, bounds.select(exhibits).size());
    EXPECT_EQ(2, bounds.select(exhibits)[1].number);
    bounds.exhibits = {"palm a.png#0"};
    EXPECT_THROW(bounds.select(exhibits), training::Failure);
}

// The other palm and the unclear hand keep their places beside the palm that is shown.
TEST_F(ExhibitsTest, KnowsWhatElseMayBeReported) {
    write(ROWS);
    const Exhibits exhibits(*store_, "val");
    const Exhibit& exhibit = exhibits.of(Kind::PALM)[0];
    cv::Mat frame;
    const ShownPalm shown = *exhibits.draw(exhibit, frame);
    EXPECT_DOUBLE_EQ(48, shown.width);  // 200 by 150 fills 320 by 240
    const std::vector<ShownPalm> others = exhibits.others(exhibit, shown);
    ASSERT_EQ(2u, others.size());
    EXPECT_DOUBLE_EQ(24, others[0].width);
    EXPECT_DOUBLE_EQ(shown.centre.x + 128, others[0].centre.x);
    EXPECT_DOUBLE_EQ(shown.centre.y - 16, others[0].centre.y);
    EXPECT_DOUBLE_EQ(shown.centre.x + 64, others[1].centre.x);
}

TEST(Thinned, EveryNthUpToALimit) {
    std::vector<Exhibit> all(10);
    for (int i = 0; i < 10; ++i) all[i].number = i;
    const struct {
        int every, limit;
        std::vector<int> expected;
    } rows[] = {{4, 0, {0, 4, 8}}, {3, 2, {0, 3}}, {1, 1, {0}}, {20, 5, {0}}};
    for (const auto& row : rows) {
        std::vector<int> numbers;
        for (const Exhibit& exhibit : evaluate::thinned(all, row.every, row.limit)) {
            numbers.push_back(exhibit.number);
        }
        EXPECT_EQ(row.expected, numbers);
    }
}

}  // namespace
