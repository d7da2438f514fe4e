#include <gtest/gtest.h>

#include "DataFolder.h"
#include "Failure.h"
#include "Manifest.h"
#include "PhotoStore.h"

namespace {

using namespace training;

const char* const HEADER =
    "image,width,source,split,kind,cx,cy,palm_width,angle,side,x0,y0,x1,y1\n";

std::string failureOf(const std::string& folder) {
    try {
        PhotoStore store(folder);
        if (!store.photos().empty()) store.grey(0);
        return "no failure";
    } catch (const Failure& failure) {
        const std::string text = failure.what();
        return text.substr(text.compare(0, folder.size(), folder) == 0 ? folder.size() + 1 : 0);
    }
}

TEST(Manifest, NamesPlaceFaultAndRemedy) {
    const char* const rows[][2] = {
        {"a.jpg,9,s,train\n", ":2: 14 fields expected as in the header, found 4"},
        {"a.jpg,9,s,test,scene,,,,,,,,,\n", ":2: split: train or val expected, found \"test\""},
        {"a.jpg,9,s,val,palm,1,2,3,0deg,RIGHT,,,,\n",
         ":2: angle: a number expected, found \"0deg\""},
        {"a.jpg,9,s,val,palm,nan,2,3,0,RIGHT,,,,\n", ":2: cx: a number expected, found \"nan\""},
        {"a.jpg,9,s,val,palm,1,2,3,0,,,,,\n",
         ":2: side: RIGHT or LEFT expected for a palm, found \"\""},
        {"a.jpg,9,s,val,hand,,,,,,5,5,5,9\n", ":2: x0 to y1: the box has no area"},
        {"a.jpg,9,s,val,scene,,,,,,,,,\na.jpg,9,s,train,scene,,,,,,,,,\n",
         ":3: a.jpg is in the split val too; keep all rows of a picture in one split"},
        {"a.jpg,9,s,val,scene,,,,,,,,,\n",
         ":2: cannot read the picture a.jpg; restore the file or delete its rows"},
        {"", ": no rows after the header; nothing to work on"},
    };
    for (const auto& row : rows) {
        TemporaryFolder folder;
        std::ofstream(folder.path("manifest.csv")) << HEADER << row[0];
        EXPECT_EQ(std::string("manifest.csv") + row[1], failureOf(folder.path()));
    }
}

TEST(Manifest, ReadsQuotedFieldsInAnyOrder) {
    TemporaryFolder folder;
    std::ofstream(folder.path("manifest.csv"))
        << "side,kind,image,source,note,split,angle,palm_width,cy,cx\r\n"
        << "LEFT,palm,\"a, \"\"b\"\".jpg\",s,x,train,-12.5,40,20,10\r\n"
        << ",hand,c.jpg,s,,train,,,,\r\n";
    const std::vector<ManifestRow> rows = readManifest(folder.path("manifest.csv"));
    ASSERT_EQ(2u, rows.size());
    EXPECT_EQ("a, \"b\".jpg", rows[0].image);
    EXPECT_EQ(Kind::PALM, rows[0].kind);
    EXPECT_TRUE(rows[0].mirrored && rows[0].hasPose && !rows[0].hasBox);
    EXPECT_EQ(cv::Vec4d(10, 20, 40, -12.5),
              cv::Vec4d(rows[0].cx, rows[0].cy, rows[0].palmWidth, rows[0].angle));
    EXPECT_FALSE(rows[1].hasPose);
    EXPECT_EQ(3, rows[1].line);
}

}  // namespace
