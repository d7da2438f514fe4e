// The layers without a bank of filters, worked by hand.

#include <gtest/gtest.h>

#include <cmath>
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

// The top's shape and values. In place, it is the first bottom's memory; otherwise the bottom keeps
// its values, and a second run gives the same.
void expectTop(const LayerPtr& layer, const std::vector<Blob>& bottoms, const char* shape,
               const Floats& expected, bool inPlace) {
    SCOPED_TRACE(layer->type() + " " + shape);
    const Floats before = bottoms[0];
    const Blob& top = run(*layer, bottoms);
    EXPECT_EQ(shape,
              KZ::joined(top.num(), " ", top.channels(), " ", top.height(), " ", top.width()));
    EXPECT_EQ(expected, valuesOf(top));
    EXPECT_EQ(inPlace, top.data() == bottoms[0].data());
    layer->forward();
    if (inPlace) return;
    EXPECT_EQ(before, valuesOf(bottoms[0]));
    EXPECT_EQ(expected, valuesOf(top));
}

void apart(const LayerPtr& layer, const std::vector<Blob>& bottoms, const char* shape,
           const Floats& expected) {
    expectTop(layer, bottoms, shape, expected, false);
}

void inPlace(const LayerPtr& layer, const std::vector<Blob>& bottoms, const char* shape,
             const Floats& expected) {
    expectTop(layer, bottoms, shape, expected, true);
}

const float INF = std::numeric_limits<float>::infinity();

}  // namespace

TEST(Layers, Activations) {
    inPlace(make<PReluLayer>("l", row({0.25f})), {row({-4, 0, 3})}, "1 1 1 3", {-1, 0, 3});
    inPlace(make<PReluLayer>("l", blobOf(2, 1, 1, 1, {2, -1})),
            {blobOf(1, 2, 1, 2, {-1, 5, -2, -INF})}, "1 2 1 2", {-2, 5, 2, INF});
    inPlace(make<ReluLayer>("l"), {row({-4, 0, 3})}, "1 1 1 3", {0, 0, 3});
    apart(make<SigmoidLayer>("l"), {column({0, -INF, 200})}, "1 3 1 1", {0.5f, 0, 1});
    inPlace(make<TangensLayer>("l"), {row({0, INF, -INF})}, "1 1 1 3", {0, 1, -1});
    apart(make<SoftmaxLayer>("l", 0.5f), {row({0, 0})}, "1 1 1 1", {1});
    apart(make<SoftmaxLayer>("l", 0.51f), {row({0, 0})}, "1 1 1 1", {0});
    inPlace(make<SoftmaxLayer>("l", 0.5f), {blobOf(1, 2, 1, 2, {3, -9, -300, -999})}, "1 2 1 2",
            {1, 1, 0, 0});

    const float nan = -std::numeric_limits<float>::quiet_NaN();
    const LayerPtr relu = make<ReluLayer>("l");
    const Blob& top = run(*relu, {row({nan, -0.0f})});
    EXPECT_EQ(0x7fc00000u, bits(top.data()[0]));
    EXPECT_EQ(0u, bits(top.data()[1]));
}

TEST(Layers, Reductions) {
    apart(make<PoolingLayer>(2, 2, "l"), {counted(1, 2, 3, 5)}, "1 2 2 3",
          {6, 8, 9, 11, 13, 14, 21, 23, 24, 26, 28, 29});
    apart(make<PoolingLayer>(3, 3, "l"), {counted(1, 1, 4, 4)}, "1 1 2 2", {10, 11, 14, 15});
    apart(make<PoolingLayer>(3, 2, "l"), {counted(1, 1, 4, 7)}, "1 1 2 3",
          {16, 18, 20, 23, 25, 27});
    apart(make<PoolingLayer>(2, 1, "l"), {blobOf(1, 1, 2, 2, {-5, -4, -3, -9})}, "1 1 1 1", {-3});
    apart(make<InnerProductLayer>(blobOf(1, 1, 2, 2, {1, 2, 3, 4}), row({100, -100}), "l"),
          {counted(2, 2, 1, 1)}, "2 2 1 1", {102, -96, 108, -82});
    apart(make<ContrastiveLayer>("l"),
          {blobOf(2, 1, 1, 1, {1, 2}), blobOf(2, 2, 1, 1, {4, 6, 100, 100})}, "1 1 1 1", {5});
}

// Floats tell whole numbers apart up to 2^24.
TEST(Layers, PoolingOfALongRow) {
    const int width = (1 << 24) + 1;
    Blob bottom(1, 1, 1, width);
    bottom.setValue(-1);
    bottom.data()[width - 1] = 5;
    PoolingLayer layer(1, 1, "pool");
    const Blob& top = run(layer, {bottom});
    ASSERT_EQ(width, top.width());
    EXPECT_EQ(5, top.data()[width - 1]);
}

TEST(Layers, Shapes) {
    apart(make<ConcatLayer>("l"), {counted(1, 1, 1, 2), counted(1, 2, 1, 2)}, "1 3 1 2",
          {0, 1, 0, 1, 2, 3});
    apart(make<ConcatLayer>("l", false), {counted(1, 1, 1, 2), counted(2, 1, 1, 2)}, "3 1 1 2",
          {0, 1, 0, 1, 2, 3});
    inPlace(make<FlattenLayer>("l"), {counted(2, 2, 1, 2)}, "2 4 1 1", counted(1, 8, 1, 1));
    apart(make<FlattenLayer>("l", true), {counted(2, 2, 1, 2)}, "2 4 1 1",
          {0, 2, 1, 3, 4, 6, 5, 7});
    inPlace(make<ReshapeLayer>("l", KZ::Size(2, 3)), {counted(1, 6, 2, 2)}, "1 4 3 2",
            counted(1, 24, 1, 1));
    apart(make<SliceLayer>("l", 2, 3, 1), {counted(1, 12, 1, 1)}, "1 4 1 1", {8, 9, 10, 11});
    apart(slicePoint(0, 1, 1), {counted(2, 1, 1, 2)}, "1 1 1 2", {2, 3});
    apart(slicePoint(2, 1, 1), {counted(1, 2, 2, 2)}, "1 2 1 2", {2, 3, 6, 7});
    apart(slicePoint(3, 0, -2), {counted(1, 1, 2, 3)}, "1 1 2 2", {1, 2, 4, 5});
    apart(make<SliceLayer>("l", 1), {counted(1, 2, 1, 1)}, "1 2 1 1", {0, 1});
}

TEST(Layers, Arithmetic) {
    const auto eltwise = [](Operation::Value operation, const Floats& coeffs) {
        return make<EltwiseLayer>("l", operation, coeffs);
    };
    inPlace(eltwise(Operation::SUM, {2, 1, 3}), {row({1}), row({3}), row({4})}, "1 1 1 1", {17});
    inPlace(eltwise(Operation::SUM, {}), {row({0, 1}), row({0, 1}), row({0, 1})}, "1 1 1 2",
            {0, 3});
    inPlace(eltwise(Operation::PRODUCT, {}), {row({0, 1, 2}), row({3, 4, 5})}, "1 1 1 3",
            {0, 4, 10});
    inPlace(eltwise(Operation::MAX, {}), {row({-4, 0, 3}), row({0, 1, 2})}, "1 1 1 3", {0, 1, 3});
    apart(make<SubtractLayer>("l", row({1, 2, 3})), {row({-4, 0, 3})}, "1 1 1 3", {-5, -2, 0});
    inPlace(linear({1, 2, 3, 4}, {0, 1, 0, 1}), {counted(1, 2, 1, 2)}, "1 2 1 2", {0, 3, 6, 13});
    inPlace(linear({1, 10}, {5, 0}), {counted(2, 2, 1, 1)}, "2 2 1 1", {5, 10, 7, 30});
}

TEST(Layers, SoftmaxOverChannels) {
    std::mt19937 random(20260106);
    Floats x(60);
    randomize(random, x);
    for (float& value : x) value *= 50;
    SoftmaxLayer layer("softmax", 0.5f);
    const Floats y = run(layer, {blobOf(1, 3, 4, 5, x)});
    for (size_t i = 0; i < 60; ++i) {
        double sum = 0;
        for (size_t c = 0; c < 60; c += 20) sum += std::exp(double(x[c + i % 20]) - x[i]);
        EXPECT_NEAR(1 / sum, y[i], 2e-5);
    }
}

TEST(Layers, RefuseWhatTheyWouldReadBeyond) {
    const Blob one = row({1}), two = row({1, 2});
    const Blob noChannel(1, 0, 5, 5), noWidth(1, 1, 1, 0);
    Blob half;  // of what no int can count
    half.init(1, 1 << 30, 1, 1, one.data());
    const std::pair<LayerPtr, std::vector<Blob>> rows[] = {
        {make<ReluLayer>("l"), {}},
        {make<PReluLayer>("l", one), {counted(1, 2, 1, 1)}},
        {make<SoftmaxLayer>("l", 0.5f), {row({1, 2, 3})}},
        {make<InnerProductLayer>(two, one, "l"), {row({1, 2, 3, 4})}},
        {make<ConcatLayer>("l"), {one, counted(1, 1, 2, 1)}},
        {make<SliceLayer>("l", 1, 3, 1), {counted(1, 10, 1, 1)}},
        {make<EltwiseLayer>("l", Operation::MAX, Floats()), {two, one}},
        {make<SubtractLayer>("l", one), {two}},
        {make<ConcatLayer>("l"), {half, half}},
        {make<ConvolutionLayer>(Blob(1, 0, 1, 1), one, "l", 1, 0), {noChannel}},
        {make<DeConvolutionLayer>(noWidth, one, "l", 2), {one}},
        {make<DeConvolutionLayer>(Blob(1, 0, 1, 1), one, "l", 2), {noChannel}},
        {make<LocallyConnectedLayer>(std::vector<Blob>(2, noWidth), std::vector<Blob>(2, one), "l"),
         {one}},
        {make<ReshapeLayer>("l", KZ::Size(1 << 15, 1 << 15)), {Blob()}},
    };
    for (const auto& row : rows)
        EXPECT_NE("no failure", conditionOf([&] { run(*row.first, row.second); }))
            << row.first->type();
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
