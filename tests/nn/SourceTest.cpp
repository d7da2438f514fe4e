// The source form of networks. tests/nn/emit writes the network with every layer at build time,
// and what it writes is a part of this program.

#include <gtest/gtest.h>

#include <cmath>
#include <sstream>

#include "EveryLayer.h"
#include "LogCapture.h"
#include "NnSupport.h"

KZ::SharedPtr<NnDetector> every_layer_network();
extern "C" void every_layer_network(NnDetector& network);

using namespace testing_support;

TEST(NetworkSource, EmittedNetworkIsTheSame) {
    const KZ::SharedPtr<NnDetector> emitted = every_layer_network();
    NnDetector network = everyLayerNetwork(), shallow;
    ASSERT_TRUE(network == *emitted);
    EXPECT_EQ(network.getOutputNames(), emitted->getOutputNames());
    EXPECT_EQ(emitted.get(), every_layer_network().get());
    every_layer_network(shallow);
    EXPECT_EQ(emitted->getNetwork()[1].get(), shallow.getNetwork()[1].get());

    const KZ::Image image = noise(everyLayerSize(), KZ::COLOR_MODE_MONO, 5);
    EXPECT_EQ(valuesOf(network.detect(image)), valuesOf(emitted->detect(image)));
    for (size_t i = 0; i < network.getOutputBlobs().size(); ++i)
        EXPECT_TRUE(network.getOutputBlobs()[i] == emitted->getOutputBlobs()[i]);
}

// What a file can hold and no source can say.
TEST(NetworkSource, RefusesWhatHasNoSource) {
    std::ostringstream source;
    for (const float value : {INFINITY, -INFINITY, NAN})
        EXPECT_EQ(0u, assertionOf([&] {
                          blobOf(1, 1, 1, 2, {1, value}).saveToCpp(source, "b");
                      }).find("no literal for "));
    const int openSlice[] = {0, 0, 2, 3, 0};  // of axis 2 from 3 to the end
    std::istringstream stream(std::string(reinterpret_cast<const char*>(openSlice), 20));
    KZ::ArchiveI archive(stream);
    archive.setVersion("Version 8");
    SliceLayer slice("l", 0);
    slice.serialize(archive);
    EXPECT_EQ("no source for an open slice\n", assertionOf([&] { slice.saveToCpp(source, "f"); }));
}

// The verifiers' sources in the tree show the rest, letter for letter.
TEST(NetworkSource, LettersOfTheParts) {
    NnDetector network = everyLayerNetwork();
    network.setTrainLog("step 1\nstep 2");
    std::ostringstream stream;
    network.saveToCpp(stream, "f");
    for (const char* part :
         {"    std::vector<float> a, b;\n    a.push_back(1.5);\n    a.push_back(-0.123456791);\n",
          "    sliceLayer.addSlicePoint(0, -4);\n", "EltwiseLayer::Operation::SUM, coeffs);\n",
          "    static SoftmaxLayer softmaxLayer(\"softmax\", 0.3);\n", "}\n// step 1\n// step 2\n"})
        EXPECT_NE(std::string::npos, stream.str().find(part)) << part;
}
