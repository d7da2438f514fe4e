#pragma once

#include <torch/torch.h>

#include <vector>

#include "VerifierDesign.h"

namespace training {

/// A verifier in the tensors of the training library, on one thread. All values are those of
/// `buildVerifier`, in its order.
class TorchVerifier {
public:
    explicit TorchVerifier(const VerifierDesign& design);

    void setValues(const std::vector<float>& values);
    /// Margins "palm" minus "no palm" of `count` inputs, one after another in memory.
    std::vector<float> margins(const float* inputs, int count);
    /// Both logits of each input.
    std::vector<float> logits(const float* inputs, int count);
    /// The loss summed over the inputs; adds its gradient to `gradient`. Labels are 0 or 1.
    double addGradient(const float* inputs, const int64_t* labels, int count,
                       std::vector<float>& gradient);

private:
    torch::Tensor forward(const float* inputs, int count);

    const VerifierDesign& design_;
    std::vector<torch::Tensor> tensors_;
};

}  // namespace training
