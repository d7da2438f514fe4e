#include "VerifierTraining.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <fstream>
#include <iterator>
#include <sstream>

#include "Failure.h"
#include "Quantile.h"
#include "TorchVerifier.h"
#include "TrainingPlot.h"
#include "VerifierFile.h"

namespace training {

namespace {

/// The chain's thresholds on the share of palm in the logits' softmax.
constexpr double CHAIN_THRESHOLD[VERIFIERS] = {0.2, 0.5};
/// Below the thresholds, so that the second verifier knows near misses too.
constexpr float HARD_SCORE = 0.1f, ALARM_SCORE = 0.3f;
/// Seconds on one core, about: what the progress counts in.
constexpr double FRAME_COST = 0.03, PATCH_COST[VERIFIERS] = {0.0003, 0.0008};
/// How far library and trainer may differ, and on how many patches that is checked.
constexpr float TOLERANCE = 1e-4f;
constexpr int COMPARED = 1000;

std::string contentKey(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    uint64_t hash = 0;
    for (std::istreambuf_iterator<char> at(file), end; at != end; ++at) {
        hash = mix(hash ^ static_cast<unsigned char>(*at));
    }
    return std::to_string(hash);
}

std::string format(const char* pattern, double a, double b, double c, double d) {
    char text[200];
    std::snprintf(text, sizeof text, pattern, a, b, c, d);
    return text;
}

/// The mean and the spread of one field.
std::string spread(const char* name, const std::vector<Deviation>& list, float Deviation::*field) {
    double sum = 0, squares = 0;
    for (const Deviation& deviation : list) {
        sum += deviation.*field;
        squares += deviation.*field * deviation.*field;
    }
    const double count = std::max(static_cast<double>(list.size()), 1.0), mean = sum / count;
    return std::string(name) + format(" %.3f+-%.3f", mean,
                                      std::sqrt(std::max(squares / count - mean * mean, 0.0)), 0,
                                      0);
}

}  // namespace

VerifierPlan VerifierPlan::palm(double size, uint64_t seed, int threads) {
    const auto scaled = [&](int value) {
        return std::max(static_cast<int>(std::lround(value * size)), 1);
    };
    VerifierPlan plan;
    plan.seed = seed;
    plan.threads = threads;
    plan.fitBlocks = scaled(160);
    plan.heldOutBlocks = scaled(8);
    plan.hardBlocks = scaled(64);
    plan.rounds = 2;
    plan.roundBlocks = scaled(40);
    const int epochs[VERIFIERS] = {40, 32}, batches[VERIFIERS] = {400, 400};
    for (int i = 0; i < VERIFIERS; ++i) {
        plan.trainer[i].epochs = epochs[i];
        plan.trainer[i].batchesPerEpoch = scaled(batches[i]);
        plan.trainer[i].seed = seed;
        plan.trainer[i].threads = threads;
    }
    plan.refining = plan.trainer[1];
    plan.refining.epochs = 8;
    plan.refining.learningRate = 0.0003;
    plan.restBlocks = scaled(40);
    for (int i = 0; i < VERIFIERS; ++i) {
        plan.finishing[i] = plan.trainer[i];
        plan.finishing[i].epochs = 10;
        plan.finishing[i].learningRate = 0.0007;
        plan.finishing[i].seed = mix(seed + 1000);
    }
    return plan;
}

std::string VerifierPlan::fingerprint() const {
    std::ostringstream text;
    text << "procedure 7 seed " << seed << " loosening " << loosening << " frames " << blockFrames
         << " held out " << heldOutBlocks;
    return text.str();
}

double VerifierTraining::plannedWork(const VerifierPlan& plan) {
    const int blocks = 1 + plan.fitBlocks + plan.heldOutBlocks + plan.hardBlocks +
                       plan.rounds * plan.roundBlocks + plan.restBlocks;
    const auto patches = [](const TrainerSettings& settings) {
        return static_cast<double>(TrainerSettings::BATCH) * settings.epochs *
               settings.batchesPerEpoch;
    };
    double work = FRAME_COST * plan.blockFrames * blocks;
    for (int i = 0; i < VERIFIERS; ++i) {
        work += PATCH_COST[i] * (patches(plan.trainer[i]) + patches(plan.finishing[i]));
    }
    return work + PATCH_COST[1] * plan.rounds * patches(plan.refining);
}

VerifierTraining::VerifierTraining(const PhotoStore& store, const std::string& ring,
                                   const VerifierPlan& plan, const std::string& folder,
                                   Progress& progress)
    : plan_(plan),
      folder_(folder),
      ringKey_(contentKey(ring)),
      progress_(progress),
      miner_(store, readRing(ring), plan.loosening, plan.threads) {}

std::vector<NnDetector> VerifierTraining::run() {
    measureDeviations();
    mineSamples();
    std::array<std::vector<float>, VERIFIERS> values;
    values[0] = train(0, firstDecks());
    // For now each keeps its half of the palms that may be lost; both together are set at the end.
    const std::vector<float> palms =
        chainMargins(values.data(), heldOutOf(Origin::SCANNED_PALM, false)).first;
    shiftMargin(marginAt(CHAIN_THRESHOLD[0]) - thresholdKeeping(palms, (1 + plan_.kept) / 2),
                values[0]);
    mineHard(values[0]);
    values[1] = train(1, secondDecks(values[0]));
    refine(values.data());
    learnRest(values.data());
    std::vector<NnDetector> networks;
    for (int i = 0; i < VERIFIERS; ++i) {
        std::transform(values[i].begin(), values[i].end(), values[i].begin(), sixDigits);
        networks.push_back(buildVerifier(verifierDesign(i), values[i]));
        compare(i, values[i], networks.back());
    }
    return networks;
}

void VerifierTraining::mineBlock(const std::string& name, const SampleOrder& order) {
    const std::string path = folder_ + "/" + name + ".samples";
    const std::string key = ringKey_ + " " + plan_.fingerprint() + " " + name + chainKey_;
    SampleSet found;
    if (found.read(path, key)) {
        progress_.skip(FRAME_COST * order.frames);
    } else {
        found = miner_.mine(order);
        found.write(path, key);
        progress_.advance(FRAME_COST * order.frames,
                          name + ": " + std::to_string(samples_.size()) + " samples");
    }
    samples_.append(found);
}

void VerifierTraining::measureDeviations() {
    SampleOrder order;
    order.seed = mix(plan_.seed * 1000 + 1);
    order.frames = plan_.blockFrames;
    order.photoShare = 0.5;
    order.palmShare = 1;
    order.withPlaced = false;
    mineBlock("deviations", order);
    std::vector<Deviation> deviations;
    size_t sameSide = 0;
    for (int i = 0; i < samples_.size(); ++i) {
        if (samples_[i].origin != Origin::SCANNED_PALM) continue;
        deviations.push_back(samples_[i].deviation);
        sameSide += samples_[i].deviation.sameSide ? 1 : 0;
    }
    if (deviations.empty()) throw Failure("the ring finds no palms; train it first");
    progress_.line(
        "the scan's locations on " + std::to_string(deviations.size()) + " palms:" +
        spread(" right", deviations, &Deviation::x) + spread(", down", deviations, &Deviation::y) +
        spread(", log scale", deviations, &Deviation::logScale) +
        spread(", degrees", deviations, &Deviation::angle) +
        format(", side right in %.3f", static_cast<double>(sameSide) / deviations.size(), 0, 0, 0));
    miner_.setDeviations(deviations);
}

void VerifierTraining::mineSamples() {
    SampleOrder order;
    order.frames = plan_.blockFrames;
    order.sceneShare = 0.42;
    order.photoShare = 0.3;
    for (int i = 0; i < plan_.fitBlocks + plan_.heldOutBlocks; ++i) {
        order.heldOut = i < plan_.heldOutBlocks;
        order.toLearn = !order.heldOut;
        order.seed = mix(plan_.seed * 1000 + 10 + i);
        mineBlock((order.heldOut ? "held" : "fit") + std::to_string(i), order);
    }
    int counts[6] = {};
    for (int i = 0; i < samples_.size(); ++i) {
        if (!samples_[i].heldOut) ++counts[static_cast<int>(samples_[i].origin)];
    }
    std::ostringstream text;
    text << "samples: palms " << counts[0] << " scanned, " << counts[1] << " jittered, "
         << counts[2] << " placed; other hands " << counts[3] << " scanned, " << counts[4]
         << " placed; scenes " << counts[5] << "; held out "
         << heldOutOf(Origin::SCANNED_PALM, true).size() << " palms, "
         << heldOutOf(Origin::SCANNED_HAND, true).size() << " other hands, "
         << heldOutOf(Origin::SCENE, true).size() << " scenes";
    progress_.line(text.str());
}

void VerifierTraining::mineHard(const std::vector<float>& first) {
    miner_.setVerifier(0, buildVerifier(verifierDesign(0), first));
    chainKey_ = " behind " + std::to_string(valuesHash(first));
    const int before = samples_.size();
    SampleOrder order;
    order.frames = plan_.blockFrames;
    order.sceneShare = 0.4;
    order.photoShare = 0.25;
    order.palmShare = 0;
    order.minScore[0] = HARD_SCORE;
    for (int i = 0; i < plan_.hardBlocks; ++i) {
        order.seed = mix(plan_.seed * 1000 + 500 + i);
        mineBlock("hard" + std::to_string(i), order);
    }
    progress_.line("mined " + std::to_string(samples_.size() - before) +
                   " that the first verifier lets pass");
}

int VerifierTraining::mineAlarms(int round, const std::vector<float>* calibrated) {
    chainKey_.clear();
    SampleOrder order;
    for (int i = 0; i < VERIFIERS; ++i) {
        miner_.setVerifier(i, buildVerifier(verifierDesign(i), calibrated[i]));
        chainKey_ += " behind " + std::to_string(valuesHash(calibrated[i]));
    }
    order.frames = plan_.blockFrames;
    order.sceneShare = 0.4;
    order.photoShare = 0.25;
    order.palmShare = 0;
    order.minScore[0] = static_cast<float>(CHAIN_THRESHOLD[0]);
    order.minScore[1] = ALARM_SCORE;
    const int before = samples_.size();
    for (int i = 0; i < plan_.roundBlocks; ++i) {
        order.seed = mix(plan_.seed * 1000 + 1000 * (round + 1) + 100000 + i);
        mineBlock("alarms" + std::to_string(round) + "_" + std::to_string(i), order);
    }
    const int found = samples_.size() - before;
    progress_.line("round " + std::to_string(round + 1) + ": " + std::to_string(found) +
                   " alarms and near ones of the whole chain in " +
                   std::to_string(plan_.roundBlocks * plan_.blockFrames) + " frames");
    return found;
}

void VerifierTraining::refine(std::vector<float>* values) {
    const int firstAlarm = samples_.size();
    std::array<std::vector<float>, VERIFIERS> best = {values[0], values[1]};
    double alarms = calibrate(best.data());
    for (int round = 0; round < plan_.rounds; ++round) {
        if (mineAlarms(round, best.data()) < plan_.fewAlarms) break;
        TrainerSettings settings = plan_.refining;
        settings.seed = mix(settings.seed + static_cast<uint64_t>(round) + 1);
        const std::string base =
            folder_ + "/" + verifierDesign(1).name + ".round" + std::to_string(round + 1);
        VerifierTrainer trainer(1, samples_, roundDecks(values[0], firstAlarm), settings,
                                base + ".checkpoint", progress_);
        trainer.startFrom(averages_[1]);
        std::array<std::vector<float>, VERIFIERS> refined = {values[0], finish(trainer, 1, base)};
        const double left = calibrate(refined.data());
        if (left >= alarms) {
            progress_.line("the round gains nothing on the held-out pictures and is dropped");
            break;
        }
        alarms = left;
        best = refined;
        averages_[1] = trainer.average();
    }
    std::copy(best.begin(), best.end(), values);
}

void VerifierTraining::learnRest(std::vector<float>* values) {
    miner_.dropVerifiers();
    chainKey_.clear();
    SampleOrder order;
    order.frames = plan_.blockFrames;
    order.heldOut = true;
    order.sceneShare = 0.3;
    order.photoShare = 0.5;
    for (int i = 0; i < plan_.restBlocks; ++i) {
        order.seed = mix(plan_.seed * 1000 + 200000 + i);
        mineBlock("rest" + std::to_string(i), order);
    }
    progress_.line("both learn the held-out pictures too; the thresholds stay");
    for (int i = 0; i < VERIFIERS; ++i) {
        const std::string base = folder_ + "/" + verifierDesign(i).name + ".all";
        VerifierTrainer trainer(i, samples_, i == 0 ? firstDecks() : secondDecks(values[0]),
                                plan_.finishing[i], base + ".checkpoint", progress_);
        trainer.startFrom(averages_[i]);
        const float shift = 2 * (values[i].back() - averages_[i].back());
        values[i] = finish(trainer, i, base);
        shiftMargin(shift, values[i]);
    }
}

std::vector<SampleDeck> VerifierTraining::firstDecks() const {
    // By origin; first of whole photographs, then of crops, which are many but less like what a
    // camera sees.
    constexpr double SHARES[][2] = {{0.12, 0.07}, {0.08, 0.05}, {0.05, 0.04},
                                    {0.12, 0.15}, {0.04, 0.04}, {0.24, 0}};
    std::vector<SampleDeck> decks;
    for (size_t origin = 0; origin < std::size(SHARES); ++origin) {
        for (const double share : SHARES[origin]) {
            decks.push_back({{}, share, isPalm(static_cast<Origin>(origin))});
        }
    }
    for (int i = 0; i < samples_.size(); ++i) {
        const Sample& sample = samples_[i];
        if (sample.heldOut) continue;
        const size_t deck = 2 * static_cast<size_t>(sample.origin) + (sample.crop ? 1 : 0);
        decks[deck].samples.push_back(i);
    }
    return decks;
}

std::vector<SampleDeck> VerifierTraining::secondDecks(const std::vector<float>& first) const {
    std::vector<SampleDeck> decks = firstDecks();
    SampleDeck hardHands, hardScenes;
    hardHands.share = 0.19;
    hardScenes.share = 0.11;
    for (SampleDeck& deck : decks) {
        if (deck.palms) continue;
        deck.share *= 0.5;
        const std::vector<float> margins =
            marginsOf(0, first, samples_, deck.samples, plan_.threads);
        for (size_t i = 0; i < margins.size(); ++i) {
            if (margins[i] <= marginAt(HARD_SCORE)) continue;
            const int sample = deck.samples[i];
            SampleDeck& hard = samples_[sample].origin == Origin::SCENE ? hardScenes : hardHands;
            hard.samples.push_back(sample);
        }
    }
    progress_.line("of the samples for the second verifier " +
                   std::to_string(hardHands.samples.size()) + " other hands and " +
                   std::to_string(hardScenes.samples.size()) + " scenes pass the first");
    decks.push_back(hardHands);
    decks.push_back(hardScenes);
    return decks;
}

std::vector<SampleDeck> VerifierTraining::roundDecks(const std::vector<float>& first,
                                                     int firstAlarm) const {
    std::vector<SampleDeck> decks = secondDecks(first);
    SampleDeck alarms;
    alarms.share = 0.02;  // besides what they have among all that pass the first
    for (int i = firstAlarm; i < samples_.size(); ++i) alarms.samples.push_back(i);
    decks.push_back(alarms);
    return decks;
}

std::vector<float> VerifierTraining::train(int verifier, std::vector<SampleDeck> decks) {
    const std::string base = folder_ + "/" + verifierDesign(verifier).name;
    VerifierTrainer trainer(verifier, samples_, std::move(decks), plan_.trainer[verifier],
                            base + ".checkpoint", progress_);
    const std::vector<float> values = finish(trainer, verifier, base);
    averages_[verifier] = trainer.average();
    return values;
}

std::vector<float> VerifierTraining::finish(VerifierTrainer& trainer, int verifier,
                                            const std::string& base) {
    const std::vector<float> values = trainer.run(PATCH_COST[verifier]);
    writePlot(verifierDesign(verifier).name, trainer.reports(), base + ".png");
    return values;
}

std::vector<int> VerifierTraining::heldOutOf(Origin origin, bool withLoose) const {
    std::vector<int> which;
    for (int i = 0; i < samples_.size(); ++i) {
        const Sample& sample = samples_[i];
        if (sample.heldOut && sample.origin == origin && (withLoose || !sample.loose)) {
            which.push_back(i);
        }
    }
    return which;
}

ChainMargins VerifierTraining::chainMargins(const std::vector<float>* values,
                                            const std::vector<int>& which) const {
    ChainMargins margins;
    margins.first = marginsOf(0, values[0], samples_, which, plan_.threads);
    if (!values[1].empty())
        margins.second = marginsOf(1, values[1], samples_, which, plan_.threads);
    return margins;
}

double VerifierTraining::calibrate(std::vector<float>* values) {
    const OperatingPoint point = chooseOperatingPoint(
        chainMargins(values, heldOutOf(Origin::SCANNED_PALM, false)),
        chainMargins(values, heldOutOf(Origin::SCENE, true)),
        chainMargins(values, heldOutOf(Origin::SCANNED_HAND, true)), plan_.kept);
    progress_.line(point.text());
    shiftMargin(marginAt(CHAIN_THRESHOLD[0]) - point.first, values[0]);
    shiftMargin(marginAt(CHAIN_THRESHOLD[1]) - point.second, values[1]);
    return point.alarms;
}

void VerifierTraining::compare(int verifier, const std::vector<float>& values,
                               const NnDetector& network) const {
    const KZ::Size size = verifierDesign(verifier).input;
    TorchVerifier torch(verifierDesign(verifier));
    torch.setValues(values);
    float largest = 0;
    const int count = std::min(COMPARED, samples_.size());
    for (int i = 0; i < count; ++i) {
        const int sample = static_cast<int>(static_cast<int64_t>(i) * samples_.size() / count);
        const uint8_t* patch = samples_.patch(sample, verifier);
        std::vector<float> inputs(patch, patch + size.area());
        for (float& x : inputs) x /= 256;
        KZ::Image image;
        image.createRef(const_cast<uint8_t*>(patch), size, KZ::COLOR_MODE_MONO);
        const std::vector<float> ours = network.detect(image),
                                 theirs = torch.logits(inputs.data(), 1);
        for (int k = 0; k < 2; ++k) largest = std::max(largest, std::fabs(ours[k] - theirs[k]));
    }
    char text[160];
    std::snprintf(text, sizeof text, "%s: library and trainer differ by at most %.2g on %d patches",
                  verifierDesign(verifier).name.c_str(), static_cast<double>(largest), count);
    progress_.line(text);
    if (!(largest <= TOLERANCE)) throw Failure(std::string(text) + "; that is too much");
}

}  // namespace training
