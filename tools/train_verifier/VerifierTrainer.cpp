#include "VerifierTrainer.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <numeric>
#include <sstream>

#include "Parallel.h"
#include "PatchLight.h"
#include "Quantile.h"
#include "TorchVerifier.h"
#include "VerifierFile.h"

namespace training {

namespace {

/// A batch is worked on in so many parts, whatever the number of threads: sums of floats depend on
/// their order.
constexpr int PARTS = 2;
constexpr int PART = TrainerSettings::BATCH / PARTS;

constexpr double WEIGHT_DECAY = 0.01, FIRST_DECAY = 0.9, SECOND_DECAY = 0.999, AVERAGE = 0.9985;
constexpr double LONGEST_STEP = 2;  ///< norm at which gradients are cut
constexpr double WARM_UP = 0.03;    ///< share of the steps

double bell(Random& random) {
    const double radius = std::sqrt(-2 * std::log(1 - random.unit()));
    return radius * std::cos(2 * M_PI * random.unit());
}

double learningRate(const TrainerSettings& settings, double step) {
    const double done = step / (static_cast<double>(settings.epochs) * settings.batchesPerEpoch);
    const double warm = std::min(done / WARM_UP, 1.0);
    return settings.learningRate * warm * (0.01 + 0.99 * 0.5 * (1 + std::cos(M_PI * done)));
}

double shareAbove(const std::vector<float>& margins, float threshold) {
    const auto above = std::count_if(margins.begin(), margins.end(),
                                     [&](float margin) { return margin > threshold; });
    return static_cast<double>(above) / std::max(static_cast<double>(margins.size()), 1.0);
}

template <typename T>
void writeValues(std::ostream& file, const std::vector<T>& values) {
    file.write(reinterpret_cast<const char*>(values.data()),
               static_cast<std::streamsize>(values.size() * sizeof(T)));
}

template <typename T>
void readValues(std::istream& file, std::vector<T>& values) {
    file.read(reinterpret_cast<char*>(values.data()),
              static_cast<std::streamsize>(values.size() * sizeof(T)));
}

}  // namespace

std::string EpochReport::text() const {
    char text[128];
    std::snprintf(text, sizeof text,
                  "loss %.4f, palms kept %.4f, alarms %.4f; alarms %.4f at %.1f%% of the palms",
                  loss, recall, alarms, alarmsAtKept, 100 * KEPT);
    return text;
}

/// One thread's share of a batch.
struct VerifierTrainer::Part {
    explicit Part(const VerifierDesign& design)
        : network(design), inputs(static_cast<size_t>(PART) * design.input.area()), labels(PART) {}

    TorchVerifier network;
    std::vector<float> inputs, gradient;
    std::vector<int64_t> labels;
    double loss = 0;
};

VerifierTrainer::VerifierTrainer(int verifier, const SampleSet& samples,
                                 std::vector<SampleDeck> decks, const TrainerSettings& settings,
                                 const std::string& checkpoint, Progress& progress)
    : verifier_(verifier),
      design_(verifierDesign(verifier)),
      samples_(samples),
      decks_(std::move(decks)),
      settings_(settings),
      checkpoint_(checkpoint),
      progress_(progress) {}

void VerifierTrainer::initialise() {
    constexpr float SLOPE = 0.25f;
    Random random{settings_.seed, 71, static_cast<uint64_t>(verifier_)};
    values_.clear();
    decays_.clear();
    for (const ConvolutionShape& s : design_.convolutions) {
        const double gain = s.activation ? 2 / (1 + SLOPE * SLOPE) : 0.1;
        const double deviation = std::sqrt(gain * s.filters / s.weights());
        for (int i = 0; i < s.weights(); ++i) {
            values_.push_back(static_cast<float>(deviation * bell(random)));
        }
        decays_.resize(values_.size(), 1);
        values_.resize(values_.size() + s.filters, 0);
        if (s.activation) values_.resize(values_.size() + s.filters, SLOPE);
        decays_.resize(values_.size(), 0);
    }
    if (!start_.empty()) values_ = start_;
    average_ = values_;
    firstMoment_.assign(values_.size(), 0);
    secondMoment_.assign(values_.size(), 0);
    reports_.clear();
}

std::vector<float> VerifierTrainer::run(double costPerPatch) {
    initialise();
    const double costPerBatch = costPerPatch * TrainerSettings::BATCH;
    if (readCheckpoint()) {
        progress_.skip(costPerBatch * settings_.batchesPerEpoch *
                       static_cast<double>(reports_.size()));
    }
    std::vector<Part> parts;
    for (int i = 0; i < PARTS; ++i) parts.emplace_back(design_);
    while (static_cast<int>(reports_.size()) < settings_.epochs) {
        const std::string what = design_.name + " epoch " + std::to_string(reports_.size() + 1) +
                                 "/" + std::to_string(settings_.epochs);
        const uint64_t from = reports_.size() * static_cast<uint64_t>(settings_.batchesPerEpoch);
        double loss = 0;
        for (int batch = 0; batch < settings_.batchesPerEpoch; ++batch) {
            loss += runBatch(from + batch, parts);
            progress_.advance(costPerBatch, what);
        }
        reports_.push_back(report(loss / settings_.batchesPerEpoch / TrainerSettings::BATCH));
        writeCheckpoint();
        progress_.line(what + ": " + reports_.back().text());
    }
    std::vector<float> values = average_;
    foldInputScale(design_, INPUT_SCALE, INPUT_CENTRE, values);
    return values;
}

double VerifierTrainer::runBatch(uint64_t step, std::vector<Part>& parts) {
    parallelFor(PARTS, settings_.threads, [&](int i, int) {
        Part& part = parts[i];
        drawPart(step, i, part);
        part.network.setValues(values_);
        part.gradient.assign(values_.size(), 0);
        part.loss =
            part.network.addGradient(part.inputs.data(), part.labels.data(), PART, part.gradient);
    });
    std::vector<float> gradient(values_.size(), 0);
    double loss = 0;
    for (const Part& part : parts) {
        loss += part.loss;
        for (size_t i = 0; i < gradient.size(); ++i) {
            gradient[i] += part.gradient[i] / TrainerSettings::BATCH;
        }
    }
    update(step, gradient);
    return loss;
}

void VerifierTrainer::drawPart(uint64_t step, int part, Part& into) const {
    double total = 0;
    for (const SampleDeck& deck : decks_) total += deck.samples.empty() ? 0 : deck.share;
    for (int i = 0; i < PART; ++i) {
        Random random{settings_.seed, 72, static_cast<uint64_t>(verifier_), step,
                      static_cast<uint64_t>(part * PART + i)};
        double at = random.unit() * total;
        const SampleDeck* chosen = nullptr;
        for (const SampleDeck& deck : decks_) {
            if (deck.samples.empty()) continue;
            chosen = &deck;
            if ((at -= deck.share) < 0) break;
        }
        const int sample = chosen->samples[random.below(static_cast<int>(chosen->samples.size()))];
        varyPatch(samples_.patch(sample, verifier_), design_.input, random,
                  into.inputs.data() + static_cast<size_t>(i) * design_.input.area());
        into.labels[i] = chosen->palms ? 1 : 0;
    }
}

void VerifierTrainer::update(uint64_t step, const std::vector<float>& gradient) {
    const double norm =
        std::sqrt(std::inner_product(gradient.begin(), gradient.end(), gradient.begin(), 0.0));
    const double cut = norm > LONGEST_STEP ? LONGEST_STEP / norm : 1;
    const double count = static_cast<double>(step) + 1;
    const double rate = learningRate(settings_, count);
    const double firstBias = 1 - std::pow(FIRST_DECAY, count);
    const double secondBias = 1 - std::pow(SECOND_DECAY, count);
    const double keep = std::min(AVERAGE, count / (count + 10));
    for (size_t i = 0; i < values_.size(); ++i) {
        const double g = gradient[i] * cut;
        const double first = FIRST_DECAY * firstMoment_[i] + (1 - FIRST_DECAY) * g;
        const double second = SECOND_DECAY * secondMoment_[i] + (1 - SECOND_DECAY) * g * g;
        const double direction = first / firstBias / (std::sqrt(second / secondBias) + 1e-8);
        const double decay = decays_[i] ? WEIGHT_DECAY * values_[i] : 0;
        firstMoment_[i] = static_cast<float>(first);
        secondMoment_[i] = static_cast<float>(second);
        values_[i] -= static_cast<float>(rate * (direction + decay));
        average_[i] = static_cast<float>(keep * average_[i] + (1 - keep) * values_[i]);
    }
}

EpochReport VerifierTrainer::report(double loss) const {
    std::vector<int> palms, others;
    for (int i = 0; i < samples_.size(); ++i) {
        const Sample& sample = samples_[i];
        if (!sample.heldOut) continue;
        if (sample.origin == Origin::SCANNED_PALM) palms.push_back(i);
        if (sample.origin == Origin::SCANNED_HAND || sample.origin == Origin::SCENE) {
            others.push_back(i);
        }
    }
    std::vector<float> values = average_;
    foldInputScale(design_, INPUT_SCALE, INPUT_CENTRE, values);
    const std::vector<float> palm =
        marginsOf(verifier_, values, samples_, palms, settings_.threads);
    const std::vector<float> other =
        marginsOf(verifier_, values, samples_, others, settings_.threads);
    EpochReport report;
    report.loss = loss;
    report.recall = shareAbove(palm, 0);
    report.alarms = shareAbove(other, 0);
    report.alarmsAtKept = shareAbove(other, thresholdKeeping(palm, EpochReport::KEPT));
    return report;
}

std::string VerifierTrainer::key() const {
    std::ostringstream text;
    text << design_.name << " seed " << settings_.seed << " epochs " << settings_.epochs << " of "
         << settings_.batchesPerEpoch << " rate " << settings_.learningRate << " samples "
         << samples_.size();
    if (!start_.empty()) text << " start " << valuesHash(start_);
    for (const SampleDeck& deck : decks_) text << " " << deck.samples.size() << "*" << deck.share;
    return text.str();
}

bool VerifierTrainer::readCheckpoint() {
    std::ifstream file(checkpoint_, std::ios::binary);
    std::string found;
    if (!file || !std::getline(file, found) || found != key()) return false;
    uint64_t epochs = 0;
    file.read(reinterpret_cast<char*>(&epochs), sizeof epochs);
    if (!file || epochs > static_cast<uint64_t>(settings_.epochs)) return false;
    reports_.resize(epochs);
    readValues(file, reports_);
    for (std::vector<float>* list : {&values_, &average_, &firstMoment_, &secondMoment_}) {
        readValues(file, *list);
    }
    if (file) return true;
    initialise();
    return false;
}

void VerifierTrainer::writeCheckpoint() const {
    replaceFile(checkpoint_, [&](std::ostream& file) {
        const uint64_t epochs = reports_.size();
        file << key() << "\n";
        file.write(reinterpret_cast<const char*>(&epochs), sizeof epochs);
        writeValues(file, reports_);
        for (const std::vector<float>* list :
             {&values_, &average_, &firstMoment_, &secondMoment_}) {
            writeValues(file, *list);
        }
    });
}

uint64_t valuesHash(const std::vector<float>& values) {
    uint64_t hash = 0;
    for (const float value : values) {
        uint32_t bits;
        std::memcpy(&bits, &value, sizeof bits);
        hash = mix(hash ^ bits);
    }
    return hash;
}

std::vector<float> marginsOf(int verifier, const std::vector<float>& values,
                             const SampleSet& samples, const std::vector<int>& which, int threads) {
    constexpr int CHUNK = 256;
    const VerifierDesign& design = verifierDesign(verifier);
    const int count = static_cast<int>(which.size()), area = design.input.area();
    std::vector<float> all(which.size());
    parallelFor((count + CHUNK - 1) / CHUNK, threads, [&](int chunk, int) {
        TorchVerifier network(design);
        network.setValues(values);
        const int from = chunk * CHUNK, size = std::min(CHUNK, count - from);
        std::vector<float> inputs(static_cast<size_t>(size) * area);
        for (int i = 0; i < size; ++i) {
            const uint8_t* patch = samples.patch(which[from + i], verifier);
            std::transform(patch, patch + area, inputs.begin() + static_cast<size_t>(i) * area,
                           [](uint8_t pixel) { return static_cast<float>(pixel) / 256; });
        }
        const std::vector<float> margins = network.margins(inputs.data(), size);
        std::copy(margins.begin(), margins.end(), all.begin() + from);
    });
    return all;
}

}  // namespace training
