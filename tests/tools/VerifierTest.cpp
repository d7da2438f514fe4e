#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "DataFolder.h"
#include "Failure.h"
#include "VerifierDesign.h"
#include "VerifierFile.h"

namespace {

using namespace training;

std::vector<float> randomValues(int verifier) {
    Random random(40 + static_cast<uint64_t>(verifier));
    std::vector<float> values(static_cast<size_t>(verifierDesign(verifier).values()));
    for (float& value : values) value = static_cast<float>(random.uniform(-0.3, 0.3));
    return values;
}

/// Both logits for a blob of the network's size.
std::vector<float> logits(const NnDetector& network, KZ::Blob input) {
    return network.detect(input);
}

KZ::Blob randomInput(const KZ::Size& size, float scale, float centre) {
    KZ::Blob blob(1, 1, size.height, size.width);
    Random random(5);
    for (int i = 0; i < blob.size(); ++i) {
        blob.data()[i] = scale * (static_cast<float>(random.unit()) - centre);
    }
    return blob;
}

TEST(Verifier, FileHoldsTheSameBits) {
    const int counts[VERIFIERS] = {8472, 13352};
    TemporaryFolder folder;
    for (int i = 0; i < VERIFIERS; ++i) {
        std::vector<float> values = randomValues(i);
        ASSERT_EQ(static_cast<size_t>(counts[i]), values.size());
        for (float& value : values) value = sixDigits(value);
        const NnDetector network = buildVerifier(verifierDesign(i), values);
        const std::string path = networkPath(folder.path(), i);
        writeVerifier(network, path);
        const NnDetector read = readVerifier(i, path);
        EXPECT_TRUE(network == read);
        const KZ::Blob input = randomInput(read.getSize(), 1, 0);
        EXPECT_EQ(logits(network, input), logits(read, input));
    }
}

TEST(Verifier, RefusesOtherNetworks) {
    TemporaryFolder folder;
    EXPECT_THROW(buildVerifier(verifierDesign(0), randomValues(1)), Failure);
    EXPECT_THROW(readVerifier(0, folder.path("absent.nn")), Failure);
    const std::string path = networkPath(folder.path(), 1);
    writeVerifier(buildVerifier(verifierDesign(1), randomValues(1)), path);
    EXPECT_THROW(readVerifier(0, path), Failure);
    EXPECT_THROW(writeVerifier(readVerifier(1, path), folder.path("absent/x.nn")), Failure);
    EXPECT_THROW(emitVerifiers(folder.path(), folder.path()), Failure) << "the first is missing";
}

TEST(Verifier, FoldedScaleAndShiftedMargin) {
    for (int i = 0; i < VERIFIERS; ++i) {
        std::vector<float> values = randomValues(i);
        const VerifierDesign& design = verifierDesign(i);
        const std::vector<float> scaled =
            logits(buildVerifier(design, values), randomInput(design.input, 4, 0.5f));
        foldInputScale(design, 4, 0.5f, values);
        const KZ::Blob input = randomInput(design.input, 1, 0);
        const std::vector<float> folded = logits(buildVerifier(design, values), input);
        shiftMargin(1.5f, values);
        const std::vector<float> shifted = logits(buildVerifier(design, values), input);
        for (int k = 0; k < 2; ++k) {
            EXPECT_NEAR(scaled[k], folded[k], 1e-5 * (1 + std::fabs(scaled[k])));
        }
        EXPECT_NEAR(folded[1] - folded[0] + 1.5f, shifted[1] - shifted[0], 1e-5);
    }
}

}  // namespace
