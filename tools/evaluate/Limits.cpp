#include "Limits.h"

#include <algorithm>

#include "Evaluation.h"

namespace evaluate {

namespace {

/// The variant that pictures show: a right hand of a light tone before the whole room.
constexpr size_t EXAMPLE = 0;
constexpr int EXAMPLE_SIDE = 160;

cv::Mat cutAround(const RenderedPalm& palm) {
    const int left = cvRound(palm.palm.centre.x) - EXAMPLE_SIDE / 2;
    const int top = cvRound(palm.palm.centre.y) - EXAMPLE_SIDE / 2;
    const cv::Rect cut(std::clamp(left, 0, palm.frame.cols - EXAMPLE_SIDE),
                       std::clamp(top, 0, palm.frame.rows - EXAMPLE_SIDE), EXAMPLE_SIDE,
                       EXAMPLE_SIDE);
    return palm.frame(cut).clone();
}

/// A hand with its fingers well on their way is neither an error to report nor to miss.
Wanted wantedOfFolded(double percent) {
    return percent <= 15 ? Wanted::FOUND : percent < 80 ? Wanted::EITHER : Wanted::NOTHING;
}

}  // namespace

std::vector<PalmProperty> palmProperties() {
    const auto share = [](double percent) { return static_cast<float>(percent / 100); };
    const auto at = [](float PalmView::*member) {
        return [member](PalmView& view, double value) { view.*member = static_cast<float>(value); };
    };
    const auto atShare = [share](float PalmView::*member) {
        return [=](PalmView& view, double value) { view.*member = share(value); };
    };
    const auto besideLamp = [share](PalmView& view, double value) {
        view.sideLight = true;
        view.ambient = share(value);
    };
    return {
        {"palm_width",
         "Palm width",
         "pixels of a frame of 320 by 240",
         "",
         {8, 10, 12, 16, 24, 40, 60, 90},
         at(&PalmView::palmWidth)},
        {"lean",
         "Lean in the picture",
         "degrees",
         "positive ones are counter-clockwise",
         {-60, -45, -30, -15, 15, 30, 45, 60},
         at(&PalmView::lean)},
        {"turn",
         "Turn about the hand's length",
         "degrees",
         "either way",
         {0, 10, 20, 30, 40, 50, 60, 70},
         at(&PalmView::turn)},
        {"tip",
         "Fingers tipped away from the camera",
         "degrees",
         "",
         {0, 10, 20, 30, 40, 50, 60, 70},
         at(&PalmView::tip)},
        {"side_light",
         "Hard light from one side",
         "% of the light from all around",
         "",
         {100, 60, 40, 25, 15, 8, 4, 0},
         besideLamp},
        {"background",
         "Brightness of the background",
         "% of the palm's",
         "",
         {20, 40, 60, 80, 100, 130, 170, 250},
         atShare(&PalmView::behind)},
        {"motion",
         "Motion blur",
         "pixels of a frame of 320 by 240",
         "in any direction",
         {0, 4, 8, 12, 16, 24, 32, 48},
         at(&PalmView::motion)},
        {"dim",
         "Dim light with noise",
         "stops below good light",
         "the camera makes up for three",
         {0, 2, 4, 6, 7, 8, 9, 10},
         at(&PalmView::dimmed)},
        {"together",
         "Fingers closed",
         "% of the way to side by side",
         "",
         {0, 15, 30, 45, 60, 75, 90, 100},
         atShare(&PalmView::together)},
        {"folded",
         "Fingers folding",
         "% of the way to a fist",
         "from 80 a report is an error; between 15 and 80 neither is",
         {0, 10, 20, 30, 40, 60, 80, 100},
         atShare(&PalmView::folded),
         wantedOfFolded},
    };
}

std::vector<PalmVariant> palmVariants() {
    std::vector<PalmVariant> variants;
    for (int tone = 0; tone < PalmStudio::TONES; ++tone) {
        for (const bool left : {false, true}) {
            for (int background = 0; background < PalmStudio::BACKGROUNDS; ++background) {
                variants.push_back({tone, left, background, 100 + variants.size()});
            }
        }
    }
    return variants;
}

int LimitsCell::count() const {
    return static_cast<int>(
        std::count_if(outcomes.begin(), outcomes.end(), [this](const PhotoOutcome& outcome) {
            return wanted == Wanted::FOUND ? outcome.found : outcome.reported;
        }));
}

double LimitsCell::share() const {
    return outcomes.empty() ? 0
                            : static_cast<double>(count()) / static_cast<double>(outcomes.size());
}

LimitsRow sweep(const PalmProperty& property, const std::vector<PalmVariant>& variants,
                const PalmStudio& studio, EngineSession& session,
                const std::function<void()>& onShown) {
    LimitsRow row{property.name, property.title, property.unit, property.note, {}};
    for (const double value : property.values) {
        LimitsCell cell{value, property.wanted(value), {}, {}};
        PalmView view;
        property.set(view, value);
        for (const PalmVariant& variant : variants) {
            const RenderedPalm palm = studio.take(view, variant);
            PhotoOutcome outcome;
            outcome.kind = training::Kind::PALM;
            judge(session.showStill(palm.frame, STILL_FRAMES, variant.seed), palm.palm, {},
                  outcome);
            if (cell.outcomes.size() == EXAMPLE) {
                cell.example = cutAround(palm);
            }
            cell.outcomes.push_back(outcome);
            onShown();
        }
        row.cells.push_back(cell);
    }
    return row;
}

}  // namespace evaluate
