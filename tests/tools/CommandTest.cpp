#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>

#include "DataFolder.h"

namespace {

struct Outcome {
    int status;
    std::string text;  ///< both streams
};

Outcome run(const std::string& command) {
    Outcome outcome{};
    FILE* pipe = popen((command + " 2>&1").c_str(), "r");
    char piece[512];
    while (fgets(piece, sizeof piece, pipe)) outcome.text += piece;
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

// Wrong usage ends with 2, a failure with 1, each with one line that names program and fault.
TEST(Command, EndsWithOneLine) {
    TemporaryFolder folder;
    std::ofstream(folder.path("manifest.csv")) << "image,split\n";
    const std::string train = TRAIN_CASCADE, evaluate = EVALUATE_CASCADE, at = folder.path();
    const struct {
        std::string command;
        int status;
        std::string fault;
    } rows[] = {
        {train, 2, "A subcommand is required"},
        {train + " train --data x --ring y.ring --size huge", 2, "--size"},
        {train + " train --data " + at + "/none --ring y.ring", 1, "cannot be opened"},
        {train + " train --data " + at + " --ring y.ring", 1,
         "manifest.csv:1: the header lacks the column \"source\""},
        {train + " shift --ring " + at + "/manifest.csv --by 1", 1, "give a .ring file"},
        {evaluate + " --data " + at + " --ring " + at + "/none.ring", 1, "cannot be opened"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.command);
        const Outcome outcome = run(row.command);
        EXPECT_EQ(row.status, outcome.status);
        EXPECT_NE(std::string::npos, outcome.text.find("_cascade: ")) << outcome.text;
        EXPECT_NE(std::string::npos, outcome.text.find(row.fault)) << outcome.text;
        EXPECT_EQ(1, std::count(outcome.text.begin(), outcome.text.end(), '\n')) << outcome.text;
    }
}

}  // namespace
