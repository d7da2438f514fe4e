#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "GuardedBuffer.h"
#include "LogCapture.h"
#include "NnSupport.h"

using namespace testing_support;
using KZ::Blob;

namespace {

struct Shape {
    int num, channels, height, width;  ///< of the bottom
    int out, filterHeight, filterWidth, stride, pad;
    int outHeight, outWidth;
};

const Shape SHAPES[] = {
    {1, 1, 33, 35, 10, 3, 3, 2, 0, 16, 17}, {1, 2, 23, 18, 3, 3, 3, 2, 0, 11, 8},
    {1, 3, 5, 2, 2, 3, 3, 1, 1, 5, 2},      {2, 3, 9, 11, 4, 3, 3, 1, 0, 7, 9},
    {2, 2, 6, 13, 3, 2, 5, 1, 2, 9, 13},    {1, 3, 7, 8, 2, 2, 2, 3, 0, 2, 3},
    {1, 4, 3, 3, 5, 1, 1, 1, 0, 3, 3},      {3, 4, 4, 6, 5, 4, 6, 1, 0, 1, 1},
    {1, 30, 1, 1, 2, 1, 1, 1, 0, 1, 1},     {2, 2, 2, 3, 3, 4, 5, 2, 1, 1, 1},
    {1, 1, 3, 4, 1, 3, 3, 1, 0, 1, 2},
};

Blob randomValues(std::mt19937& random, int num, int channels, int height, int width) {
    Floats values(size_t(num * channels * height * width));
    randomize(random, values);
    return blobOf(num, channels, height, width, values);
}

Blob withBorder(const Blob& input, int pad) {
    Blob result(input.num(), input.channels(), input.height() + 2 * pad, input.width() + 2 * pad);
    result.setValue(0);
    for (int plane = 0; plane < input.num() * input.channels(); ++plane)
        for (int i = 0; i < input.area(); ++i)
            result.data(0, plane, i / input.width() + pad, i % input.width() + pad)[0] =
                input.data(0, plane, 0, 0)[i];
    return result;
}

// One output: bias and first channel are one sum, each further channel a sum of its own; with
// `apart` the first one is apart too. `skipped` tells which channels are left out.
template <typename Skipped>
float slidingSum(const Blob& input, const Blob& filter, float bias, int n, int o, int y, int x,
                 bool apart, Skipped skipped) {
    float total = bias;
    for (int c = 0; c < input.channels(); ++c) {
        if (skipped(c)) continue;
        const bool own = apart || c > 0;
        float sum = own ? 0 : total;
        for (int fy = 0; fy < filter.height(); ++fy)
            for (int fx = 0; fx < filter.width(); ++fx)
                sum += *filter.data(o, c, fy, fx) * *input.data(n, c, y + fy, x + fx);
        total = own ? total + sum : sum;
    }
    return total;
}

void expectConvolution(const Shape& s, const Blob& bottom, const Blob& filter, const Blob& bias,
                       const Blob& top, bool relu) {
    const Blob input = withBorder(bottom, s.pad);
    const bool whole = input.width() == s.filterWidth && input.height() == s.filterHeight;
    for (int i = 0; i < top.size(); ++i) {
        const int x = i % s.outWidth, y = i / s.outWidth % s.outHeight;
        const int o = i / top.area() % s.out, n = i / top.volume();
        const float b = bias.data()[o];
        float expected =
            whole ? dotInOrder(input.data(n, 0, 0, 0), filter.data(o, 0, 0, 0), input.volume(), b)
                  : slidingSum(input, filter, b, n, o, y * s.stride, x * s.stride, false,
                               [](int) { return false; });
        if (relu && expected < 0) expected = 0;
        ASSERT_EQ(bits(expected), bits(top.data()[i])) << "output " << i;
    }
}

}  // namespace

// Bit for bit against the plain loops, on tables that end at an unreadable page, with and without
// the clamp; a second run must not see the first one's sums.
TEST(Convolution, MatchesThePlainLoops) {
    std::mt19937 random(20260104);
    for (const Shape& s : SHAPES) {
        SCOPED_TRACE(testing::Message() << s.width << "x" << s.height << " stride " << s.stride);
        GuardedBuffer<float> cells(size_t(s.num * s.channels * s.height * s.width));
        GuardedBuffer<float> weights(size_t(s.out * s.channels * s.filterHeight * s.filterWidth));
        Blob bottom, filter;
        bottom.init(s.num, s.channels, s.height, s.width, cells.data());
        filter.init(s.out, s.channels, s.filterHeight, s.filterWidth, weights.data());
        randomize(random, weights);
        const Blob bias = randomValues(random, s.out, 1, 1, 1);
        ConvolutionLayer layer(filter, bias, "conv", s.stride, s.pad);
        for (const bool relu : {false, true}) {
            layer.setDoRelu(relu);
            const KZ::SharedPtr<BaseLayer> copy = layer.clone();
            for (int turn = 0; turn < 2; ++turn) {
                randomize(random, cells);
                const Blob& top = run(*copy, turn ? std::vector<Blob>() : std::vector{bottom});
                ASSERT_EQ(KZ::joined(s.num, " x ", s.out, " x ", s.outHeight, " x ", s.outWidth),
                          top.shape());
                expectConvolution(s, bottom, filter, bias, top, relu);
            }
        }
    }
}

// Pruned planes are not read at all: the channels under them hold a NaN.
TEST(Convolution, PruneLeavesOutEmptyPlanes) {
    std::mt19937 random(20260105);
    Blob bottom = randomValues(random, 1, 3, 6, 7), filter = randomValues(random, 2, 3, 3, 2);
    const Blob bias = randomValues(random, 2, 1, 1, 1);
    const auto skipped = [](int o, int c) { return o == 0 ? c == 1 : c != 0; };
    for (int i = 0; i < 36; ++i)
        if (skipped(i / 18, i / 6 % 3)) filter.data()[i] = i % 2 ? 1e-8f : -2e-8f;
    ConvolutionLayer layer(filter, bias, "conv", 1, 0);
    layer.prune();
    const Blob& full = run(layer, {bottom});
    for (int i = 0; i < full.size(); ++i) {
        const int o = i / full.area(), y = i % full.area() / 6, x = i % 6;
        const float expected = slidingSum(bottom, filter, bias.data()[o], 0, o, y, x, true,
                                          [&](int c) { return skipped(o, c); });
        ASSERT_EQ(bits(expected), bits(full.data()[i])) << i;
    }
    std::fill(bottom.data(0, 1, 0, 0), bottom.data(0, 2, 0, 0),
              std::numeric_limits<float>::quiet_NaN());
    layer.forward();
    for (const float value : valuesOf(layer.getBlob())) EXPECT_FALSE(std::isnan(value));

    // The limit is 1e-7 for the sum of the magnitudes.
    for (const float weight : {0.9e-7f, 1.1e-7f}) {
        ConvolutionLayer point(blobOf(1, 1, 1, 1, {-weight}), blobOf(1, 1, 1, 1, {0}), "p", 1, 0);
        point.prune();
        const float result = run(point, {blobOf(1, 1, 1, 2, {1e7f, 1e7f})}).data()[0];
        EXPECT_EQ(weight > 1e-7f, result != 0) << weight;
    }
}

TEST(Convolution, RefusesWhatDoesNotFit) {
    const auto refusal = [](int biases, const Blob& bottom) {
        ConvolutionLayer layer(Blob(4, 2, 3, 3), Blob(biases, 1, 1, 1), "conv", 1, 0);
        run(layer, {bottom});
    };
    for (const Blob& bottom : {Blob(), Blob(1, 3, 4, 4), Blob(1, 2, 2, 3), Blob(1, 2, 3, 2)})
        EXPECT_NE("no failure", conditionOf([&] { refusal(4, bottom); })) << bottom.shape();
    EXPECT_NE("no failure", conditionOf([&] { refusal(3, Blob(1, 2, 4, 4)); }));
}

// Each input stamps the filter: worked by hand for stride 2 and an overlap of one column.
TEST(DeConvolution, StampsTheFilter) {
    const Blob filter = blobOf(2, 1, 1, 3, {1, 2, 3, 10, 0, -10});
    DeConvolutionLayer layer(filter, blobOf(2, 1, 1, 1, {0.5f, -1}), "d", 2);
    const Blob& top = run(layer, {blobOf(1, 1, 2, 2, {1, 2, 3, 4})});
    EXPECT_EQ("1 x 2 x 3 x 5", top.shape());
    const float b = 0.5f;
    const Floats expected = {1 + b, 2 + b, 5 + b,  4 + b, 6 + b,  b,  b,  b, b,  b,
                             3 + b, 6 + b, 13 + b, 8 + b, 12 + b, 9,  -1, 9, -1, -21,
                             -1,    -1,    -1,     -1,    -1,     29, -1, 9, -1, -41};
    EXPECT_EQ(expected, valuesOf(top));
}

TEST(LocallyConnected, EachPositionHasItsFilter) {
    std::vector<Blob> filters, biases;
    for (const float v : {1.0f, 2.0f, 3.0f, 4.0f}) {
        filters.push_back(blobOf(1, 2, 1, 2, {v, 0, 0, 10 * v}));
        biases.push_back(blobOf(1, 1, 1, 1, {100 * v}));
    }
    LocallyConnectedLayer layer(filters, biases, "local", 1);
    const Blob& top = run(layer, {blobOf(1, 2, 2, 3, {1, 2, 3, 4, 5, 6, 7, 8, 9, 1, 2, 3})});
    EXPECT_EQ("1 x 1 x 2 x 2", top.shape());
    // 100 v + v * left of the first channel + 10 v * right of the second.
    EXPECT_EQ((Floats{181, 384, 372, 540}), valuesOf(top));
}
