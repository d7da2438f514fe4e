#pragma once

#include <functional>
#include <opencv2/core.hpp>
#include <string>
#include <vector>

#include "EngineSession.h"
#include "Outcome.h"
#include "RenderedPalm.h"

namespace evaluate {

/// What shall become of a hand.
enum class Wanted { FOUND, EITHER, NOTHING };

/// A property of how a hand is shown, and the values at which it is tried.
struct PalmProperty {
    std::string name;   ///< in report files
    std::string title;  ///< for people
    std::string unit, note;
    std::vector<double> values;
    std::function<void(PalmView&, double)> set;
    std::function<Wanted(double)> wanted = [](double) { return Wanted::FOUND; };
};
std::vector<PalmProperty> palmProperties();

/// Every tone of skin, either hand, every background.
std::vector<PalmVariant> palmVariants();

/// What became of the hands shown at one value.
struct LimitsCell {
    double value = 0;
    Wanted wanted = Wanted::FOUND;
    std::vector<PhotoOutcome> outcomes;  ///< by variant
    cv::Mat example;                     ///< what the engine saw of one of them, around the hand

    /// Hands found; where no open palm is shown, hands with a report anywhere.
    int count() const;
    /// `count` as a share, 0 to 1.
    double share() const;
};

struct LimitsRow {
    std::string name, title, unit, note;
    std::vector<LimitsCell> cells;
};

/// Shows the hands of all variants at every value, each as photographs are shown. `onShown` hears
/// of each.
LimitsRow sweep(const PalmProperty& property, const std::vector<PalmVariant>& variants,
                const PalmStudio& studio, EngineSession& session,
                const std::function<void()>& onShown);

}  // namespace evaluate
