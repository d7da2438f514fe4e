#include <gtest/gtest.h>

#include <cmath>
#include <thread>

#include "EveryLayer.h"
#include "LogCapture.h"
#include "NnSupport.h"

using namespace testing_support;
using KZ::Blob;

namespace {

/// Three layers behind the input; each makes 2 x + 1 of what it gets.
NnDetector chain() {
    NnDetector network;
    network.addLayer(KZ::SharedPtr<BaseLayer>(new DataLayer("data")));
    for (const char* name : {"a", "b", "c"}) {
        LinearTransformLayer* layer = new LinearTransformLayer(name);
        network.addLayer(KZ::SharedPtr<BaseLayer>(layer));
        layer->setTransform({2}, {1});
    }
    network.joinLayers();
    return network;
}

float runOn(const NnDetector& network, float value) {
    Blob input = blobOf(1, 1, 1, 1, {value});
    return network.detect(input).data()[0];
}

}  // namespace

TEST(Network, OutputsAndTheEarlyEnd) {
    NnDetector network = chain();
    EXPECT_EQ((std::vector<std::string>{"data", "a", "b", "c"}), network.getOutputNames());
    network.setSize(KZ::Size(1, 1));
    EXPECT_EQ(std::vector<std::string>{"c"}, network.getOutputNames());
    EXPECT_EQ(8 + 7, runOn(network, 1));
    network.setOutputLayers({"b", "none"});
    EXPECT_EQ(4 + 3, runOn(network, 1));
    EXPECT_EQ(std::vector<std::string>{"b"}, network.getOutputNames());
    network.setOutputLayers({"c", "a"});
    EXPECT_EQ(8 + 7, runOn(network, 1));
    EXPECT_EQ((std::vector<std::string>{"a", "c"}), network.getOutputNames());
    EXPECT_EQ(network.getNetwork()[1]->getBlob().data(), network.getOutputBlobs()[0].data());
    EXPECT_EQ("size must be inicialized after\n",
              assertionOf([&] { network.addLayer(KZ::SharedPtr<BaseLayer>()); }));
    EXPECT_EQ("0 <= 0\n", assertionOf([&] { runOn(NnDetector(), 1); }));
    // An activation at the end takes the flag off its bottom and has none.
    for (const char* type : {"ReluLayer", "PReluLayer"}) {
        NnDetector activated = chain();
        activated.addLayer(BaseLayer::getBaseLayer(type, "activation"));
        activated.getNetwork()[4]->addBottomLayer(activated.getNetwork()[3]);
        activated.setSize(KZ::Size(1, 1));
        EXPECT_TRUE(activated.getOutputNames().empty());
    }
}

TEST(Network, ConvertsImages) {
    KZ::Image whole = noise(KZ::Size(9, 7), KZ::COLOR_MODE_BGR, 1), image;
    image.createRef(whole, KZ::Rect(2, 1, 7, 4));
    NnDetector network;
    network.setInputColorMode(KZ::COLOR_MODE_BGR);
    network.setMeanValues({1.5f, 20, 100.25f});
    network.setMultiplier(0.01f);
    const Floats means = network.getMeanValues();
    for (const bool transpose : {false, true}) {
        network.setTranspose(transpose);
        Blob blob;
        network.convert(image, blob, 1, 2);
        ASSERT_EQ(transpose ? "2 x 3 x 5 x 3" : "2 x 3 x 3 x 5", blob.shape());
        for (int i = 0; i < 45; ++i) {
            const int c = i % 3, x = i / 3 % 5, y = i / 15;
            const float expected = (image.data(x, y)[c] - means[static_cast<size_t>(c)]) * 0.01f;
            EXPECT_EQ(expected, transpose ? *blob.data(1, 2 - c, x, y) : *blob.data(1, c, y, x));
        }
    }
    EXPECT_EQ("3 != 1\n", assertionOf([&] { network.setMeanValues({1}); }));
    EXPECT_NE("no failure", assertionOf([&] { chain().detect(image); }));
}

// The means of the image before stay in the sums.
TEST(Network, SamplewiseMeansAddUp) {
    KZ::Image image(KZ::Size(2, 2), KZ::COLOR_MODE_MONO);
    const unsigned char pixels[] = {10, 20, 30, 60};
    std::copy(pixels, pixels + 4, image.data());
    NnDetector network;
    network.setSamplewiseMeanImageSubtraction(true);
    network.setMultiplier(1);
    Blob blob;
    network.convert(image, blob, 0, 1);
    EXPECT_EQ((Floats{-20, -10, 0, 30}), valuesOf(blob));
    network.convert(image, blob, 0, 1);
    EXPECT_EQ(10 - (30 + 120) / 4.0f, blob.data()[0]);
}

TEST(Network, BatchOfImagesAndAccuracy) {
    NnDetector network = chain();
    network.setSize(KZ::Size(1, 1));
    std::vector<KZ::Image> images(3, KZ::Image(KZ::Size(1, 1), KZ::COLOR_MODE_MONO));
    for (size_t i = 0; i < 3; ++i) images[i].data()[0] = static_cast<unsigned char>(64 * i);
    EXPECT_EQ((Floats{7, 9, 11}), valuesOf(network.detect(images)));
    EXPECT_NEAR(std::exp(2.0) / (std::exp(2.0) + std::exp(-1.0) + 1),
                NnDetector::getAccuracy({-1, 2, 0}, 1), 1e-6);
}

// Copies and the original run at the same time, each on its own picture.
TEST(Network, ClonesRunOnTheirThreads) {
    for (const NnDetector& network :
         {everyLayerNetwork(), verifierNetwork(firstVerifier(), randomBlobs(firstVerifier(), 9))}) {
        const int count = 3;
        std::vector<KZ::Image> images;
        std::vector<Floats> expected, found(count);
        for (int i = 0; i < count; ++i) {
            images.push_back(noise(network.getSize(), KZ::COLOR_MODE_MONO, 20u + unsigned(i)));
            expected.push_back(network.clone().detect(images.back()));
        }
        EXPECT_NE(expected[0], expected[1]);
        std::vector<NnDetector> runners = {network.clone(), network.clone(), network};
        std::vector<std::thread> threads;
        for (size_t i = 0; i < count; ++i)
            threads.emplace_back([&, i] {
                for (int turn = 0; turn < 20; ++turn) found[i] = runners[i].detect(images[i]);
            });
        for (std::thread& thread : threads) thread.join();
        EXPECT_EQ(expected, found);
        const NnDetector late = runners[2].clone();
        late.detect(images[2]);
        EXPECT_NE(network.getNetwork()[0]->getBlob().data(),
                  late.getNetwork()[0]->getBlob().data());
        EXPECT_TRUE(runners[0] == late);
    }
}

TEST(Network, ClonesLayersOfOneName) {
    NnDetector network;
    network.addLayer(KZ::SharedPtr<BaseLayer>(new DataLayer("twin")));
    network.addLayer(KZ::SharedPtr<BaseLayer>(new SigmoidLayer("twin")));
    network.addLayer(KZ::SharedPtr<BaseLayer>(new TangensLayer("twin")));
    network.joinLayers();
    Blob input(1, 1, 1, 2);
    input.setValue(3);
    const Floats expected = network.detect(input);
    EXPECT_EQ(expected, Floats(network.clone().detect(input)));
}

TEST(Network, EqualityCountsWhatFilesStore) {
    const auto ending = [](BaseLayer* last, const char* name = "n") {
        NnDetector network = chain();
        network.setName(name);
        network.addLayer(KZ::SharedPtr<BaseLayer>(last));
        return network;
    };
    const NnDetector pool = ending(new PoolingLayer(3, 2, "p"));
    NnDetector same = ending(new PoolingLayer(3, 2, "p"));
    same.setMultiplier(3);
    EXPECT_TRUE(pool == same);
    EXPECT_FALSE(pool == ending(new PoolingLayer(3, 3, "p")));
    EXPECT_FALSE(pool == ending(new ReluLayer("p")));
    EXPECT_FALSE(pool == ending(new PoolingLayer(3, 2, "p"), "other"));
    EXPECT_FALSE(pool == chain());
}
