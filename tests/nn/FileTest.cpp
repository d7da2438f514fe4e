// Network files: what is written, older formats byte by byte, and damaged ones.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <new>
#include <sstream>

#include "Allocations.h"
#include "EveryLayer.h"
#include "LogCapture.h"
#include "NnSupport.h"

using namespace testing_support;
using KZ::Blob;

namespace {

std::string bytesOf(const NnDetector& network) {
    std::ostringstream stream;
    KZ::ArchiveO archive(stream);
    archive& network;
    return stream.str();
}

void read(const std::string& bytes, NnDetector& network) {
    std::istringstream stream(bytes);
    KZ::ArchiveI archive(stream);
    archive& network;
}

/// Bytes one after the other: numbers in four bytes, texts with their final zero.
class Bytes {
public:
    template <typename T>
    Bytes& operator<<(T value) {
        static_assert(sizeof(T) == 4, "a number of four bytes");
        text.append(reinterpret_cast<const char*>(&value), 4);
        return *this;
    }
    Bytes& operator<<(const char* value) {
        text.append(value, std::strlen(value) + 1);
        return *this;
    }
    Bytes& raw(const std::string& value) {
        text += value;
        return *this;
    }
    Bytes& line() { return raw("\n"); }
    Bytes& blob(int n, int c, int h, int w, const Floats& values) {
        *this << n << c << h << w;
        for (const float value : values) *this << value;
        return *this;
    }
    std::string text;
};

Bytes head(const char* version, int numLayers) {
    Bytes bytes;
    (bytes << version).line();
    (bytes << "net").line();
    (bytes << 6 << 5).line();
    if (std::string(version) == "Version 8") (bytes << 1).line();
    (bytes << numLayers).line();
    return bytes;
}

NnDetector networkOf(const std::vector<BaseLayer*>& layers) {
    NnDetector network;
    network.setName("net");
    for (BaseLayer* layer : layers) network.addLayer(KZ::SharedPtr<BaseLayer>(layer));
    network.joinLayers();
    network.setSize(KZ::Size(6, 5));
    return network;
}

std::string outcomeOf(const std::function<void()>& call) {
    LogCapture quiet;
    try {
        call();
    } catch (const char*) {
        return "assertion";
    } catch (const std::bad_alloc&) {
        return "no memory";
    }
    return "done";
}

}  // namespace

TEST(NetworkFile, EveryLayerComesBack) {
    const NnDetector network = everyLayerNetwork();
    const std::string bytes = bytesOf(network);
    NnDetector back;
    back.setMultiplier(5);
    back.setTranspose(true);
    back.setTrainLog("old");
    back.setMeanValues({3});
    read(bytes, back);
    EXPECT_TRUE(back.isLoaded());
    EXPECT_TRUE(network == back);
    EXPECT_EQ(bytes, bytesOf(back));
    EXPECT_EQ(0.00390625f, back.getMultiplier());
    EXPECT_FALSE(back.getTranspose());
    EXPECT_EQ("", back.getTrainLog());
    EXPECT_EQ(Floats{0}, back.getMeanValues());
    EXPECT_EQ((std::vector<std::string>{"slice_point", "boxes", "contrast"}),
              back.getOutputNames());
    for (size_t i = 0; i < network.getNetwork().size(); ++i)
        EXPECT_EQ(network.getNetwork()[i]->getBottomLayersName(),
                  back.getNetwork()[i]->getBottomLayersName());
    KZ::Image image(everyLayerSize(), KZ::COLOR_MODE_MONO);
    for (int i = 0; i < 120; ++i) image.data()[i] = static_cast<unsigned char>(i * 7);
    EXPECT_EQ(valuesOf(network.detect(image)), valuesOf(back.detect(image)));
}

TEST(NetworkFile, ByPath) {
    const std::string path = testing::TempDir() + "network.bin";
    std::ofstream(path, std::ios::binary) << bytesOf(everyLayerNetwork());
    NnDetector back;
    EXPECT_TRUE(back.load(path));
    std::remove(path.c_str());
    const Assertion failure = failureOf([&] { back.load(path); });
    EXPECT_EQ("file", failure.condition);
    EXPECT_EQ("cannot open " + path + "\n", failure.detail);
    EXPECT_EQ("cannot open file /nowhere/x.cpp\n",
              assertionOf([&] { back.saveToCpp("/nowhere/x.cpp"); }));
}

// The bytes are written down here; networks built by hand are what they must mean.
TEST(NetworkFile, Formats) {
    const auto expect = [](const std::string& bytes, const NnDetector& expected) {
        SCOPED_TRACE(bytes.c_str());
        NnDetector network;
        read(bytes, network);
        EXPECT_TRUE(expected == network);
        EXPECT_EQ(KZ::COLOR_MODE_MONO, network.getInputColorMode());
        if (bytes.compare(0, 9, "Version 8") == 0) {
            EXPECT_EQ(bytes, bytesOf(expected));
        }
        return network;
    };
    const auto conv = [&](const char* version, const std::vector<int>& fields, int stride, int pad,
                          const char* shape) {
        Bytes bytes = head(version, 2);
        (bytes << "DataLayer"
               << "data" << 0)
            .line();
        bytes << "ConvolutionLayer"
              << "conv";
        bytes.blob(1, 1, 2, 2, {1, 2, 3, 4}).blob(1, 1, 1, 1, {9}) << 4;
        for (const int field : fields) bytes << field;
        (bytes << 1 << "data").line();
        const NnDetector network =
            expect(bytes.text,
                   networkOf({new DataLayer("data"),
                              new ConvolutionLayer(blobOf(1, 1, 2, 2, {1, 2, 3, 4}),
                                                   blobOf(1, 1, 1, 1, {9}), "conv", stride, pad)}));
        Blob input(1, 1, 5, 6);
        input.setValue(1);
        EXPECT_EQ(shape, network.detect(input).shape());
    };
    conv("Version 8", {2, 1}, 2, 1, "1 x 1 x 3 x 4");
    conv("Version 7", {2, 1}, 2, 1, "1 x 1 x 3 x 4");
    conv("Version 6", {2}, 2, 0, "1 x 1 x 2 x 3");
    conv("Version 1", {}, 1, 0, "1 x 1 x 4 x 5");

    const auto one = [&](const char* version, BaseLayer* expected,
                         const std::function<void(Bytes&)>& payload) {
        Bytes bytes = head(version, 1);
        bytes << expected->type().c_str() << "l";
        payload(bytes);
        (bytes << 0).line();
        expect(bytes.text, networkOf({expected}));
    };
    SliceLayer* slice = new SliceLayer("l", 2);
    slice->addSlicePoint(3, -1);
    one("Version 3", slice, [](Bytes& b) { b << 0 << 0 << 2 << 3 << -1; });
    one("Version 2", new SliceLayer("l", 1, 3, 2), [](Bytes& b) { b << 1 << 3 << 2; });
    one("Version 6", new EltwiseLayer("l", EltwiseLayer::Operation::MAX, {5, 6}),
        [](Bytes& b) { b << 2 << 2 << 5.0f << 6.0f; });
    one("Version 5", new EltwiseLayer("l", EltwiseLayer::Operation::SUM, {}), [](Bytes&) {});
    LinearTransformLayer* linear = new LinearTransformLayer("l");
    linear->setTransform({1.5f, 2}, {3, 4});
    one("Version 5", linear, [](Bytes& b) {
        b.raw("2") << 1.5f << 2.0f;
        b.raw("2") << 3.0f << 4.0f;
    });
    const auto heat = [] {
        HeatMapPosition* layer = new HeatMapPosition("l");
        layer->setPatchSize(KZ::Size(20, 10));
        layer->addHeatmap(KZ::Size(5, 4), KZ::Rect(10, 0, 20, 10));
        return layer;
    };
    one("Version 8", heat(), [](Bytes& b) {
        b << 20 << 10 << 1 << 5 << 4 << 1;
        b << 0.5f << 0.25f << 0.0f << 0.0f << 1.0f << 0.5f;
    });
    one("Version 3", heat(), [](Bytes& b) {
        b << 20 << 10;
        b.raw("1") << 5 << 4;
        b.raw("1") << 10.0f << 0.0f << 10.0f << 10.0f;
    });
}

TEST(NetworkFile, Refusals) {
    NnDetector network;
    const Assertion future = failureOf([&] { read(head("Version 9", 0).text, network); });
    EXPECT_EQ("version <= NN_CLASSIFIER_VERSION", future.condition);
    EXPECT_EQ("Wrong version number Version 9\n", future.detail);
    Bytes unknown = head("Version 8", 1);
    (unknown << "NoLayer"
             << "l" << 0)
        .line();
    EXPECT_EQ("Unknown type: NoLayer\n", assertionOf([&] { read(unknown.text, network); }));

    Bytes negative;
    (negative << "Version 7").line();
    (negative << "net").line();
    ((negative << -6 << -5).line() << 0).line();
    EXPECT_EQ("(size.width) >= (0)", conditionOf([&] { read(negative.text, network); }));

    // A bottom that stands later, or is the layer itself, stays empty and fails at the run.
    Bytes later = head("Version 8", 2);
    (later << "ReluLayer"
           << "first" << 2 << "second"
           << "first")
        .line();
    (later << "DataLayer"
           << "second" << 0)
        .line();
    read(later.text, network);
    EXPECT_FALSE(network.getNetwork()[0]->getBottomLayer(0));
    EXPECT_FALSE(network.getNetwork()[0]->getBottomLayer(1));
    Blob input(1, 1, 5, 6);
    EXPECT_NE("no failure", assertionOf([&] { network.detect(input); }));
    EXPECT_TRUE(network.clone() == network);
}

TEST(NetworkFile, CutAtEveryByte) {
    const std::string bytes = bytesOf(everyLayerNetwork());
    NnDetector network;
    for (size_t size = 0; size < bytes.size(); ++size) {
        ASSERT_EQ("assertion", outcomeOf([&] { read(bytes.substr(0, size), network); })) << size;
        ASSERT_FALSE(network.isLoaded()) << size;
    }
}

// Four bytes at a time become a lie about a count, a size or a value. Whatever is still read is
// run as well: each either works or is refused, and neither asks for memory beyond the file's.
TEST(NetworkFile, LiesAtEveryByte) {
    const std::string bytes = bytesOf(everyLayerNetwork());
    const unsigned int lies[] = {0x7fffffffu, 0xffffffffu, 0x40000000u, 0x80000000u, 0x00010000u};
    Blob input(1, 1, everyLayerSize().height, everyLayerSize().width);
    for (size_t i = 0; i + 4 <= bytes.size(); ++i) {
        std::string bad = bytes;
        std::memcpy(&bad[i], &lies[i % 5], 4);
        NnDetector network;
        largestAllocation() = 0;
        const std::string outcome = outcomeOf([&] { read(bad, network); });
        ASSERT_LT(largestAllocation(), 4 * bytes.size()) << i;
        ASSERT_EQ(outcome == "done", network.isLoaded()) << i;
        input.setValue(0.5f);
        if (outcome == "done") outcomeOf([&] { network.detect(input); });
    }
}
