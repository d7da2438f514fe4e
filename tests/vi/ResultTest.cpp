#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <sstream>

#include "KZ_DebugImages.h"
#include "KZ_Utils.h"
#include "KZ_ViInterface.h"
#include "KZ_ViResultState.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;

TEST(ViInterface, ImageNamesBeginWithTheirMode) {
    struct Row {
        const char* name;
        ColorMode mode;
    };
    const Row rows[] = {
        {"mono16x", COLOR_MODE_MONO16}, {"mono-16", COLOR_MODE_MONO},  {"rgba", COLOR_MODE_RGBA},
        {"rgb left", COLOR_MODE_RGB},   {"float2", COLOR_MODE_FLOAT2}, {"yuvmono", COLOR_MODE_YUV},
    };
    for (const Row& row : rows) EXPECT_EQ(row.mode, ViInterface::parseImageName(row.name));
    for (const std::string name : {"xmono", "", "Mono", "ushort"})
        EXPECT_EQ("cannot parse color mode from " + name + "\n",
                  assertionOf([&] { ViInterface::parseImageName(name); }));
}

TEST(ViResult, TextHasEveryList) {
    ViResult result;
    result.gestures = {"a\"b", "c"};
    result.rects = {RectF(1, 2, 3, 4.5f)};
    result.parameters = {{{"k", "v"}}};
    EXPECT_EQ(
        "ViResult(\n\tgestures=[\"a\\\"b\", \"c\"]\n\tfloats=[]\n\trects=[Rect(1, 2, 3, 4.5)]"
        "\n\tpoints=[]\n\tpoints3d=[]\n\tparameters=[{\"k\"=\"v\"}]\n\timages=[]\n)",
        toStr(result));
}

TEST(ViResultState, TableHasTheListsThatAreNotEmpty) {
    ViResultState state;
    const auto dot = [&] {
        std::ostringstream stream;
        static_cast<BaseState&>(state).saveToDot(stream, nullptr);
        return stream.str();
    };
    const std::string head =
        "<tr><td border=\"1\">ViResultState</td><td align=\"left\" border=\"1\">";
    ViResult& result = ViResultState::viResult;
    result.reset();
    result.images.resize(1);
    EXPECT_EQ(head + "</td></tr>\n", dot());
    result.floats = {1, .5f};
    result.points = {PointF(1, 2), PointF(3, 4)};
    const std::string table = "<table border=\"0\" cellspacing=\"0\">";
    EXPECT_EQ(head + table +
                  "\n  <tr><td border=\"1\">floats</td><td border=\"1\">[1, 0.5]</td></tr>\n"
                  "  <tr><td border=\"1\">points</td><td border=\"1\">" +
                  table +
                  "<tr><td border=\"1\">PointF(1, 2)</td></tr>"
                  "<tr><td border=\"1\">PointF(3, 4)</td></tr></table></td></tr>\n"
                  "</table></td></tr>\n",
              dot());
    EXPECT_EQ("ViResultState(" + toStr(result) + ")", toStr<BaseState>(state));
    state.reset();
    EXPECT_EQ(2u, result.floats.size());
    result.reset();
}

TEST(DebugImages, KeepsScaledCopiesAndSavesThem) {
    Image image(Size(4, 2), COLOR_MODE_MONO);
    zero(image);
    DebugImages::reset();
    DebugImages::add(image, "a", 0.9999995f);
    DebugImages::add(image, "b", 2);
    image.data()[0] = 9;
    EXPECT_EQ(Size(4, 2), DebugImages::debugImages_[0].image.size());
    EXPECT_EQ(0, DebugImages::debugImages_[0].image.data()[0]);
    EXPECT_EQ(Size(8, 4), DebugImages::debugImages_[1].image.size());
    const std::string folder = testing::TempDir() + "debug_" + toStr(getpid());
    std::filesystem::create_directories(folder);
    DebugImages::save(folder, ".pgm");
    Image loaded;
    loaded.load(folder + "/01_b.pgm");
    EXPECT_EQ(DebugImages::debugImages_[1].image, loaded);
    loaded.load(folder + "/00_a.pgm");
    EXPECT_EQ(Size(4, 2), loaded.size());
    DebugImages::reset();
    EXPECT_TRUE(DebugImages::debugImages_.empty());
}
