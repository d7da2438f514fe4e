// The source form of networks. tests/nn/emit writes the network with every layer at build time,
// and what it writes is a part of this program.

#include <gtest/gtest.h>

#include <sstream>

#include "EveryLayer.h"
#include "NnSupport.h"

KZ::SharedPtr<NnDetector> every_layer_network();
extern "C" void every_layer_network(NnDetector& network);

using namespace testing_support;

TEST(NetworkSource, EmittedNetworkIsTheSame) {
    const KZ::SharedPtr<NnDetector> emitted = every_layer_network();
    NnDetector network = everyLayerNetwork();
    ASSERT_TRUE(network == *emitted);
    EXPECT_EQ(network.getOutputNames(), emitted->getOutputNames());
    EXPECT_EQ(emitted.get(), every_layer_network().get());
    NnDetector shallow;
    every_layer_network(shallow);
    EXPECT_EQ(emitted->getNetwork()[1].get(), shallow.getNetwork()[1].get());

    KZ::Image image(everyLayerSize(), KZ::COLOR_MODE_MONO);
    for (int i = 0; i < 120; ++i) image.data()[i] = static_cast<unsigned char>(i * 5);
    EXPECT_EQ(valuesOf(network.detect(image)), valuesOf(emitted->detect(image)));
    for (size_t i = 0; i < network.getOutputBlobs().size(); ++i)
        EXPECT_TRUE(network.getOutputBlobs()[i] == emitted->getOutputBlobs()[i]);
}

// A small network as a whole, letter for letter behind the comment block of ten lines.
TEST(NetworkSource, Text) {
    NnDetector network;
    network.setName("tiny net");
    network.addLayer(KZ::SharedPtr<BaseLayer>(new DataLayer("a-b>c")));
    network.addLayer(KZ::SharedPtr<BaseLayer>(new PReluLayer("act", blobOf(1, 1, 1, 1, {0.25f}))));
    network.joinLayers();
    network.setMeanValues({0.5f});
    network.setSize(KZ::Size(35, 33));
    network.setTrainLog("step 1\nstep 2");
    std::ostringstream stream;
    network.saveToCpp(stream, "tiny");
    const std::string text = stream.str(), end = " */\n";
    const size_t behind = text.find(end) + end.size();
    EXPECT_EQ(0u, text.find("/*\n"));
    EXPECT_EQ(12, std::count(text.begin(), text.begin() + static_cast<long>(behind), '\n'));
    EXPECT_EQ(R"(#include "NnDetector.h"
#ifdef __cplusplus
extern "C"
#endif //__cplusplus
// For exporting from a Windows DLL:
#ifdef WIN32
#   define DLL_DECLSPEC __declspec(dllexport)
#else
#   define DLL_DECLSPEC __attribute__ ((visibility ("default")))
#endif //WIN32
    DLL_DECLSPEC void tiny(NnDetector& detector);

namespace tinyNameSpace
{
DataLayer& a_b_c()
{
    static DataLayer value("a-b>c");
    return value;
}

KZ::Blob& act_slope()
{
    // num = 1
    // channels = 1
    // width = 1
    // height = 1
    static const float act_slope_data[] = 
    {
       0.25f    };
    static KZ::Blob blob;
    blob.init(1, 1, 1, 1, act_slope_data);
    return blob;
}

PReluLayer& act()
{
    static PReluLayer pReluLayer("act", act_slope());
    return pReluLayer;
}

NnDetector& tiny()
{
    static NnDetector nnDetector;

    if (nnDetector.isLoaded())
    {
        return nnDetector;
    }

    nnDetector.setName("tiny net");

    std::vector<float> meanValues;
    meanValues.push_back(0.5);
    nnDetector.setMeanValues(meanValues);

    // set layer #0:
    KZ::SharedPtr<BaseLayer> p_a_b_c(&a_b_c(), false);
    nnDetector.addLayer(p_a_b_c);
    // set layer #1:
    KZ::SharedPtr<BaseLayer> p_act(&act(), false);
    nnDetector.addLayer(p_act);
    p_act->addBottomLayer(p_a_b_c);
    nnDetector.setSize(KZ::Size(35, 33));

    return nnDetector;
}
} //tinyNameSpace

void tiny(NnDetector& nnDetector)
{
    nnDetector = tinyNameSpace::tiny();
}

KZ::SharedPtr<NnDetector> tiny()
{
    return KZ::SharedPtr<NnDetector>(&tinyNameSpace::tiny(), false);
}
// step 1
// step 2
)",
              text.substr(behind));
}

TEST(NetworkSource, LinesOfTheLayers) {
    std::ostringstream stream;
    everyLayerNetwork().saveToCpp(stream, "f");
    for (const char* line :
         {"convolutionLayer(conv_1_a_filter(), conv_1_a_bias(), \"conv-1>a\", 1, 1);\n",
          "    static  PoolingLayer  poolingLayer(3,2, \"pool\");\n",
          "    std::vector<float> a, b;\n    a.push_back(1.5);\n    a.push_back(-0.123456791);\n",
          "    static SliceLayer sliceLayer(\"slice_point\", 2);\n"
          "    sliceLayer.addSlicePoint(0, -4);\n",
          "    coeffs.push_back(1e-09);\n    static EltwiseLayer eltwiseLayer(\"eltwise\", "
          "EltwiseLayer::Operation::SUM, coeffs);\n",
          "    static SoftmaxLayer softmaxLayer(\"softmax\", 0.3);\n",
          "    static ContrastiveLayer ContrastiveLayer(\"contrast\");\n"}) {
        EXPECT_NE(std::string::npos, stream.str().find(line)) << line;
    }
}
