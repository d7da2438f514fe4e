#pragma once

#include <string>
#include <vector>

#include "KZ_BaseSize.h"
#include "NnDetector.h"

namespace training {

/// One convolution of a verifier, and the activation with one slope a filter that follows it.
struct ConvolutionShape {
    const char* name;
    const char* activation;  ///< null: none
    int filters, channels, height, width, stride, pad;

    int weights() const { return filters * channels * height * width; }
    /// Filters, biases and slopes.
    int values() const { return weights() + filters * (activation ? 2 : 1); }
};

/// A network that tells palms from other patches: a chain of convolutions that ends in the two
/// logits of "no palm" and "palm".
struct VerifierDesign {
    std::string name;
    KZ::Size input;
    std::vector<ConvolutionShape> convolutions;

    int values() const;
};

/// The first verifier of the detector's chain (0) and the second (1).
const VerifierDesign& verifierDesign(int number);
constexpr int VERIFIERS = 2;

/// The library's network with these values: for each convolution in turn its filters (in the order
/// filter, channel, row, column), its biases and the slopes of its activation.
NnDetector buildVerifier(const VerifierDesign& design, const std::vector<float>& values);

/// Values of a network for inputs of `scale * (x - centre)`, made into those of a network that
/// gives the same for `x`. The first convolution must have no padding.
void foldInputScale(const VerifierDesign& design, float scale, float centre,
                    std::vector<float>& values);

/// Adds `margin` to what the network says for "palm" minus what it says for "no palm".
void shiftMargin(float margin, std::vector<float>& values);

/// The nearest value of six significant digits, so that the network file and the digits of the
/// generated source hold the same bits. Magnitudes that files read back as 0 become 0.
float sixDigits(float value);

}  // namespace training
