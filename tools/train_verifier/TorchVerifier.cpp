#include "TorchVerifier.h"

#include <ATen/Parallel.h>

namespace training {

namespace {

/// The share of the truth that goes to the other class: keeps doubtful labels from counting more
/// than all others.
constexpr double LABEL_SMOOTHING = 0.02;

}  // namespace

TorchVerifier::TorchVerifier(const VerifierDesign& design) : design_(design) {
    for (const ConvolutionShape& s : design.convolutions) {
        tensors_.push_back(torch::zeros({s.filters, s.channels, s.height, s.width})
                               .contiguous(at::MemoryFormat::ChannelsLast));
        tensors_.push_back(torch::zeros({s.filters}));
        if (s.activation) tensors_.push_back(torch::zeros({s.filters}));
    }
    for (torch::Tensor& tensor : tensors_) tensor.set_requires_grad(true);
}

void TorchVerifier::setValues(const std::vector<float>& values) {
    const torch::NoGradGuard noGradient;
    float* next = const_cast<float*>(values.data());
    for (torch::Tensor& tensor : tensors_) {
        tensor.copy_(torch::from_blob(next, tensor.sizes()));
        next += tensor.numel();
    }
}

torch::Tensor TorchVerifier::forward(const float* inputs, int count) {
    // Threads of the library within threads of ours would only wait for each other.
    at::set_num_threads(1);
    torch::Tensor x = torch::from_blob(const_cast<float*>(inputs),
                                       {count, 1, design_.input.height, design_.input.width})
                          .contiguous(at::MemoryFormat::ChannelsLast);
    auto tensor = tensors_.begin();
    for (const ConvolutionShape& s : design_.convolutions) {
        const torch::Tensor& filter = *tensor++;
        x = torch::conv2d(x, filter, *tensor++, s.stride, s.pad);
        if (s.activation) x = torch::prelu(x, *tensor++);
    }
    return x.flatten(1);
}

std::vector<float> TorchVerifier::logits(const float* inputs, int count) {
    const torch::NoGradGuard noGradient;
    const torch::Tensor out = forward(inputs, count).contiguous();
    return {out.data_ptr<float>(), out.data_ptr<float>() + out.numel()};
}

std::vector<float> TorchVerifier::margins(const float* inputs, int count) {
    const std::vector<float> pairs = logits(inputs, count);
    std::vector<float> margins(count);
    for (int i = 0; i < count; ++i) margins[i] = pairs[2 * i + 1] - pairs[2 * i];
    return margins;
}

double TorchVerifier::addGradient(const float* inputs, const int64_t* labels, int count,
                                  std::vector<float>& gradient) {
    const torch::Tensor target =
        torch::from_blob(const_cast<int64_t*>(labels), {count}, torch::kLong);
    const torch::Tensor loss = torch::cross_entropy_loss(forward(inputs, count), target, {},
                                                         at::Reduction::Sum, -100, LABEL_SMOOTHING);
    loss.backward();
    float* next = gradient.data();
    for (torch::Tensor& tensor : tensors_) {
        const torch::Tensor part = tensor.grad().contiguous();
        const float* from = part.data_ptr<float>();
        for (int64_t i = 0; i < part.numel(); ++i) *next++ += from[i];
        tensor.mutable_grad() = torch::Tensor();
    }
    return loss.item<double>();
}

}  // namespace training
