#include <gtest/gtest.h>

#include <fstream>

#include "DataFolder.h"
#include "DoubtfulRows.h"
#include "Failure.h"
#include "Outcomes.h"
#include "Output.h"
#include "ReportJson.h"
#include "Sequences.h"
#include "Sheets.h"

namespace {

using training::Kind;

template <typename Call>
std::string failureOf(const Call& call) {
    try {
        call();
    } catch (const training::Failure& failure) {
        return failure.what();
    }
    return "no failure";
}

TEST(Report, ReadsBackWhatItWrote) {
    training::Random random(3);
    evaluate::Evaluation run;
    run.split = "val";
    run.data = "photographs";
    run.every = 3;
    run.limit = 60;
    run.hasVerifiers = true;
    run.scanning = {20, 7.5, 9.25};
    run.tracking = {10, 1.5, 2};
    run.resting = {60, .25, .5};
    run.photographs = randomOutcomes(60, random);
    for (auto& outcome : run.photographs) {
        if (outcome.lost) outcome.lost = static_cast<evaluate::Stage>(random.below(4));
    }
    evaluate::SequenceOutcome video;
    video.video = "a.mp4";
    video.hasPalm = true;
    video.seconds = 2.5;
    video.framesPerSecond = 30;
    video.start = .5;
    video.end = 1.25;
    video.reports = {{21, .7, .875}, {70, 2.3333, .5}};
    run.sequences = {video};
    const auto written = jsonOf(evaluate::Report(run));
    TemporaryFolder folder;
    evaluate::writeText(folder.path("report.json"), written.dump());
    const auto again = jsonOf(evaluate::Report(evaluate::readReport(folder.path("report.json"))));
    for (const char* part : {"photographs", "sequences", "lost_by", "alarms_in_videos", "data",
                             "split", "every", "limit", "has_verifiers", "processor_time"}) {
        EXPECT_EQ(written.at(part), again.at(part)) << part;
    }
    EXPECT_EQ(written.at("figures").size(), again.at("figures").size());
    EXPECT_FALSE(std::filesystem::exists(folder.path("report.json.part")));
}

TEST(Report, RefusesOtherFiles) {
    TemporaryFolder folder;
    const std::string path = folder.path("report.json");
    const struct {
        const char* text;
        const char* fault;
    } rows[] = {{"{\"format\": ", "is no JSON file"},
                {"[]", "is no report"},
                {"{\"format\": \"evaluate 0\"}", "another format"},
                {"{\"format\": \"evaluate 1\", \"split\": \"val\", \"sequences\": [], "
                 "\"photographs\": [{\"kind\": \"palm\"}]}",
                 "is no report"}};
    for (const auto& row : rows) {
        std::ofstream(path) << row.text;
        const std::string failure = failureOf([&] { evaluate::readReport(path); });
        EXPECT_EQ(0u, failure.find(path)) << failure;
        EXPECT_NE(std::string::npos, failure.find(row.fault)) << failure;
    }
    EXPECT_THROW(evaluate::writeText(folder.path("none/x"), ""), evaluate::OutputFailure);
}

TEST(Lists, NameTheLineThatIsWrong) {
    TemporaryFolder folder;
    const auto doubtful = [&] { evaluate::DoubtfulRows::read(folder.path("sequences.csv")); };
    const auto videos = [&] { evaluate::readSequences(folder.path(), "val"); };
    const std::string ofRows = "image,kind,reason\n", ofVideos = "video,split,kind,start,end\n";
    const struct {
        std::function<void()> read;
        std::string text, expected;
    } rows[] = {
        {doubtful, "image,kind\n", ":1: the header \"image,kind,reason\" expected"},
        {doubtful, ofRows + "a.jpg,palm,bent, and covered\na.jpg,palm\n", ":3: 3 fields expected"},
        {doubtful, ofRows + "a.jpg,fist,x\n", ":2: kind: palm, hand or scene expected"},
        {doubtful, ofRows + "a.jpg,palm,\n", ":2: reason"},
        {doubtful, ofRows + "a.jpg,palm,a hand, bent\r\n", "no failure"},
        {videos, ofVideos + "a.mp4,val,palm,x,2\n", ":2: start: a number"},
        {videos, ofVideos + "a.mp4,val,palm,2,1\n", ":2: end: must be after start"},
        {videos, ofVideos + "a.mp4,val,fist,,\n", ":2: kind: palm or none"},
        {videos, ofVideos + "a.mp4,train,none,,\nb.mp4,val,none,,\n", "no failure"},
    };
    for (const auto& row : rows) {
        std::ofstream(folder.path("sequences.csv")) << row.text;
        EXPECT_NE(std::string::npos, failureOf(row.read).find(row.expected)) << failureOf(row.read);
    }
    std::ofstream(folder.path("sequences.csv")) << ofRows << "a.jpg,scene,a real hand\n";
    const auto list = evaluate::DoubtfulRows::read(folder.path("sequences.csv"));
    EXPECT_TRUE(list.contains("a.jpg", Kind::SCENE));
    EXPECT_FALSE(list.contains("a.jpg", Kind::PALM));
}

TEST(Sheets, WorstFirstButNotOfOneSourceAlone) {
    std::vector<evaluate::PhotoOutcome> outcomes;
    for (int i = 0; i < 12; ++i) {
        auto miss = outcomeOf(Kind::PALM, i < 9 ? "a" : "b", i, false);
        miss.lost = i % 2 ? evaluate::Stage::CONFIRMATION : evaluate::Stage::SCAN;
        miss.lastScore = (i * 7 % 12) * .01;
        auto alarm = outcomeOf(Kind::HAND, i < 9 ? "a" : "b", i, true);
        alarm.score = miss.lastScore;
        outcomes.insert(outcomes.end(), {miss, alarm, outcomeOf(Kind::PALM, "c", i, true)});
    }
    const auto misses = evaluate::worstMisses(outcomes, 6);
    const auto alarms = evaluate::worstAlarms(outcomes, Kind::HAND, 6);
    // Scores by number: 0 7 2 9 4 11 6 1 8 | 3 10 5.
    const std::vector<std::string> worstMissed = {"a/0.jpg", "a/2.jpg", "b/10.jpg", "b/9.jpg"};
    const std::vector<std::string> worstAlarming = {"a/5.jpg", "b/10.jpg", "a/3.jpg", "b/11.jpg"};
    const auto names = [](const std::vector<evaluate::PhotoOutcome>& some) {
        std::vector<std::string> images;
        for (const auto& outcome : some) images.push_back(outcome.image);
        return images;
    };
    EXPECT_EQ(worstMissed, names(misses));
    EXPECT_EQ(worstAlarming, names(alarms));
}

}  // namespace
