#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "GuardedBuffer.h"
#include "KZ_Yuv420Converter.h"
#include "LogCapture.h"

using namespace KZ;
using testing_support::assertionOf;
using testing_support::GuardedBuffer;

namespace {

struct Order {
    bool zoomTwice, swapRedBlue, swapUV;
};

const unsigned char UNWRITTEN = 77;

Order order(int bits) {
    return {(bits & 1) != 0, (bits & 2) != 0, (bits & 4) != 0};
}

template <typename Buffer>
void fillRandomly(Buffer& buffer) {
    static std::mt19937 random(20260301);
    for (auto& byte : buffer) byte = static_cast<unsigned char>(random());
}

// Channel `c` of picture pixel (x, y) of a W by P picture, worked from the position of its bytes.
int channelAt(const unsigned char* data, int W, int P, const Order& o, int x, int y, int c) {
    const int step = o.zoomTwice ? 2 : 1;
    const int chromaStart = o.zoomTwice ? W / 2 * 2 * P : W * P;
    const int row = y * step / 2, column = x * step / 2;
    const unsigned char* pair = data + chromaStart + 2 * (row * (W / 2) + column);
    const double u = pair[o.swapUV ? 0 : 1] - 128., v = pair[o.swapUV ? 1 : 0] - 128.;
    const double luma = 1192. * data[y * step * W + x * step];
    const double channels[] = {luma + 2066 * u, luma - 400 * u - 833 * v, luma + 1634 * v};
    const double value = channels[o.swapRedBlue ? 2 - c : c];
    return static_cast<int>(std::clamp(value, 0., 262143.) / 1024);
}

// Both buffers end at an unreadable page: one byte too many read or written is a fault.
void expectConversion(int W, int rows, const Order& o) {
    SCOPED_TRACE(testing::Message() << W << "x" << rows << " zoom " << o.zoomTwice << " swap "
                                    << o.swapRedBlue << o.swapUV);
    const int P = rows / 3 * 2, f = o.zoomTwice ? 2 : 1;
    const int w = W / f, h = P / f;
    GuardedBuffer<unsigned char> bytes((o.zoomTwice ? W / 2 * 2 * P : W * P) + W / 2 * 2 * (P / 2));
    GuardedBuffer<unsigned char> pixels(w * h * 3);
    fillRandomly(bytes);
    std::fill(pixels.begin(), pixels.end(), UNWRITTEN);
    Image in, out;
    in.createRef(bytes.data(), Size(W, rows), COLOR_MODE_MONO);
    out.createRef(pixels.data(), Size(w, h), COLOR_MODE_BGR);
    yuv420toBgr(in, out, o.zoomTwice, o.swapRedBlue, o.swapUV);
    ASSERT_EQ(pixels.data(), out.data());
    const int written = o.zoomTwice ? w : W / 2 * 2;
    for (int y = 0; y < h; ++y)
        for (int x = 0; x < w; ++x)
            for (int c = 0; c < 3; ++c)
                ASSERT_EQ(x < written ? channelAt(bytes.data(), W, P, o, x, y, c) : UNWRITTEN,
                          out.data(x, y)[c])
                    << x << "," << y << "," << c;
}

}  // namespace

TEST(Yuv420, EveryPixelByTheRule) {
    const Size sizes[] = {{1, 3}, {2, 3}, {3, 6}, {2, 2}, {33, 9}, {35, 11}, {64, 12}, {130, 24}};
    for (const Size& size : sizes)
        for (int bits = 0; bits < 8; ++bits) expectConversion(size.width, size.height, order(bits));
}

class YuvRowParity : public testing::TestWithParam<YuvRowVariant> {};

TEST_P(YuvRowParity, SameBytesAsDefinition) {
    for (int bits = 0; bits < 8; ++bits)
        for (int count = 0; count <= 70; ++count) {
            const Order o = order(bits);
            const int perPair = o.zoomTwice ? 1 : 2;
            GuardedBuffer<unsigned char> luma(2 * count), chroma(2 * count);
            GuardedBuffer<unsigned char> expected(3 * perPair * count), found(expected.size());
            fillRandomly(luma);
            fillRandomly(chroma);
            const auto run = [&](const YuvRowVariant& variant, unsigned char* target) {
                variant.row(o.zoomTwice, o.swapRedBlue, o.swapUV)(luma.data(), chroma.data(),
                                                                  target, count);
            };
            run(yuvRowVariants().front(), expected.data());
            run(GetParam(), found.data());
            ASSERT_TRUE(std::equal(expected.begin(), expected.end(), found.begin()))
                << bits << " " << count;
        }
}
INSTANTIATE_TEST_SUITE_P(Variants, YuvRowParity, testing::ValuesIn(yuvRowVariants()),
                         [](const auto& test) { return test.param.name; });

TEST(Yuv420Converter, ComputesOnDemandAndOncePerFrame) {
    Image buffer(Size(4, 6), COLOR_MODE_MONO);
    std::fill(buffer.data(), buffer.data() + 24, static_cast<unsigned char>(128));
    SharedPtr<ImageData> source(new ImageData(Size(4, 6), COLOR_MODE_MONO));
    source->set(buffer);
    Yuv420Converter bgr(source, COLOR_MODE_BGR, false, false, false);
    Yuv420Converter mono(source, COLOR_MODE_MONO, false, false, false);
    EXPECT_FALSE(source->isLeafNode());
    EXPECT_EQ(Size(4, 4), bgr.size());
    EXPECT_EQ(128 * 1192 / 1024, bgr.get().data()[0]);
    EXPECT_EQ(buffer.data(), mono.get().data());
    EXPECT_EQ(Size(4, 4), mono.get().size());

    *buffer.data() = 0;
    EXPECT_NE(0, bgr.get().data()[0]);
    source->resetRecursive();
    source->set(buffer);
    source->updateRecursive();
    EXPECT_EQ(0, bgr.get().data()[0]);

    source->resetRecursive();
    source->set(Image(Size(8, 12), COLOR_MODE_MONO));
    source->updateRecursive();
    EXPECT_EQ(Size(8, 8), bgr.size());
    Yuv420Converter halfMono(source, COLOR_MODE_MONO, true, false, false);
    Yuv420Converter rgb(source, COLOR_MODE_RGB, false, false, false);
    EXPECT_EQ("for mono only zoom 1 is supported\n", assertionOf([&] { halfMono.get(); }));
    EXPECT_EQ("Only mono and bgr are supported \n", assertionOf([&] { rgb.get(); }));
}
