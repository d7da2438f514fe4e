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
        std::string text = failure.what();
        const size_t at = text.find(folder);
        return at == std::string::npos ? text : text.erase(at, folder.size() + 1);
    }
}

TEST(Manifest, NamesPlaceFaultAndRemedy) {
    const struct {
        const char *what, *text, *expected;
    } rows[] = {
        {"empty", "", "manifest.csv: is empty; a header line is expected"},
        {"no rows", HEADER, "manifest.csv: no rows after the header; nothing to work on"},
        {"few fields", "a.jpg,9,s,train\n",
         "manifest.csv:2: 14 fields expected as in the header, found 4"},
        {"split", "a.jpg,9,s,test,scene,,,,,,,,,\n",
         "manifest.csv:2: split: train or val expected, found \"test\""},
        {"kind", "a.jpg,9,s,val,fist,,,,,,,,,\n",
         "manifest.csv:2: kind: palm, hand, ignore or scene expected, found \"fist\""},
        {"number", "a.jpg,9,s,val,palm,1,2,wide,0,RIGHT,,,,\n",
         "manifest.csv:2: palm_width: a number expected, found \"wide\""},
        {"trailing letters", "a.jpg,9,s,val,palm,1,2,3,0deg,RIGHT,,,,\n",
         "manifest.csv:2: angle: a number expected, found \"0deg\""},
        {"not a number", "a.jpg,9,s,val,palm,nan,2,3,0,RIGHT,,,,\n",
         "manifest.csv:2: cx: a number expected, found \"nan\""},
        {"no width", "a.jpg,9,s,val,palm,1,2,0,0,RIGHT,,,,\n",
         "manifest.csv:2: palm_width: must be above 0"},
        {"side", "a.jpg,9,s,val,palm,1,2,3,0,,,,,\n",
         "manifest.csv:2: side: RIGHT or LEFT expected for a palm, found \"\""},
        {"box", "a.jpg,9,s,val,hand,,,,,,5,5,5,9\n",
         "manifest.csv:2: x0 to y1: the box has no area"},
        {"two splits", "a.jpg,9,s,val,scene,,,,,,,,,\na.jpg,9,s,train,scene,,,,,,,,,\n",
         "manifest.csv:3: a.jpg is in the split val too; keep all rows of a picture in one split"},
        {"no picture", "a.jpg,9,s,val,scene,,,,,,,,,\n",
         "manifest.csv:2: cannot read the picture a.jpg; restore the file or delete its rows"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        TemporaryFolder folder;
        std::ofstream(folder.path("manifest.csv"))
            << (*row.text ? HEADER : "") << (row.text == HEADER ? "" : row.text);
        EXPECT_EQ(row.expected, failureOf(folder.path()));
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
    EXPECT_EQ(10, rows[0].cx);
    EXPECT_EQ(20, rows[0].cy);
    EXPECT_EQ(40, rows[0].palmWidth);
    EXPECT_EQ(-12.5, rows[0].angle);
    EXPECT_FALSE(rows[1].hasPose);
    EXPECT_EQ(3, rows[1].line);
}

}  // namespace
