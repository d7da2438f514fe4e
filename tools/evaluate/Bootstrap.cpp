#include "Bootstrap.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <map>

#include "Random.h"

namespace evaluate {

namespace {

/// The examples of a source, picture by picture.
struct Source {
    bool byPicture = false;
    std::vector<std::vector<int>> pictures;
};

std::vector<Source> sourcesOf(const std::vector<Origin>& origins) {
    std::map<std::string, std::map<std::string, std::vector<int>>> sorted;
    for (size_t i = 0; i < origins.size(); ++i) {
        sorted[origins[i].source][origins[i].picture].push_back(static_cast<int>(i));
    }
    std::vector<Source> sources;
    for (auto& [name, pictures] : sorted) {
        Source source{Bootstrap::isByPicture(name), {}};
        for (auto& [picture, examples] : pictures) source.pictures.push_back(std::move(examples));
        sources.push_back(std::move(source));
    }
    return sources;
}

std::vector<int> drawPictures(const Source& source, training::Random& random) {
    std::vector<int> examples;
    const int count = static_cast<int>(source.pictures.size());
    for (int i = 0; i < count; ++i) {
        const std::vector<int>& picture = source.pictures[random.below(count)];
        examples.insert(examples.end(), picture.begin(), picture.end());
    }
    return examples;
}

Draw drawOnce(const std::vector<Source>& sources, const std::vector<int>& people,
              training::Random& random) {
    Draw draw;
    for (const Source& source : sources) {
        if (source.byPicture) draw.push_back(drawPictures(source, random));
    }
    for (size_t i = 0; i < people.size(); ++i) {
        const int drawn = people[random.below(static_cast<int>(people.size()))];
        draw.push_back(drawPictures(sources[drawn], random));
    }
    return draw;
}

}  // namespace

bool Bootstrap::isByPicture(const std::string& source) {
    static const char* const NAMES[] = {"hagrid_capstone", "imagenet_sample", "mouso_people",
                                        "wuqi_rps_sxsw"};
    return std::find(std::begin(NAMES), std::end(NAMES), source) != std::end(NAMES);
}

Bootstrap::Bootstrap(const std::vector<Origin>& origins, int replicates, uint64_t seed) {
    const std::vector<Source> sources = sourcesOf(origins);
    std::vector<int> people;
    for (size_t i = 0; i < sources.size(); ++i) {
        if (!sources[i].byPicture) people.push_back(static_cast<int>(i));
        all_.emplace_back();
        for (const auto& picture : sources[i].pictures) {
            all_.back().insert(all_.back().end(), picture.begin(), picture.end());
        }
    }
    for (int r = 0; r < replicates; ++r) {
        training::Random random{seed, static_cast<uint64_t>(r)};
        draws_.push_back(drawOnce(sources, people, random));
    }
}

Interval Bootstrap::of(const Statistic& statistic) const {
    std::vector<double> values;
    for (const Draw& draw : draws_) {
        const double value = statistic(draw);
        if (!std::isnan(value)) values.push_back(value);
    }
    return {statistic(all_), quantile(values, 0.025), quantile(values, 0.975)};
}

double quantile(std::vector<double> values, double q) {
    if (values.empty()) return std::numeric_limits<double>::quiet_NaN();
    std::sort(values.begin(), values.end());
    const double place = q * static_cast<double>(values.size() - 1);
    const size_t below = static_cast<size_t>(place);
    if (below + 1 == values.size()) return values.back();
    const double part = place - static_cast<double>(below);
    // Equal neighbours give themselves, also where they are infinite.
    if (part == 0 || values[below] == values[below + 1]) return values[below];
    return values[below] + part * (values[below + 1] - values[below]);
}

}  // namespace evaluate
