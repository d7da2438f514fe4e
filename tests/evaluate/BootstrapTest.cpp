#include "Bootstrap.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "Random.h"

namespace {

using evaluate::Bootstrap;
using evaluate::Draw;
using evaluate::Interval;
using evaluate::Origin;

/// The number of successes below which lies the share `q` of a binomial distribution.
int binomialQuantile(int n, double p, double q) {
    double sum = 0;
    for (int k = 0; k <= n; ++k) {
        sum += std::exp(std::lgamma(n + 1) - std::lgamma(k + 1) - std::lgamma(n - k + 1) +
                        k * std::log(p) + (n - k) * std::log(1 - p));
        if (sum >= q) return k;
    }
    return n;
}

evaluate::Statistic meanOf(const std::vector<double>& values) {
    return [values](const Draw& draw) {
        double sum = 0, count = 0;
        for (const auto& list : draw) {
            for (const int i : list) sum += values[i], ++count;
        }
        return sum / count;
    };
}

// What is known in closed form: the count in a draw of independent pictures, and the count of whole
// sources that are right throughout, are binomial.
TEST(Bootstrap, IntervalsOfKnownDistributions) {
    const struct {
        const char* what;
        bool byPicture;
        int units, right, examplesEach;
    } rows[] = {{"pictures of other people", true, 200, 150, 1},
                {"pictures with several palms each", true, 60, 20, 3},
                {"people who are found always or never", false, 30, 12, 7}};
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        std::vector<Origin> origins;
        std::vector<double> values;
        for (int unit = 0; unit < row.units; ++unit) {
            for (int i = 0; i < row.examplesEach; ++i) {
                const std::string name = std::to_string(unit);
                const std::string picture = row.byPicture ? name : name + "." + std::to_string(i);
                origins.push_back({row.byPicture ? "hagrid_capstone" : name, picture});
                values.push_back(unit < row.right);
            }
        }
        const double p = static_cast<double>(row.right) / row.units, n = row.units;
        const Interval interval = Bootstrap(origins, 4000).of(meanOf(values));
        EXPECT_DOUBLE_EQ(p, interval.value);
        EXPECT_NEAR(binomialQuantile(row.units, p, .025) / n, interval.low, 1.01 / n);
        EXPECT_NEAR(binomialQuantile(row.units, p, .975) / n, interval.high, 1.01 / n);
    }
}

TEST(Bootstrap, DrawsSourcesThenTheirPictures) {
    training::Random random(11);
    std::vector<Origin> origins;
    const char* const sources[] = {"a", "b", "c", "hagrid_capstone", "imagenet_sample"};
    for (int i = 0; i < 200; ++i) {
        origins.push_back({sources[random.below(5)], std::to_string(random.below(60))});
    }
    std::map<std::string, std::set<std::string>> pictures;
    for (const Origin& origin : origins) pictures[origin.source].insert(origin.picture);
    const Bootstrap bootstrap(origins, 50);
    bool someSourceTwice = false, somePictureTwice = false;
    for (const Draw& draw : bootstrap.draws()) {
        std::map<std::string, int> lists;
        for (const auto& list : draw) {
            ASSERT_FALSE(list.empty());
            const std::string source = origins[list[0]].source;
            ++lists[source];
            std::map<int, int> times;
            std::map<std::string, int> drawn;
            for (const int i : list) {
                ASSERT_EQ(source, origins[i].source);
                ++times[i];
            }
            int pictureCount = 0;
            for (size_t i = 0; i < origins.size(); ++i) {
                if (origins[i].source != source) continue;
                const int here = times[static_cast<int>(i)];
                const auto [known, isNew] = drawn.emplace(origins[i].picture, here);
                EXPECT_EQ(known->second, here) << "examples of one picture stay together";
                pictureCount += isNew ? here : 0;
                somePictureTwice = somePictureTwice || here > 1;
            }
            EXPECT_EQ(pictures[source].size(), static_cast<size_t>(pictureCount));
        }
        EXPECT_EQ(1, lists["hagrid_capstone"]);
        EXPECT_EQ(1, lists["imagenet_sample"]);
        EXPECT_EQ(5u, draw.size());
        for (const char* person : {"a", "b", "c"}) someSourceTwice |= lists[person] > 1;
    }
    EXPECT_TRUE(someSourceTwice && somePictureTwice);
}

TEST(Bootstrap, PassesOverDrawsWithoutTheFigure) {
    const Bootstrap bootstrap({{"a", "1"}, {"b", "1"}}, 100);
    const Interval interval = bootstrap.of([](const Draw& draw) {
        const bool hasFirst = draw[0][0] == 0 || draw[1][0] == 0;
        return hasFirst ? 0.25 : std::nan("");
    });
    EXPECT_EQ(0.25, interval.low);
    EXPECT_EQ(0.25, interval.high);
}

TEST(Quantile, InterpolatesBetweenSortedValues) {
    const struct {
        std::vector<double> values;
        double q, expected;
    } rows[] = {{{7}, 0.3, 7},       {{4, 1}, 0.5, 2.5},         {{5, 1, 3}, 0, 1},
                {{5, 1, 3}, 1, 5},   {{10, 0, 30, 20}, 0.9, 27}, {{1, 2, 3, 4, 5}, 0.25, 2},
                {{2, 2, 9}, 0.25, 2}};
    for (const auto& row : rows) {
        EXPECT_DOUBLE_EQ(row.expected, evaluate::quantile(row.values, row.q));
    }
    EXPECT_TRUE(std::isnan(evaluate::quantile({}, 0.5)));
}

}  // namespace
