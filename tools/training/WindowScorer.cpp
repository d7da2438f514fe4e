#include "WindowScorer.h"

#include "KZ_IntegralImage.h"

namespace training {

WindowScorer::WindowScorer(const RingContent& ring, int cascade)
    : library_(ring), cascade_(library_.ring().baseClassifier(cascade)) {}

bool WindowScorer::passes(const Window& window, int& score) {
    if (cascade_.strongClassifiers.empty()) return true;
    KZ::Image base;
    base.createRef(const_cast<unsigned char*>(window.base.data()), window.baseSize,
                   KZ::COLOR_MODE_MONO);
    KZ::computeIntegral(base, integral_);
    const int strip = cascade_.monoSize.width;
    cascade_.activate(strip, strip, integral_.stripLength(), window.zoom, cascade_.monoSize);
    return cascade_.detect(window.rmct.data(), window.mono.data(), integral_.row<unsigned int>(0),
                           0, score);
}

}  // namespace training
