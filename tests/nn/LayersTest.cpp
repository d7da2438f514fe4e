// The layers without a bank of filters, worked by hand.

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>

#include "LogCapture.h"
#include "NnSupport.h"

using namespace testing_support;
using KZ::Blob;
using Operation = EltwiseLayer::Operation;

namespace {

using LayerPtr = KZ::SharedPtr<BaseLayer>;

template <typename Layer, typename... Arguments>
LayerPtr make(Arguments... arguments) {
    return LayerPtr(new Layer(arguments...));
}

LayerPtr linear(const Floats& a, const Floats& b) {
    const LayerPtr layer = make<LinearTransformLayer>("l");
    static_cast<LinearTransformLayer&>(*layer).setTransform(a, b);
    return layer;
}

LayerPtr slicePoint(int axis, int point, int size) {
    const LayerPtr layer = make<SliceLayer>("l", axis);
    static_cast<SliceLayer&>(*layer).addSlicePoint(point, size);
    return layer;
}

Blob counted(int n, int c, int h, int w) {
    Blob blob(n, c, h, w);
    for (int i = 0; i < blob.size(); ++i) blob.data()[i] = static_cast<float>(i);
    return blob;
}

Blob row(const Floats& values) {
    return blobOf(1, 1, 1, static_cast<int>(values.size()), values);
}

Blob column(const Floats& values) {
    return blobOf(1, static_cast<int>(values.size()), 1, 1, values);
}

// In place: the top is the first bottom's memory. Otherwise the bottom keeps its values, and a
// second run gives the same.
const bool IN_PLACE = true, APART = false;

void expectTop(const char* what, const LayerPtr& layer, const std::vector<Blob>& bottoms,
               bool inPlace, const char* shape, const Floats& expected) {
    SCOPED_TRACE(what);
    const Floats before = bottoms[0];
    const Blob& top = run(*layer, bottoms);
    EXPECT_EQ(shape, top.shape());
    EXPECT_EQ(expected, valuesOf(top));
    EXPECT_EQ(inPlace, top.data() == bottoms[0].data());
    layer->forward();
    if (inPlace) return;
    EXPECT_EQ(before, valuesOf(bottoms[0]));
    EXPECT_EQ(expected, valuesOf(top));
}

void expectRefusal(const char* condition, const char* detail,
                   const std::function<LayerPtr()>& layer, const std::vector<Blob>& bottoms = {}) {
    const Assertion failure = failureOf([&] { run(*layer(), bottoms); });
    EXPECT_EQ(condition, failure.condition);
    EXPECT_EQ(detail, failure.detail);
}

const float INF = std::numeric_limits<float>::infinity();

}  // namespace

TEST(Layers, Activations) {
    expectTop("prelu", make<PReluLayer>("l", row({0.25f})), {row({-4, 0, 3})}, IN_PLACE,
              "1 x 1 x 1 x 3", {-1, 0, 3});
    expectTop("prelu, two channels", make<PReluLayer>("l", blobOf(2, 1, 1, 1, {2, -1})),
              {blobOf(1, 2, 1, 2, {-1, 5, -2, -INF})}, IN_PLACE, "1 x 2 x 1 x 2", {-2, 5, 2, INF});
    expectTop("relu", make<ReluLayer>("l"), {row({-4, 0, 3})}, IN_PLACE, "1 x 1 x 1 x 3",
              {0, 0, 3});
    expectTop("sigmoid", make<SigmoidLayer>("l"), {column({0, -INF, 200})}, APART, "1 x 3 x 1 x 1",
              {0.5f, 0, 1});
    expectTop("tangens", make<TangensLayer>("l"), {row({0, INF, -INF})}, IN_PLACE, "1 x 1 x 1 x 3",
              {0, 1, -1});
    expectTop("two equal classes", make<SoftmaxLayer>("l", 0.5f), {row({0, 0})}, APART,
              "1 x 1 x 1 x 1", {1});
    expectTop("just below", make<SoftmaxLayer>("l", 0.51f), {row({0, 0})}, APART, "1 x 1 x 1 x 1",
              {0});
    expectTop("softmax", make<SoftmaxLayer>("l", 0.5f), {blobOf(1, 2, 1, 2, {3, -9, -300, -999})},
              IN_PLACE, "1 x 2 x 1 x 2", {1, 1, 0, 0});

    const float nan = -std::numeric_limits<float>::quiet_NaN();
    const LayerPtr relu = make<ReluLayer>("l");
    const Blob& top = run(*relu, {row({nan, -0.0f})});
    EXPECT_EQ(0x7fc00000u, bits(top.data()[0]));
    EXPECT_EQ(0u, bits(top.data()[1]));
}

TEST(Layers, Reductions) {
    expectTop("odd sides", make<PoolingLayer>(2, 2, "l"), {counted(1, 2, 3, 5)}, APART,
              "1 x 2 x 2 x 3", {6, 8, 9, 11, 13, 14, 21, 23, 24, 26, 28, 29});
    expectTop("step 3", make<PoolingLayer>(3, 3, "l"), {counted(1, 1, 4, 4)}, APART,
              "1 x 1 x 2 x 2", {10, 11, 14, 15});
    expectTop("kernel 3, step 2", make<PoolingLayer>(3, 2, "l"), {counted(1, 1, 4, 7)}, APART,
              "1 x 1 x 2 x 3", {16, 18, 20, 23, 25, 27});
    expectTop("negatives", make<PoolingLayer>(2, 1, "l"), {blobOf(1, 1, 2, 2, {-5, -4, -3, -9})},
              APART, "1 x 1 x 1 x 1", {-3});
    expectTop("dense",
              make<InnerProductLayer>(blobOf(1, 1, 2, 2, {1, 2, 3, 4}), row({100, -100}), "l"),
              {counted(2, 2, 1, 1)}, APART, "2 x 2 x 1 x 1", {102, -96, 108, -82});
    expectTop("distance of the first num", make<ContrastiveLayer>("l"),
              {blobOf(2, 1, 1, 1, {1, 2}), blobOf(2, 2, 1, 1, {4, 6, 100, 100})}, APART,
              "1 x 1 x 1 x 1", {5});
}

TEST(Layers, Shapes) {
    expectTop("concat channels", make<ConcatLayer>("l"), {counted(1, 1, 1, 2), counted(1, 2, 1, 2)},
              APART, "1 x 3 x 1 x 2", {0, 1, 0, 1, 2, 3});
    expectTop("concat items", make<ConcatLayer>("l", false),
              {counted(1, 1, 1, 2), counted(2, 1, 1, 2)}, APART, "3 x 1 x 1 x 2",
              {0, 1, 0, 1, 2, 3});
    expectTop("flatten", make<FlattenLayer>("l"), {counted(2, 2, 1, 2)}, IN_PLACE, "2 x 4 x 1 x 1",
              counted(1, 8, 1, 1));
    expectTop("interleaved", make<FlattenLayer>("l", true), {counted(2, 2, 1, 2)}, APART,
              "2 x 4 x 1 x 1", {0, 2, 1, 3, 4, 6, 5, 7});
    expectTop("reshape", make<ReshapeLayer>("l", KZ::Size(2, 3)), {counted(1, 6, 2, 2)}, IN_PLACE,
              "1 x 4 x 3 x 2", counted(1, 24, 1, 1));
    expectTop("segment", make<SliceLayer>("l", 2, 3, 1), {counted(1, 12, 1, 1)}, APART,
              "1 x 4 x 1 x 1", {8, 9, 10, 11});
    expectTop("items", slicePoint(0, 1, 1), {counted(2, 1, 1, 2)}, APART, "1 x 1 x 1 x 2", {2, 3});
    expectTop("rows", slicePoint(2, 1, 1), {counted(1, 2, 2, 2)}, APART, "1 x 2 x 1 x 2",
              {2, 3, 6, 7});
    expectTop("columns from the end", slicePoint(3, 0, -2), {counted(1, 1, 2, 3)}, APART,
              "1 x 1 x 2 x 2", {1, 2, 4, 5});
    expectTop("all", make<SliceLayer>("l", 1), {counted(1, 2, 1, 1)}, APART, "1 x 2 x 1 x 1",
              {0, 1});
}

TEST(Layers, Arithmetic) {
    const auto eltwise = [](Operation::Value operation, const Floats& coeffs) {
        return make<EltwiseLayer>("l", operation, coeffs);
    };
    expectTop("weighted sum", eltwise(Operation::SUM, {2, 1, 3}), {row({1}), row({3}), row({4})},
              IN_PLACE, "1 x 1 x 1 x 1", {17});
    expectTop("sum of three", eltwise(Operation::SUM, {}), {row({0, 1}), row({0, 1}), row({0, 1})},
              IN_PLACE, "1 x 1 x 1 x 2", {0, 3});
    expectTop("product", eltwise(Operation::PRODUCT, {}), {row({0, 1, 2}), row({3, 4, 5})},
              IN_PLACE, "1 x 1 x 1 x 3", {0, 4, 10});
    expectTop("maximum", eltwise(Operation::MAX, {}), {row({-4, 0, 3}), row({0, 1, 2})}, IN_PLACE,
              "1 x 1 x 1 x 3", {0, 1, 3});
    expectTop("subtract", make<SubtractLayer>("l", row({1, 2, 3})), {row({-4, 0, 3})}, APART,
              "1 x 1 x 1 x 3", {-5, -2, 0});
    expectTop("per element", linear({1, 2, 3, 4}, {0, 1, 0, 1}), {counted(1, 2, 1, 2)}, IN_PLACE,
              "1 x 2 x 1 x 2", {0, 3, 6, 13});
    expectTop("per channel", linear({1, 10}, {5, 0}), {counted(2, 2, 1, 1)}, IN_PLACE,
              "2 x 2 x 1 x 1", {5, 10, 7, 30});
}

TEST(Layers, Refusals) {
    const Blob one = row({1});
    expectRefusal("(bottomLayers_.size()) == (1)", "0 != 1\n", [] { return make<ReluLayer>("l"); });
    expectRefusal("(top_.num()) == (1)", "2 != 1\n", [&] { return make<PReluLayer>("l", one); },
                  {counted(2, 1, 1, 1)});
    expectRefusal("(top_.channels()) == (slope_.num())", "2 != 1\n",
                  [&] { return make<PReluLayer>("l", one); }, {counted(1, 2, 1, 1)});
    expectRefusal("(bottom.size()) == (2)", "3 != 2\n",
                  [] { return make<SoftmaxLayer>("l", 0.5f); }, {row({1, 2, 3})});
    expectRefusal("(bottom.num()) == (1)", "2 != 1\n", [] { return make<PoolingLayer>(3, 2, "l"); },
                  {counted(2, 1, 5, 5)});
    const auto dense = [](int biases) {
        return make<InnerProductLayer>(Blob(1, 1, 2, 3), Blob(1, 1, 1, biases), "l");
    };
    expectRefusal("(weights_.size() % inputSize) == (0)", "2 != 0\n", [&] { return dense(2); },
                  {counted(1, 4, 1, 1)});
    expectRefusal("weights_.height() == bias_.width()",
                  "weights 1 x 1 x 2 x 3, bias 1 x 1 x 1 x 3\n", [&] { return dense(3); });
    const auto concat = [] { return make<ConcatLayer>("l"); };
    expectRefusal("(bottomLayers_.size()) > (1)", "1 <= 1\n", concat, {one});
    expectRefusal("(bottom0.height()) == (bottomLayers_[i]->getBlob().height())", "1 != 2\n",
                  concat, {one, counted(1, 1, 2, 1)});
    expectRefusal("(bottom0.num()) == (1)", "2 != 1\n", concat,
                  {counted(2, 1, 1, 1), counted(2, 1, 1, 1)});
    expectRefusal("(bottom.channels() * bottom.height() * bottom.width() % size_.area()) == (0)",
                  "4 != 0\n", [] { return make<ReshapeLayer>("l", KZ::Size(5, 1)); },
                  {counted(1, 6, 2, 2)});
    const auto segment = [](int i, int axis) { return make<SliceLayer>("l", i, 3, axis); };
    expectRefusal("(bottomSize % numSegments_) == (0)", "1 != 0\n", [&] { return segment(1, 1); },
                  {counted(1, 10, 1, 1)});
    expectRefusal("(segmentNumber) < (numSegments)", "3 >= 3\n", [&] { return segment(3, 1); });
    expectRefusal("(sliceSize_) != (0)", "0 == 0\n", [] { return slicePoint(1, 1, 0); });
    expectRefusal("0", "Unknown axis 7\n", [] { return make<SliceLayer>("l", 7); }, {one});
    const auto sum = [] { return make<EltwiseLayer>("l", Operation::SUM, Floats{1, 2, 3}); };
    expectRefusal("(bottomLayers_.size()) >= (2)", "1 < 2\n", sum, {one});
    expectRefusal("(top_.shape()) == (bottomLayers_[i]->getBlob().shape())",
                  "1 x 1 x 1 x 1 != 1 x 1 x 1 x 2\n", sum, {one, row({1, 2})});
    expectRefusal("(coeffs_.size()) == (bottomLayers_.size())", "3 != 2\n", sum, {one, one});
    expectRefusal("(bottom.channels()) == (subtrahend_.channels())", "1 != 2\n",
                  [] { return make<SubtractLayer>("l", Blob(1, 2, 1, 1)); }, {one});
    expectRefusal("(a_.size()) == (b_.size())", "2 != 1\n", [] { return linear({1, 2}, {1}); });
    expectRefusal("(bottom0.num()) == (bottom1.num())", "1 != 2\n",
                  [] { return make<ContrastiveLayer>("l"); }, {one, counted(2, 1, 1, 1)});
    expectRefusal("(top_.num()) >= (1)", "0 < 1\n", [] { return make<DataLayer>("l"); });
    expectRefusal("0", "Unknown type: DataLaye\n",
                  [] { return BaseLayer::getBaseLayer("DataLaye", "l"); });
}

TEST(Layers, ApproximateTangent) {
    const TangensLayer layer("l");
    EXPECT_NEAR(1 - 1 / 4.41645, layer.approxTanh(1), 1e-7);
    for (const float x : {0.01f, 0.3f, 2.5f, 1e3f, 1e18f}) {
        const double a = x * x;
        EXPECT_FLOAT_EQ(static_cast<float>(1 - 1 / (1 + double(x) + a + 1.41645 * a * a)),
                        layer.approxTanh(x));
        EXPECT_EQ(-layer.approxTanh(x), layer.approxTanh(-x));
    }
}

// Against double precision.
TEST(Layers, SoftmaxOverChannels) {
    std::mt19937 random(20260106);
    Blob bottom(1, 3, 4, 5);
    for (int i = 0; i < bottom.size(); ++i) bottom.data()[i] = 50 * randomFloat(random);
    const Floats x = bottom;
    SoftmaxLayer layer("softmax", 0.5f);
    const Floats y = run(layer, {bottom});
    for (size_t i = 0; i < 20; ++i) {
        double sum = 0;
        for (size_t c = 0; c < 3; ++c) sum += std::exp(double(x[20 * c + i]) - x[i]);
        for (size_t c = 0; c < 3; ++c)
            EXPECT_NEAR(std::exp(double(x[20 * c + i]) - x[i]) / sum, y[20 * c + i], 2e-5);
    }
    EXPECT_TRUE(layer == SoftmaxLayer("other", 0.5f + 2.9e-7f));
    EXPECT_TRUE(layer != SoftmaxLayer("other", 0.500001f));
}

// A smaller bottom is served from the first array, a larger one refused.
TEST(Layers, SliceKeepsItsArray) {
    SliceLayer layer("slice", 0, 2, 1);
    const float* memory = run(layer, {counted(1, 4, 1, 3)}).data();
    layer.bottomLayers()[0]->setBlob(counted(1, 2, 1, 3));
    layer.forward();
    EXPECT_EQ(memory, layer.getBlob().data());
    EXPECT_EQ(memory, layer.getPointer());
    layer.bottomLayers()[0]->setBlob(counted(1, 8, 1, 3));
    EXPECT_NE("no failure", conditionOf([&] { layer.forward(); }));
}

TEST(Layers, BottomsByIndexAndName) {
    const LayerPtr layer = make<ConcatLayer>("concat");
    for (const char* name : {"b", "a"}) layer->addBottomLayer(make<DataLayer>(name));
    EXPECT_EQ((std::vector<std::string>{"b", "a"}), layer->getBottomLayersName());
    EXPECT_EQ("a", layer->getBottomLayer(1)->name());
    EXPECT_EQ("(i) < ((int)bottomLayers_.size())", conditionOf([&] { layer->getBottomLayer(2); }));
    EXPECT_EQ(0, layer->clone()->getNumBottomLayers());
}
