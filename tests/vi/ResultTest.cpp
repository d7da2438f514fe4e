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
    const std::pair<const char*, ColorMode> rows[] = {
        {"mono16x", COLOR_MODE_MONO16}, {"mono-16", COLOR_MODE_MONO},  {"rgba", COLOR_MODE_RGBA},
        {"rgb left", COLOR_MODE_RGB},   {"float2", COLOR_MODE_FLOAT2}, {"yuvmono", COLOR_MODE_YUV},
    };
    for (const auto& row : rows) EXPECT_EQ(row.second, ViInterface::parseImageName(row.first));
    for (const std::string name : {"xmono", ""})
        EXPECT_EQ("cannot parse color mode from " + name + "\n",
                  assertionOf([&] { ViInterface::parseImageName(name); }));
}

TEST(ViResult, TextAndTable) {
    ViResultState state;
    ViResult& result = ViResultState::viResult;
    result.reset();
    result.images.resize(1);
    result.gestures = {"a\"b", "c"};
    result.points = {PointF(1, 2), PointF(3, 4)};
    result.parameters = {{{"k", "v"}}};
    EXPECT_EQ(
        "ViResultState(ViResult(\n\tgestures=[\"a\\\"b\", \"c\"]\n\tfloats=[]\n\trects=[]"
        "\n\tpoints=[PointF(1, 2), PointF(3, 4)]\n\tpoints3d=[]\n\tparameters=[{\"k\"=\"v\"}]"
        "\n\timages=[" +
            toStr(Image()) + "]\n))",
        toStr<BaseState>(state));
    result.gestures.clear();
    result.parameters.clear();
    result.floats = {1, .5f};
    std::ostringstream dot;
    static_cast<BaseState&>(state).saveToDot(dot, nullptr);
    const std::string table = "<table border=\"0\" cellspacing=\"0\">";
    EXPECT_EQ("<tr><td border=\"1\">ViResultState</td><td align=\"left\" border=\"1\">" + table +
                  "\n  <tr><td border=\"1\">floats</td><td border=\"1\">[1, 0.5]</td></tr>\n"
                  "  <tr><td border=\"1\">points</td><td border=\"1\">" +
                  table +
                  "<tr><td border=\"1\">PointF(1, 2)</td></tr>"
                  "<tr><td border=\"1\">PointF(3, 4)</td></tr></table></td></tr>\n"
                  "</table></td></tr>\n",
              dot.str());
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
    DebugImages::reset();
    EXPECT_TRUE(DebugImages::debugImages_.empty());
}
