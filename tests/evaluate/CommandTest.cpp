#include <gtest/gtest.h>
#include <sys/wait.h>

#include <cstdio>
#include <nlohmann/json.hpp>
#include <opencv2/imgcodecs.hpp>
#include <sstream>

#include "DataFolder.h"

namespace {

struct Outcome {
    int status;
    std::string text;  ///< both streams
};

Outcome run(const std::string& arguments) {
    Outcome outcome{};
    FILE* pipe = popen((EVALUATE " " + arguments + " 2>&1").c_str(), "r");
    char piece[512];
    while (fgets(piece, sizeof piece, pipe)) outcome.text += piece;
    outcome.status = WEXITSTATUS(pclose(pipe));
    return outcome;
}

std::string contentOf(const std::string& path) {
    std::ostringstream text;
    text << std::ifstream(path).rdbuf();
    return text.str();
}

/// Drawn photographs of the split val.
class Command : public testing::Test {
protected:
    Command() : at_(folder_.path()) {
        writeDrawnData(at_);
        std::string manifest = contentOf(at_ + "/manifest.csv");
        for (size_t i; (i = manifest.find(",train,")) != std::string::npos;) {
            manifest.replace(i, 7, ",val,");
        }
        std::ofstream(at_ + "/manifest.csv") << manifest;
    }

    TemporaryFolder folder_;
    const std::string at_;
};

TEST_F(Command, EndsWithOneLine) {
    const struct {
        std::string arguments;
        int status;
        std::string fault;
    } rows[] = {
        {"", 2, "A subcommand is required"},
        {"run", 2, "--data is required"},
        {"run --data " + at_ + " --every 0", 2, "--every"},
        {"run --data " + at_ + "/none", 2, "cannot be opened"},
        {"run --data " + at_ + " --split train", 2, "needs pictures of the kind scene"},
        {"run --data " + at_ + " --doubtful " + at_ + "/manifest.csv", 2, "the header"},
        {"run --data " + at_ + " --json " + at_ + "/none/x.json", 2, "there is no folder"},
        {"compare x.json", 2, "NEW is required"},
        {"compare " + at_ + "/manifest.csv x.json", 2, "is no JSON file"},
        {"check --data " + at_ + " --bounds none.json", 2, "cannot be opened"},
        {"check --skip-if-absent --data " + at_ + " --bounds none.json", 77, "no bounds recorded"},
        {"limits", 2, "--out is required"},
        {"limits --out " + at_ + "/none/x.png", 2, "there is no folder"},
        {"limits --out " + at_ + "/x.png --mesh none.glb", 2, "hand mesh"},
        {"check --skip-if-absent --data none --bounds none.json", 77, "no photographs in none"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.arguments);
        const Outcome outcome = run(row.arguments);
        EXPECT_EQ(row.status, outcome.status);
        EXPECT_EQ(0u, outcome.text.find(row.status == 77 ? "skipped: " : "evaluate: "));
        EXPECT_NE(std::string::npos, outcome.text.find(row.fault)) << outcome.text;
        EXPECT_EQ(1, std::count(outcome.text.begin(), outcome.text.end(), '\n')) << outcome.text;
    }
}

TEST_F(Command, WritesReportsThatCompare) {
    const std::string report = at_ + "/report.json", page = at_ + "/page.png";
    const Outcome first =
        run("run --data " + at_ + " --limit 2 --json " + report + " --page " + page);
    ASSERT_EQ(0, first.status) << first.text;
    EXPECT_NE(std::string::npos, first.text.find("alarms on scenes"));
    EXPECT_EQ(6u, nlohmann::json::parse(contentOf(report)).at("photographs").size());
    EXPECT_FALSE(cv::imread(page).empty());
    const Outcome comparison = run("compare " + report + " " + report);
    EXPECT_EQ(0, comparison.status);
    EXPECT_NE(std::string::npos, comparison.text.find("no difference that the data can tell\n"));
}

TEST_F(Command, CheckFailsBeyondTheBounds) {
    const std::string bounds = at_ + "/validation/bounds.json";
    const std::string check = "check --data " + at_ + " --bounds " + bounds;
    ASSERT_EQ(0, run(check + " --record").status);
    const Outcome within = run(check);
    EXPECT_EQ(0, within.status) << within.text;
    nlohmann::json file = nlohmann::json::parse(contentOf(bounds));
    EXPECT_EQ(5u, file.at("exhibits").size());
    file["recorded"]["recall"] = 3;  // as one palm of so few may turn
    std::ofstream(bounds) << file;
    const Outcome beyond = run(check);
    EXPECT_EQ(1, beyond.status);
    EXPECT_EQ(0u, beyond.text.find("out of bounds: recall")) << beyond.text;
}

}  // namespace
