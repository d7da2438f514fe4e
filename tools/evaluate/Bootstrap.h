#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace evaluate {

/// Where an example comes from: what decides which examples are drawn together.
struct Origin {
    std::string source;
    std::string picture;
};

/// Indices of examples, one list for each source that takes part. A source that was drawn twice
/// has two lists.
using Draw = std::vector<std::vector<int>>;

/// A figure of the examples that take part, such as a share; NaN where there is none.
using Statistic = std::function<double(const Draw&)>;

/// A figure with its 95% interval.
struct Interval {
    double value = 0, low = 0, high = 0;
};

/// Intervals that hold for other people than those in the pictures. Draws have two levels: as many
/// sources as there are, with replacement, since one source is mostly one person in one room; then
/// in each of them as many pictures as it has, with replacement. Examples of one picture stay
/// together. A source whose every picture shows another person or place takes part once in every
/// draw, and only its pictures are drawn.
class Bootstrap {
public:
    static constexpr int REPLICATES = 1000;
    static constexpr uint64_t SEED = 20261121;

    explicit Bootstrap(const std::vector<Origin>& origins, int replicates = REPLICATES,
                       uint64_t seed = SEED);

    /// The statistic of all examples, and the range of its middle 95% over the draws. Draws where
    /// it is NaN are passed over.
    Interval of(const Statistic& statistic) const;

    /// Every example once.
    const Draw& all() const { return all_; }
    const std::vector<Draw>& draws() const { return draws_; }

    /// Whether the pictures of a source are independent of one another.
    static bool isByPicture(const std::string& source);

private:
    Draw all_;
    std::vector<Draw> draws_;
};

/// The value below which the share `q` of the values lies, interpolated; NaN for none.
double quantile(std::vector<double> values, double q);

}  // namespace evaluate
