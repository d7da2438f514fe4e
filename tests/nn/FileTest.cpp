// Network files: what is written, older formats byte by byte, and damaged ones.

#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>
#include <functional>
#include <new>
#include <sstream>

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

void append(std::string& text, const char* value) {
    text.append(value, std::strlen(value) + 1);
}
void append(std::string& text, char value) {
    text += value;
}
void append(std::string& text, int value) {
    text.append(reinterpret_cast<const char*>(&value), 4);
}
void append(std::string& text, const Floats& values) {
    text.append(reinterpret_cast<const char*>(values.data()), 4 * values.size());
}

/// Numbers in four bytes, texts with their final zero, single characters.
template <typename... Parts>
std::string bytes(const Parts&... parts) {
    std::string text;
    (append(text, parts), ...);
    return text;
}

std::string head(const std::string& version, int numLayers) {
    return bytes(version.c_str(), '\n', "net", '\n', 6, 5, '\n') +
           (version == "Version 8" ? bytes(1, '\n') : "") + bytes(numLayers, '\n');
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
    const std::string whole = bytesOf(network);
    NnDetector back;
    back.setMultiplier(5);
    back.setTranspose(true);
    back.setTrainLog("old");
    back.setMeanValues({3});
    read(whole, back);
    EXPECT_TRUE(back.isLoaded());
    EXPECT_TRUE(network == back);
    EXPECT_EQ(whole, bytesOf(back));
    EXPECT_EQ(0.00390625f, back.getMultiplier());
    EXPECT_FALSE(back.getTranspose());
    EXPECT_EQ("", back.getTrainLog());
    EXPECT_EQ(Floats{0}, back.getMeanValues());
    EXPECT_EQ((std::vector<std::string>{"slice_point", "boxes", "contrast"}),
              back.getOutputNames());
    const KZ::Image image = noise(everyLayerSize(), KZ::COLOR_MODE_MONO, 7);
    EXPECT_EQ(valuesOf(network.detect(image)), valuesOf(back.detect(image)));

    const std::string path = testing::TempDir() + "network.bin";
    std::ofstream(path, std::ios::binary) << whole;
    EXPECT_TRUE(NnDetector().load(path));
    std::remove(path.c_str());
    EXPECT_EQ("cannot open " + path + "\n", assertionOf([&] { back.load(path); }));
}

// The bytes are written down here; networks built by hand are what they must mean.
TEST(NetworkFile, Formats) {
    const auto expect = [](const std::string& text, const NnDetector& expected) {
        SCOPED_TRACE(text.c_str());
        NnDetector network;
        read(text, network);
        EXPECT_TRUE(expected == network);
        EXPECT_EQ(KZ::COLOR_MODE_MONO, network.getInputColorMode());
        if (text.find("Version 8") == 0) {
            EXPECT_EQ(text, bytesOf(expected));
        }
        return network;
    };
    const auto conv = [&](const char* version, const std::string& fields, int stride, int pad,
                          const char* shape) {
        const std::string text =
            head(version, 2) +
            bytes("DataLayer", "data", 0, '\n', "ConvolutionLayer", "conv", 1, 1) +
            bytes(2, 2, Floats{1, 2, 3, 4}, 1, 1, 1, 1, Floats{9}, 4) + fields +
            bytes(1, "data", '\n');
        const Blob filter = blobOf(1, 1, 2, 2, {1, 2, 3, 4}), bias = blobOf(1, 1, 1, 1, {9});
        Blob input(1, 1, 5, 6);
        input.setValue(1);
        const NnDetector expected = networkOf(
            {new DataLayer("data"), new ConvolutionLayer(filter, bias, "conv", stride, pad)});
        EXPECT_EQ(shape, expect(text, expected).detect(input).shape());
    };
    conv("Version 8", bytes(2, 1), 2, 1, "1 x 1 x 3 x 4");
    conv("Version 7", bytes(2, 1), 2, 1, "1 x 1 x 3 x 4");
    conv("Version 6", bytes(2), 2, 0, "1 x 1 x 2 x 3");
    conv("Version 1", bytes(), 1, 0, "1 x 1 x 4 x 5");

    SliceLayer* slice = new SliceLayer("l", 2);
    slice->addSlicePoint(3, -1);
    LinearTransformLayer* linear = new LinearTransformLayer("l");
    linear->setTransform({1.5f, 2}, {3, 4});
    HeatMapPosition* heat[2];
    for (HeatMapPosition*& layer : heat) {
        layer = new HeatMapPosition("l");
        layer->setPatchSize(KZ::Size(20, 10));
        layer->addHeatmap(KZ::Size(5, 4), KZ::Rect(10, 0, 20, 10));
    }
    struct Row {
        const char* version;
        BaseLayer* expected;
        std::string payload;
    };
    const Row rows[] = {
        {"Version 3", slice, bytes(0, 0, 2, 3, -1)},
        {"Version 2", new SliceLayer("l", 1, 3, 2), bytes(1, 3, 2)},
        {"Version 6", new EltwiseLayer("l", EltwiseLayer::Operation::MAX, {5, 6}),
         bytes(2, 2, Floats{5, 6})},
        {"Version 5", new EltwiseLayer("l", EltwiseLayer::Operation::SUM, {}), ""},
        {"Version 5", linear, bytes('2', Floats{1.5f, 2}, '2', Floats{3, 4})},
        {"Version 8", heat[0], bytes(20, 10, 1, 5, 4, 1, Floats{0.5f, 0.25f, 0, 0, 1, 0.5f})},
        {"Version 3", heat[1], bytes(20, 10, '1', 5, 4, '1', Floats{10, 0, 10, 10})},
    };
    for (const Row& row : rows)
        expect(head(row.version, 1) + bytes(row.expected->type().c_str(), "l") + row.payload +
                   bytes(0, '\n'),
               networkOf({row.expected}));
}

TEST(NetworkFile, Refusals) {
    NnDetector network;
    EXPECT_EQ("Wrong version number Version 9\n",
              assertionOf([&] { read(head("Version 9", 0), network); }));
    EXPECT_EQ("Unknown type: NoLayer\n", assertionOf([&] {
                  read(head("Version 8", 1) + bytes("NoLayer", "l", 0, '\n'), network);
              }));
    // A bottom that stands later, or is the layer itself, stays empty and fails at the run.
    read(head("Version 8", 2) + bytes("ReluLayer", "first", 2, "second", "first", '\n') +
             bytes("DataLayer", "second", 0, '\n'),
         network);
    EXPECT_FALSE(network.getNetwork()[0]->getBottomLayer(0));
    EXPECT_FALSE(network.getNetwork()[0]->getBottomLayer(1));
    Blob input(1, 1, 5, 6);
    EXPECT_NE("no failure", assertionOf([&] { network.detect(input); }));
    EXPECT_TRUE(network.clone() == network);
}

TEST(NetworkFile, SidesOfNothing) {
    // The last side is 0, and what the others ask for is not in the file.
    const std::string text = head("Version 8", 1) + bytes("PReluLayer", "p", 500, 3, 2, 0, 0, '\n');
    NnDetector network;
    read(text, network);
    EXPECT_EQ(text, bytesOf(network));
    EXPECT_NE("no failure", assertionOf([&] {
                  read(head("Version 8", 1) + bytes("PReluLayer", "p", 500, 0, 1 << 30, 2, 0, '\n'),
                       network);
              }));
}

// Each layer holds the one below: letting go of them must not take a call a layer.
TEST(NetworkFile, LongChain) {
    const int count = 100000;
    std::string text = head("Version 8", count) + bytes("DataLayer", "0", 0, '\n');
    for (int i = 1; i < count; ++i)
        text += bytes("SigmoidLayer", std::to_string(i).c_str(), 1, std::to_string(i - 1).c_str(),
                      '\n');
    NnDetector network;
    read(text, network);
    EXPECT_EQ(std::vector<std::string>{std::to_string(count - 1)}, network.getOutputNames());
    read(text, network);
    NnDetector copy = network;
    network = NnDetector();
    copy.reset();
}

TEST(NetworkFile, CutAtEveryByte) {
    const std::string whole = bytesOf(everyLayerNetwork());
    NnDetector network;
    for (size_t size = 0; size < whole.size(); ++size) {
        ASSERT_EQ("assertion", outcomeOf([&] { read(whole.substr(0, size), network); })) << size;
        ASSERT_FALSE(network.isLoaded()) << size;
    }
}

// Four bytes at a time become a lie about a count, a size or a value. Whatever is still read is
// run as well: each either works or is refused, and neither asks for memory beyond the file's.
TEST(NetworkFile, LiesAtEveryByte) {
    const std::string whole = bytesOf(everyLayerNetwork());
    const unsigned int lies[] = {0x7fffffffu, 0xffffffffu, 0x40000000u, 0x80000000u, 0x00010000u};
    Blob input(1, 1, everyLayerSize().height, everyLayerSize().width);
    for (size_t i = 0; i + 4 <= whole.size(); ++i) {
        std::string bad = whole;
        std::memcpy(&bad[i], &lies[i % 5], 4);
        NnDetector network;
        largestAllocation() = 0;
        const std::string outcome = outcomeOf([&] { read(bad, network); });
        ASSERT_LT(largestAllocation(), 4 * whole.size()) << i;
        ASSERT_EQ(outcome == "done", network.isLoaded()) << i;
        input.setValue(0.5f);
        if (outcome == "done") outcomeOf([&] { network.detect(input); });
    }
}
