#include "ModelCard.h"

#include <gtest/gtest.h>

#include "DataFolder.h"
#include "Failure.h"
#include "Outcomes.h"
#include "Output.h"

namespace {

using training::Kind;

TEST(ModelCard, TellsSourcesCountsAndTheWeakestGroup) {
    TemporaryFolder folder;
    const std::string readme = folder.path("README.md");
    evaluate::writeText(readme,
                        "# Pictures\n\n| split | source | repository | licence | images | palm | "
                        "hand | scene | shows |\n|---|---|---|---|---|---|---|---|---|\n"
                        "| train | one | a/b | CC BY 4.0 | 7 | 4 | 2 | 1 | |\n"
                        "| val | two |  | none stated | 3 | 3 | 0 | 0 | webcam |\n"
                        "| other | text | that | is | no | row | of | it |\n");
    const auto sources = evaluate::readSources(readme);
    ASSERT_EQ(2u, sources.size());
    EXPECT_EQ("CC BY 4.0", sources[0].licence);
    EXPECT_EQ("", sources[1].repository);

    evaluate::Evaluation run;
    run.split = "val";
    for (int i = 0; i < 20; ++i) {
        run.photographs.push_back(outcomeOf(Kind::PALM, "easy", i, true));
        run.photographs.push_back(outcomeOf(Kind::PALM, "hard", i, i < 5));
        run.photographs.push_back(outcomeOf(Kind::HAND, "easy", 100 + i, i == 0));
    }
    const std::string card = modelCard(evaluate::Report(run), sources);
    EXPECT_NE(std::string::npos, card.find("| train | one | a/b | CC BY 4.0 | 7 | 4 | 2 | 1 |"));
    EXPECT_NE(std::string::npos, card.find("| recall | 25 of 40 | 62.5% ["));
    EXPECT_NE(std::string::npos, card.find("| alarms on other poses | 1 of 20 | 5.0% ["));
    const size_t weak = card.find("## Known weaknesses");
    ASSERT_NE(std::string::npos, weak);
    EXPECT_LT(card.find("| source hard | 5 of 20 | 25.0%", weak), card.find("| source easy", weak));
    EXPECT_NE(std::string::npos, card.find("scan 15, first verifier 0"));
    EXPECT_NE(std::string::npos, card.find("](images/limits.jpg)", weak));
    EXPECT_NE(std::string::npos, card.find("evaluate limits --out docs/images/limits.jpg\n```"));
}

TEST(ModelCard, WantsTheTableOfSources) {
    TemporaryFolder folder;
    evaluate::writeText(folder.path("README.md"), "nothing\n");
    EXPECT_THROW(evaluate::readSources(folder.path("README.md")), training::Failure);
    EXPECT_THROW(evaluate::readSources(folder.path("none.md")), training::Failure);
}

}  // namespace
