// Each type of tracker, most on networks whose output is constant: dense layers of zero weights.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <list>

#include "LogCapture.h"
#include "NnSupport.h"
#include "NnTracker.h"

using namespace testing_support;
using KZ::Blob;
using Type = NnTracker::Type;

namespace {

using NetworkPtr = KZ::SharedPtr<NnDetector>;
using Points = KZ::InheritedState<std::vector<KZ::PointF>, KZ::_SkeletonState>;
using Scores = KZ::InheritedState<Floats, KZ::_ScoresState>;
using Disparity = KZ::NumericState<float, NnTracker::_DisparityState>;
using Verified = KZ::NumericState<bool, NnTracker::_VerifiedState>;
using Score = KZ::NumericState<float, KZ::_ScoreState>;
using Alignment = KZ::InheritedState<std::vector<KZ::PointF>, NnTracker::_MtCnnAlignment>;

const KZ::Size PATCH(8, 6);
const KZ::Size FRAME(200, 100);
const KZ::Side::Value LEFT = KZ::Side::LEFT;

using Weight = std::function<float(int output, int input)>;

/// One dense layer on the input for each list of biases; `weight` is that of the first one. With
/// maps, the last one's outputs are maps of that size.
NetworkPtr network(const std::vector<Floats>& biases, const KZ::Size& size = PATCH,
                   const Weight& weight = nullptr, const KZ::Size& maps = KZ::Size()) {
    NetworkPtr result(new NnDetector);
    result->setName("constant");
    const auto add = [&](BaseLayer* layer, size_t bottom) {
        if (bottom < result->getNetwork().size())
            layer->addBottomLayer(result->getNetwork()[bottom]);
        result->addLayer(KZ::SharedPtr<BaseLayer>(layer));
    };
    add(new DataLayer("data"), 0);
    for (const Floats& bias : biases) {
        const int outputs = static_cast<int>(bias.size());
        Blob weights(1, 1, outputs, size.area());
        for (int i = 0; i < weights.size(); ++i)
            weights.data()[i] = weight ? weight(i / size.area(), i % size.area()) : 0;
        const std::string name = "dense" + std::to_string(result->getNetwork().size());
        add(new InnerProductLayer(weights, blobOf(1, 1, 1, outputs, bias), name), 0);
    }
    if (maps.area() > 0) add(new ReshapeLayer("reshape", maps), biases.size());
    result->setSize(size);
    return result;
}

/// Adds to the biases the mean of one part each of the input, the first rows first.
NetworkPtr partMeans(const KZ::Size& size, int parts, const Floats& biases) {
    const int part = size.area() / parts;
    return network({biases}, size,
                   [=](int output, int i) { return i / part == output ? 256.0f / part : 0; });
}

KZ::ObjectLocation at(float x, float y, float width, float height, float angle = 0,
                      KZ::Side::Value side = KZ::Side::RIGHT) {
    return KZ::ObjectLocation(KZ::PointF(x, y), KZ::SizeF(width, height), angle, side);
}

/// A patch pixel (x, y) lies at (50, 40) + 2 * ((x, y) - (3.5, 2.5)) of the frame.
KZ::ObjectLocation place(float angle = 0, KZ::Side::Value side = KZ::Side::RIGHT) {
    return at(50, 40, 16, 14, angle, side);
}

KZ::Image frameOf(int dark, int light, int edge) {
    KZ::Image image(FRAME, KZ::COLOR_MODE_MONO);
    for (int i = 0; i < FRAME.area(); ++i)
        image.data()[i] = static_cast<unsigned char>(i % FRAME.width < edge ? dark : light);
    return image;
}

const float UNTOUCHED = -7;

struct Outcome {
    LocationState location;
    bool verified = false;
    float score = UNTOUCHED;
};

Outcome track(const NetworkPtr& net, Type::Value type, const KZ::ObjectLocation& location,
              float threshold = 0.5f, bool fit = false, bool mirror = false,
              const KZ::RelativeLocation& relative = KZ::RelativeLocation()) {
    NnTracker tracker(type, net, relative, threshold, fit, mirror);
    Outcome outcome;
    outcome.location = LocationState(location);
    tracker.detect(frameOf(64, 192, 50), outcome.location, outcome.verified, outcome.score);
    return outcome;
}

void expectLocation(const KZ::ObjectLocation& expected, const KZ::ObjectLocation& found) {
    EXPECT_NEAR(expected.center.x, found.center.x, 1e-4);
    EXPECT_NEAR(expected.center.y, found.center.y, 1e-4);
    EXPECT_NEAR(expected.size.width, found.size.width, 1e-4);
    EXPECT_NEAR(expected.size.height, found.size.height, 1e-4);
    EXPECT_NEAR(expected.angle, found.angle, 1e-3);
    EXPECT_EQ(expected.side, found.side);
}

void expectPoints(const std::vector<KZ::PointF>& expected, const std::vector<KZ::PointF>& found) {
    ASSERT_EQ(expected.size(), found.size());
    for (size_t i = 0; i < found.size(); ++i) {
        EXPECT_NEAR(expected[i].x, found[i].x, 1e-4);
        EXPECT_NEAR(expected[i].y, found[i].y, 1e-4);
    }
}

float share(float difference) {
    return 1 / (1 + std::exp(-difference));
}

/// What a tracker on states that hold `place()` leaves there.
struct StateRun {
    StateRun(Type::Value type, const NetworkPtr& net, float threshold = 0.5f,
             const KZ::Image& first = frameOf(64, 192, 50), const KZ::Image& second = KZ::Image())
        : states(KZ::StateAggregator::newDetectorState()),
          tracker(NnTracker::Parameters(type, net, data(first), KZ::RelativeLocation(), threshold,
                                        false, false)) {
        if (second.isCreated()) tracker.parameters().stereoImageData = data(second);
        get<LocationState>() = LocationState(place());
        get<Verified>().value = true;
        get<Score>().value = 5;
        get<Disparity>().value = 60;
        tracker.detect(states);
    }
    // A node keeps a view: the pixels stay.
    static KZ::SharedPtr<KZ::ImageData> data(const KZ::Image& pixels) {
        static std::list<KZ::Image> kept;
        kept.push_back(pixels);
        KZ::SharedPtr<KZ::ImageData> node(new KZ::ImageData(pixels.size(), pixels.colorMode()));
        node->set(kept.back());
        return node;
    }
    template <typename State>
    State& get() {
        return states->get<State>();
    }

    KZ::SharedPtr<KZ::StateAggregator> states;
    NnTracker tracker;
};

}  // namespace

TEST(NnTracker, Corrections) {
    const auto expect = [](Type::Value type, const Floats& outputs, const KZ::ObjectLocation& from,
                           const KZ::ObjectLocation& expected, float score = UNTOUCHED) {
        SCOPED_TRACE(testing::Message() << "type " << type << " to " << expected);
        const Outcome outcome = track(network({outputs}), type, from);
        expectLocation(expected, outcome.location);
        EXPECT_FLOAT_EQ(score, outcome.score);
    };
    const KZ::ObjectLocation right = place(), left = place(0, LEFT);
    const Floats twoPoints = {2.5f, 2.5f, 51, 2.5f, 4.5f, 102};
    expect(Type::POSITION, {5.5f, 1.5f}, right, at(54, 38, 16, 14));
    expect(Type::POSITION, {5.5f, 1.5f, 51}, left, at(46, 38, 16, 14, 0, LEFT), 0.2f);
    expect(Type::POSITION, {5.5f, 2.5f}, place(90), at(50, 36, 16, 14, 90));
    const float x = 50 + std::sqrt(3.0f);
    expect(Type::REGRESSION_LOCATION, {3, 4.5f, 2.5f}, place(30), at(x, 39, 6, 6, 30));
    expect(Type::LOCATION_ANGLE, twoPoints, right, at(48, 42, 4, 3, -90), 0.3f);
    expect(Type::LOCATION_ANGLE, twoPoints, left, at(52, 42, 4, 3, 270, LEFT), 0.3f);
    const Floats onePoint = {3.5f, 2.5f, 0, 3.5f, 2.5f, 0};
    expect(Type::LOCATION_ANGLE, onePoint, place(15), at(50, 40, 0, 0, 15), 0);
    expect(Type::LOCATION, twoPoints, left, at(52, 42, 4, 3, 0, LEFT), 0.3f);
    expect(Type::LOCATION_SIZE, {4.5f, 2.5f, 255, 5, 9, 0}, right, at(52, 40, 10, 10), 0.5f);
    expect(Type::ZOOM, {0.5f}, right, at(50, 40, 17.6f, 15.4f));
    expect(Type::ZOOM, {-0.5f, 102}, right, at(50, 40, 14.4f, 12.6f), 0.4f);
    expect(Type::ZOOM, {0.05f}, right, at(50, 40, 16.8f, 14.7f));
    expect(Type::ZOOM_ANGLE, {0.5f, -20}, place(5), at(50, 40, 24, 21, -15));
    expect(Type::ZOOM_ANGLE, {-0.5f, 1, 255}, right, at(50, 40, 8, 7, 1), 1);
    expect(Type::SIDE, {10, 5}, right, right, 5 / 255.0f);
    expect(Type::SIDE, {5, 15}, right, left, 10 / 255.0f);
    expect(Type::SIDE, {5, 15}, left, right, 10 / 255.0f);
}

TEST(NnTracker, Verifies) {
    const auto expect = [](const Floats& outputs, float threshold, bool verified, float score) {
        const Outcome outcome = track(network({outputs}), Type::VERIFIER, place(20), threshold);
        EXPECT_EQ(verified, outcome.verified);
        EXPECT_FLOAT_EQ(score, outcome.score);
        expectLocation(place(20), outcome.location);
    };
    expect({0, 0}, 0.5f, false, 0.5f);
    expect({0, 0}, 0.2f, true, 0.5f);
    expect({0.7f}, 0.7f, false, 0.7f);
    expect({0.7f}, 0.6f, true, 0.7f);
    expect({1, -1}, 0.2f, false, share(-2));
    expect({0, 1, 9}, 0.7f, true, share(1));
    const Outcome unset = track(network({{0, 9}}), Type::VERIFIER, KZ::ObjectLocation());
    EXPECT_FALSE(unset.verified);
    EXPECT_EQ(UNTOUCHED, unset.score);
}

// The frame is light right of the location's centre by half of the scale, and the network tells
// how much lighter the right half of its patch is.
TEST(NnTracker, SeesTheMirroredPatch) {
    const NetworkPtr net = network({{0, 0}}, PATCH, [](int output, int i) {
        return output * (i % PATCH.width < 4 ? -1 : 1) / 24.0f;
    });
    const auto expect = [&](KZ::Side::Value side, bool mirror, bool verified, float difference) {
        const Outcome outcome =
            track(net, Type::VERIFIER, at(50, 40, 8, 6, 0, side), 0.5f, false, mirror);
        EXPECT_EQ(verified, outcome.verified);
        EXPECT_NEAR(share(difference), outcome.score, 0.02);
    };
    expect(KZ::Side::RIGHT, false, true, 0.5f);
    expect(LEFT, false, false, -0.5f);
    expect(LEFT, true, true, 0.5f);
    expect(KZ::Side::RIGHT, true, true, 0.5f);
}

// The network's view is wider and shifted; what it finds comes back in the location's own terms.
TEST(NnTracker, RelativeLocation) {
    const KZ::RelativeLocation relative(2, KZ::PointF(0.25f, -0.5f), 0, 0, 0);
    const auto moved = [&](float x) {
        return track(network({{x, 2.5f}}), Type::POSITION, place(), 0, false, false, relative)
            .location;
    };
    expectLocation(place(), moved(3.5f));
    expectLocation(at(54, 40, 16, 14), moved(4.5f));
}

// Boxes of 16 by 12 are moved inside by half of the turned box's size.
TEST(NnTracker, FitsToTheImage) {
    const float rows[][5] = {{50.5f, 40, 0, 50, 40},
                             {3, 2, 0, 8, 6},
                             {199, 99, 0, 192, 94},
                             {3, 50, 90, 6, 50},
                             {100, 1, 45, 100, 9.5f}};
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::Message() << row[0] << ", " << row[1] << " at " << row[2]);
        const Outcome outcome =
            track(network({{0, 0}}), Type::VERIFIER, at(row[0], row[1], 16, 3, row[2]), 0, true);
        expectLocation(at(row[3], row[4], 16, 3, row[2]), outcome.location);
    }
}

TEST(NnTracker, ResultOfTheTree) {
    DetectorData data;
    data.computeBase(frameOf(64, 192, 50));
    const auto expect = [&](Type::Value type, const Floats& outputs, bool found, float score) {
        NnTracker tracker(type, network({outputs}), KZ::RelativeLocation(), 0.5f, false, false);
        DetectorResult result("palm", LocationState(place()));
        result.found = true;
        tracker.detect(data, KZ::DetectRegion(), result);
        EXPECT_EQ(found, result.found);
        EXPECT_EQ(found, result.location.isSet());
        EXPECT_EQ(found ? "palm" : "", result.name);
        EXPECT_FLOAT_EQ(score, result.score);
    };
    expect(Type::VERIFIER, {0, 2}, true, share(2));
    expect(Type::VERIFIER, {2, 0}, false, share(-2));
    expect(Type::SIDE, {25.5f, 0}, true, 0.1f);
}

TEST(NnTracker, Refusals) {
    const auto failure = [](Type::Value type, const std::vector<Floats>& outputs) {
        return assertionOf([&] { track(network(outputs), type, place()); });
    };
    EXPECT_EQ("wrong type: UNDEFINED\n", failure(Type::UNDEFINED, {{0, 0}}));
    EXPECT_EQ("2 != 0\n", failure(Type::SKELETON, {{0, 0}}));
    EXPECT_EQ("2 < 3\n", failure(Type::MT_CNN, {{0, 0}, {0, 0}}));
}

TEST(NnTracker, States) {
    StateRun run(Type::VERIFIER, network({{0, 1}}));
    EXPECT_TRUE(run.get<Verified>().value);
    EXPECT_FLOAT_EQ(share(1), run.get<Score>().value);
    run.get<LocationState>().reset();
    run.tracker.detect(run.states);
    EXPECT_FALSE(run.get<Verified>().value);
    EXPECT_EQ(0, run.get<Score>().value);
    StateRun side(Type::SIDE, network({{0, 51}}));
    EXPECT_FLOAT_EQ(0.2f, side.get<Score>().value);
    EXPECT_EQ(LEFT, side.get<LocationState>().side);
    EXPECT_TRUE(side.get<Verified>().value) << "not a state of this type";
    StateRun points(Type::SKELETON, network({{3.5f, 2.5f, 0.25f, 4.5f, 3.5f, 0.5f}}));
    expectPoints({{50, 40}, {52, 42}}, points.get<Points>());
    EXPECT_EQ((Floats{0.25f, 0.5f}), points.get<Scores>());
    EXPECT_EQ(0.375f, points.get<Score>().value);
}

// Two maps of 4 by 3 cells, each cell 8 pixels of a patch of 32 by 24; half a frame pixel a patch
// pixel.
TEST(NnTracker, SkeletonFromHeatMaps) {
    Floats maps(24, 0);
    maps[4 + 2] = 1;
    maps[3] = 0.5f;
    maps[12 + 1] = 0.9f;
    const auto inFrame = [](float x, float y) {
        return KZ::PointF(50 + (16 + 8 * (x - 2) - 15.5f) / 2, 40 + (12 + 8 * (y - 1) - 11.5f) / 2);
    };
    for (const bool sure : {true, false}) {
        const NetworkPtr net = network({maps}, KZ::Size(32, 24), nullptr, KZ::Size(4, 3));
        StateRun run(Type::SKELETON_HEAT_MAPS, net, sure ? 0.85f : 0.95f);
        EXPECT_NEAR(0.9001, run.get<Score>().value, 1e-6);
        EXPECT_NEAR(1.5001, run.get<Scores>().at(0), 1e-6);
        std::vector<KZ::PointF> expected;
        if (sure) expected = {inFrame(3.5f / 1.5001f, 1 / 1.5001f), inFrame(0.9f / 0.9001f, 0)};
        expectPoints(expected, run.get<Points>());
    }
}

// The second camera's patch lies above the first one's, at the place that the disparity tells.
TEST(NnTracker, StereoSkeleton) {
    StateRun run(Type::STEREO_SKELETON, partMeans(KZ::Size(8, 12), 2, {0, 0, 0.5f}), 0.5f,
                 frameOf(2, 2, 0), frameOf(200, 4, 90));
    expectPoints({KZ::PointF(50 + 2 * (4 - 3.5f), 40 + 2 * (2 - 2.5f))}, run.get<Points>());
    EXPECT_EQ(0.5f, run.get<Score>().value);
}

// The patch and three parts of the strip from its centre on, turned so that they lie one above the
// other. The strip is 48 wide around 66; its pixel 20 is 8.5 pixels of 2 right of its middle.
TEST(NnTracker, HandDisparity) {
    StateRun run(Type::HAND_DISPARITY, partMeans(KZ::Size(6, 32), 4, {0, 0, 0.75f}), 0.5f,
                 frameOf(20, 20, 0), frameOf(3, 9, 58));
    EXPECT_NEAR(66 + (20 - 11.5) * 2 - 50, run.get<Disparity>().value, 1e-3);
    EXPECT_NEAR(0.75 + 9, run.get<Score>().value, 0.2);
}

TEST(NnTracker, MtCnn) {
    const Floats alignment = {0, 0.25f, 0.5f, 0.75f, 1, 1, 0.75f, 0.5f, 0.25f, 0};
    StateRun yes(Type::MT_CNN, network({{0.5f, -0.5f, 0.25f, 1}, {0.25f, 0.5f}, alignment}));
    expectLocation(at(58, 33, 32, 28), yes.get<LocationState>());
    EXPECT_TRUE(yes.get<Verified>().value);
    EXPECT_EQ(0.5f, yes.get<Score>().value);
    std::vector<KZ::PointF> expected;
    for (int i = 0; i < 5; ++i) expected.push_back(KZ::PointF(42 + 8.0f * i, 51 - 8.0f * i));
    expectPoints(expected, yes.get<Alignment>());

    StateRun no(Type::MT_CNN, network({{1, 1, 1, 1}, {0.5f, 0.5f}, alignment}));
    expectLocation(place(), no.get<LocationState>());
    EXPECT_FALSE(no.get<Verified>().value);
    EXPECT_EQ(0, no.get<Score>().value);
}
