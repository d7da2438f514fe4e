#include <gtest/gtest.h>
#include <unistd.h>

#include <fstream>
#include <sstream>

#include "KZ_InheritedState.h"
#include "KZ_NumericState.h"
#include "KZ_ObjectLocation.h"
#include "KZ_StateTags.h"
#include "KZ_Utils.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::failureOf;

namespace {

struct Outer {
    struct _LinesState {};
};

using FrameNum = NumericState<int, _FrameNumState>;
using Scores = InheritedState<std::vector<float>, _ScoresState>;
using Lines = InheritedState<std::string, Outer::_LinesState>;
using Location = InheritedState<ObjectLocation, _LocationState>;
using Parameters = InheritedState<std::map<std::string, std::string>, _FrameParametersState>;

std::string contentOf(const std::string& path) {
    std::ifstream file(path);
    return std::string(std::istreambuf_iterator<char>(file), {});
}

}  // namespace

TEST(StateAggregator, KeepsOneStateATypeAndResetsThem) {
    StateAggregator first, second;
    first.reset();
    EXPECT_EQ("StateAggregator()", toStr(first));
    first.get<Scores>() = {.5f, 2};
    first.get<FrameNum>().value = 7;
    first.get<Location>().size.width = 3;
    EXPECT_EQ(7, first.get<FrameNum>().value);
    EXPECT_EQ(0, second.get<FrameNum>().value);
    const std::string text = toStr(first);
    EXPECT_NE(std::string::npos, text.find("FrameNumState(7)"));
    EXPECT_NE(std::string::npos, text.find("ScoresState([0.5, 2])"));
    EXPECT_EQ(FrameNum::id() < Scores::id(), text.find("FrameNum") < text.find("Scores"));
    Scores* const scores = &first.get<Scores>();
    first.reset();
    EXPECT_EQ(scores, &first.get<Scores>());
    EXPECT_TRUE(scores->empty());
    EXPECT_EQ(0, first.get<FrameNum>().value);
    EXPECT_EQ(0, first.get<Location>().size.width);
}

TEST(State, PrintsTagAndValue) {
    Parameters parameters;
    parameters["a"] = "b c";
    EXPECT_EQ("FrameParametersState({\"a\"=\"b c\"})", toStr(parameters));
    const Location location(ObjectLocation(PointF(1, 2), SizeF(3, 4), 5, Side::RIGHT));
    EXPECT_EQ("LocationState(" + toStr<ObjectLocation>(location) + ")", toStr(location));
}

TEST(StateAggregator, WritesAGraphvizFile) {
    StateAggregator states;
    states.get<FrameNum>().value = 7;
    states.get<Lines>() = "one (1)\ntwo";
    const std::string folder = testing::TempDir() + "states_" + toStr(getpid());
    const std::string path = folder + "/a/states.dot";
    states.saveToDot(path);
    const std::string table = "\"" + toStr(static_cast<const void*>(&states)) +
                              "\"[shape=plaintext label = <<table border=\"0\" cellspacing=\"0\">";
    const std::string frameRow =
        "<tr><td border=\"1\">FrameNumState</td><td align=\"left\" border=\"1\">7</td></tr>\n";
    const std::string linesRow =
        "<tr><td border=\"1\">LinesState</td><td align=\"left\" border=\"1\">"
        "one (1)<br align=\"left\"/>two</td></tr>\n";
    const std::string rows =
        FrameNum::id() < Lines::id() ? frameRow + linesRow : linesRow + frameRow;
    EXPECT_EQ("digraph {\nrankdir=LR\nnode[fontname=\"monospace\"]\n" + table + rows +
                  "</table>>]\n}\n\n",
              contentOf(path));
    EXPECT_EQ(folder + "/a\n", failureOf([&] { states.saveToDot(folder + "/a"); }).detail);
}
