#include "CascadeTrainer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <map>
#include <sstream>

#include "Failure.h"
#include "Parallel.h"
#include "PositiveRenderer.h"
#include "WindowScorer.h"

namespace training {

namespace {

/// Palms are dealt into so many folds by source; each stage sets its threshold on another one.
constexpr int FOLDS = 4;

/// What a seed is for, so that no two uses share draws.
enum Use : uint64_t { RENDER = 1, MINE, POOL, ROUND };

/// Sources of which every picture shows another person: dealt into folds by picture.
bool isCrowd(const std::string& source) {
    return source == "hagrid_capstone";
}

/// Fold of every one-person source: the largest first, each to the fold with the fewest palms.
std::map<std::string, int> foldsBySource(const std::map<std::string, int>& palmsPerSource) {
    std::vector<std::pair<int, std::string>> order;
    for (const auto& [source, palms] : palmsPerSource) {
        if (!isCrowd(source)) order.emplace_back(-palms, source);
    }
    std::sort(order.begin(), order.end());
    std::map<std::string, int> folds;
    int filled[FOLDS] = {};
    for (const auto& [minusPalms, source] : order) {
        const int fold = static_cast<int>(std::min_element(filled, filled + FOLDS) - filled);
        folds[source] = fold;
        filled[fold] -= minusPalms;
    }
    return folds;
}

/// Closed fingers are rare in the data and the hardest to find.
bool hasClosedFingers(const ManifestRow& row) {
    return row.hasBox && row.x1 - row.x0 < 1.25 * row.palmWidth;
}

/// Small sources are shown more often than large ones, though not up to equal parts.
int rendersOf(const ManifestRow& row, int sourcePalms, double base) {
    const double rarity = std::clamp(std::sqrt(300.0 / sourcePalms), 0.7, 2.5);
    const double closed = hasClosedFingers(row) ? 1.7 : 1;
    return std::max(static_cast<int>(std::lround(base * rarity * closed)), 1);
}

std::string text(const char* format, double value) {
    char buffer[64];
    std::snprintf(buffer, sizeof buffer, format, value);
    return buffer;
}

int count(const StageContent& stage, Feature::Kind kind) {
    return static_cast<int>(
        std::count_if(stage.weak.begin(), stage.weak.end(),
                      [&](const WeakClassifier& weak) { return weak.feature.kind == kind; }));
}

/// The largest threshold that lets `share` of the scores pass.
int thresholdFor(std::vector<int> scores, double share) {
    if (scores.empty()) return 0;
    std::sort(scores.begin(), scores.end());
    const size_t lost = static_cast<size_t>((1 - share) * static_cast<double>(scores.size()));
    return scores[std::min(lost, scores.size() - 1)];
}

double passing(const std::vector<int>& scores, int begin, int end, int threshold) {
    const auto passed = std::count_if(scores.begin() + begin, scores.begin() + end,
                                      [&](int score) { return score >= threshold; });
    return static_cast<double>(passed) / std::max(end - begin, 1);
}

// Units of planned work: about a millisecond of both threads.
constexpr double RENDERS_WORK = 6000, FRAME_WORK = 6, WEAK_WORK = 20;

double stageWork(const TrainingPlan& plan, const StagePlan& stage) {
    return static_cast<double>(plan.shapes.size()) * stage.boosting.weakCount * WEAK_WORK +
           stage.maxFrames * FRAME_WORK;
}

}  // namespace

CascadeTrainer::CascadeTrainer(const PhotoStore& store, const TrainingPlan& plan,
                               const std::string& checkpoint, Progress& progress)
    : store_(store),
      plan_(plan),
      checkpoint_(checkpoint),
      progress_(progress),
      frames_(store, "train"),
      backgrounds_(frames_.licensedScenes()) {
    collectPalms();
    ring_.name = "palm";
    for (const WindowShape& shape : plan.shapes) ring_.cascades.push_back({shape, {}});
    ring_.config["plan"] = plan.fingerprint();
    if (!std::ifstream(checkpoint)) return;
    RingContent earlier = readRing(checkpoint);
    if (earlier.config["plan"] != ring_.config["plan"]) {
        throw Failure(checkpoint +
                      ": was written with other settings; delete it to begin anew, or repeat the "
                      "settings to go on");
    }
    ring_ = earlier;
    progress_.restoreLog(ring_.log);
}

double CascadeTrainer::plannedWork(const TrainingPlan& plan) {
    double work = RENDERS_WORK * static_cast<double>(plan.shapes.size());
    for (const StagePlan& stage : plan.stages) work += stageWork(plan, stage);
    return work;
}

RingContent CascadeTrainer::run() {
    const int done = static_cast<int>(ring_.cascades[0].stages.size());
    for (int stage = 0; stage < done; ++stage) {
        progress_.skip(stageWork(plan_, plan_.stages[stage]));
    }
    renderPositives();
    for (int stage = done; stage < static_cast<int>(plan_.stages.size()); ++stage) {
        trainStage(stage);
    }
    return ring_;
}

void CascadeTrainer::collectPalms() {
    const std::vector<Photo>& photos = store_.photos();
    const auto usable = [](const Photo& photo, const ManifestRow& row) {
        return photo.split == "train" && row.kind == Kind::PALM && isLicensed(photo.source);
    };
    std::map<std::string, int> palms;
    for (const Photo& photo : photos) {
        for (const ManifestRow& row : photo.rows) palms[photo.source] += usable(photo, row);
    }
    const std::map<std::string, int> folds = foldsBySource(palms);
    for (int i = 0; i < static_cast<int>(photos.size()); ++i) {
        const std::string& source = photos[i].source;
        for (const ManifestRow& row : photos[i].rows) {
            if (!usable(photos[i], row)) continue;
            palms_.push_back({i, &row, isCrowd(source) ? i % FOLDS : folds.at(source),
                              rendersOf(row, palms[source], plan_.rendersPerPalm)});
        }
    }
    if (palms_.size() < FOLDS)
        throw Failure("too few palms of licensed sources in the split train");
}

void CascadeTrainer::renderPositives() {
    std::vector<PositiveRenderer> renderers;
    for (int i = 0; i < plan_.threads; ++i) renderers.emplace_back(store_, backgrounds_);
    const int count = static_cast<int>(palms_.size());
    for (size_t c = 0; c < plan_.shapes.size(); ++c) {
        std::vector<std::vector<Window>> rendered(palms_.size());
        constexpr int BATCH = 200;
        for (int begin = 0; begin < count; begin += BATCH) {
            const int size = std::min(BATCH, count - begin);
            parallelFor(size, plan_.threads, [&](int offset, int worker) {
                const int i = begin + offset;
                for (int k = 0; k < palms_[i].renders; ++k) {
                    Random random{plan_.seed, RENDER, c, static_cast<uint64_t>(i),
                                  static_cast<uint64_t>(k)};
                    rendered[i].push_back(renderers[worker].render(palms_[i].photo, *palms_[i].row,
                                                                   plan_.shapes[c], random));
                }
            });
            progress_.advance(RENDERS_WORK * size / count, "palms for " + plan_.shapes[c].name);
        }
        Positives positives;
        for (int i = 0; i < count; ++i) {
            for (Window& window : rendered[i]) {
                positives.windows.push_back(std::move(window));
                positives.folds.push_back(palms_[i].fold);
            }
        }
        positives_.push_back(std::move(positives));
    }
}

void CascadeTrainer::dropLostPalms() {
    parallelFor(static_cast<int>(positives_.size()), plan_.threads, [&](int c, int) {
        WindowScorer scorer(ring_, c);
        Positives kept;
        int score = 0;
        for (size_t i = 0; i < positives_[c].windows.size(); ++i) {
            if (!scorer.passes(positives_[c].windows[i], score)) continue;
            kept.windows.push_back(std::move(positives_[c].windows[i]));
            kept.folds.push_back(positives_[c].folds[i]);
        }
        positives_[c] = std::move(kept);
    });
}

void CascadeTrainer::trainStage(int stage) {
    const StagePlan& plan = plan_.stages[stage];
    const std::string label =
        "stage " + std::to_string(stage + 1) + "/" + std::to_string(plan_.stages.size());
    dropLostPalms();
    MiningOrder order;
    order.sceneWindows = plan.sceneWindows;
    order.handWindows = plan.handWindows;
    order.perFrame = plan.perFrame;
    order.maxFrames = plan.maxFrames;
    order.seed = Random{plan_.seed, MINE, static_cast<uint64_t>(stage)}.next();
    order.threads = plan_.threads;
    double mining = 0;
    const std::vector<Mined> mined = mine(ring_, frames_, order, [&](int frames) {
        mining += frames * FRAME_WORK;
        progress_.advance(frames * FRAME_WORK, label + ", mining negatives");
    });
    progress_.skip(plan.maxFrames * FRAME_WORK - mining);
    for (size_t c = 0; c < positives_.size(); ++c) {
        ring_.cascades[c].stages.push_back(trainOne(static_cast<int>(c), stage, mined[c]));
    }
    ring_.log = progress_.log();
    writeRing(ring_, checkpoint_);
}

StageContent CascadeTrainer::trainOne(int cascade, int stage, const Mined& mined) {
    const StagePlan& plan = plan_.stages[stage];
    const WindowShape& shape = plan_.shapes[cascade];
    const Positives& palms = positives_[cascade];
    const int heldFold = stage % FOLDS;
    std::vector<const Window*> windows, held;
    for (size_t i = 0; i < palms.windows.size(); ++i) {
        (palms.folds[i] == heldFold ? held : windows).push_back(&palms.windows[i]);
    }
    const int positives = static_cast<int>(windows.size());
    const int negatives = static_cast<int>(mined.windows.size());
    if (positives == 0 || negatives == 0) {
        throw Failure("stage " + std::to_string(stage + 1) + " of " + shape.name + " has " +
                      std::to_string(positives) + " palms and " + std::to_string(negatives) +
                      " other windows to learn from; use more data or fewer stages");
    }
    for (const Window& window : mined.windows) windows.push_back(&window);
    windows.insert(windows.end(), held.begin(), held.end());

    const auto id = static_cast<uint64_t>(cascade), step = static_cast<uint64_t>(stage);
    Random pool{plan_.seed, POOL, id, step}, rounds{plan_.seed, ROUND, id, step};
    std::vector<Feature> features = rmctFeatures(shape.size);
    for (const Feature& f : haarFeatures(shape.size, plan.haarPool, pool)) features.push_back(f);
    for (const Feature& f : hogFeatures(shape.size, plan.hogPool, pool)) features.push_back(f);
    const FeatureTable table(std::move(features), windows, shape.size, plan_.threads);
    Booster booster(table, positives, negatives, plan.boosting, plan_.threads);
    for (int i = 0; i < plan.boosting.weakCount; ++i) {
        booster.round(rounds);
        progress_.advance(WEAK_WORK, "stage " + std::to_string(stage + 1) + "/" +
                                         std::to_string(plan_.stages.size()) + " of " + shape.name +
                                         ", " + std::to_string(i + 1) + " of " +
                                         std::to_string(plan.boosting.weakCount));
    }

    StageContent content;
    content.weak = booster.chosen();
    std::stable_sort(content.weak.begin(), content.weak.end(),
                     [](const WeakClassifier& a, const WeakClassifier& b) {
                         return a.feature.kind < b.feature.kind;
                     });
    const std::vector<int>& scores = booster.scores();
    const int all = static_cast<int>(scores.size()), learnt = positives + negatives;
    content.threshold =
        thresholdFor(held.empty() ? std::vector<int>(scores.begin(), scores.begin() + positives)
                                  : std::vector<int>(scores.begin() + learnt, scores.end()),
                     plan.keptPalms);
    std::ostringstream line;
    line << "stage " << stage + 1 << " of " << shape.name << ": " << count(content, Feature::RMCT)
         << " RMCT, " << count(content, Feature::HAAR) << " Haar, " << count(content, Feature::HOG)
         << " HOG, threshold " << content.threshold << "; palms " << positives << " kept "
         << text("%.4f", passing(scores, 0, positives, content.threshold)) << ", unseen "
         << held.size() << " kept " << text("%.4f", passing(scores, learnt, all, content.threshold))
         << "; negatives " << mined.sceneWindows << "+" << negatives - mined.sceneWindows
         << " kept " << text("%.4f", passing(scores, positives, learnt, content.threshold))
         << "; before this stage " << text("%.3g", mined.passed / std::max(mined.searched, 1.0))
         << " of the windows of " << mined.frames << " scenes passed";
    progress_.line(line.str());
    return content;
}

}  // namespace training
