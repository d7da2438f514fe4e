#include "KZ_RmctPyramid.h"

#include <algorithm>
#include <cmath>

#include "KZ_Check.h"
#include "KZ_RmctTransform.h"
#include "KZ_Truncate.h"

namespace KZ {

void RmctPyramid::init(unsigned int numLevels, float start, float step) {
    KZ_ASSERT(step >= 0, "Value of step must be positive");
    pyramid_.init(numLevels, start, step);
    rmct_.resize(numLevels);
}

void RmctPyramid::initRelative(unsigned int numLevels, float zoom, float step, float minStart) {
    const double start = static_cast<double>(zoom) /
                         std::pow(static_cast<double>(step), static_cast<double>(numLevels >> 1));
    init(numLevels, static_cast<float>(std::max(start, static_cast<double>(minStart))), step);
}

void RmctPyramid::setMono(const Image& mono) {
    KZ_CHECK_CREATED(mono);
    KZ_CHECK_COLOR_MODE(mono, COLOR_MODE_MONO);
    mono_ = mono;
    pyramid_.init();
}

void RmctPyramid::compute() {
    compute(mono_.rect());
}

void RmctPyramid::compute(const Rect& rect) {
    for (int layer = 0; layer < static_cast<int>(numLayers()); ++layer) computeLayer(layer, rect);
}

void RmctPyramid::computeLayer(int layer) {
    computeLayer(layer, mono_.rect());
}

void RmctPyramid::computeLayer(int layer, const Rect& rect) {
    KZ_ASSERT(layer >= 0 && layer < (int)numLayers(),
              "Number of layer must be positive, layer = " << layer);
    if (pyramid_.isComputedLayer(layer)) return;
    pyramid_.computeMonoLayer(mono_, layer, rect, true);
    const float zoom = zoomAtLayer(layer);
    const RectF zoomed(static_cast<float>(rect.left) / zoom, static_cast<float>(rect.top) / zoom,
                       static_cast<float>(rect.right) / zoom,
                       static_cast<float>(rect.bottom) / zoom);
    computeRmct(getMono(layer), rmct_[static_cast<size_t>(layer)], truncatedToInt(zoomed));
}

void RmctPyramid::freeMemory() {
    pyramid_.freeMemory();
    for (Image& rmct : rmct_) rmct.reset();
}

const Image& RmctPyramid::getRmct(int layer) const {
    KZ_ASSERT_GE(layer, 0);
    KZ_ASSERT_LT(layer, (int)numLayers());
    return rmct_[static_cast<size_t>(layer)];
}

float RmctPyramid::zoomAtLayer(int layer) const {
    KZ_ASSERT_GE(layer, 0);
    KZ_ASSERT_LT(layer, (int)numLayers());
    return pyramid_.zoomAtLayer(layer);
}

void RmctPyramid::save(const std::string& directory, const std::string& extension) const {
    for (int layer = 0; layer < static_cast<int>(numLayers()); ++layer) {
        const std::string name = std::to_string(layer) + extension;
        getMono(layer).save(directory + "/mono_" + name);
        getRmct(layer).save(directory + "/rmct_" + name);
    }
}

bool RmctPyramid::operator==(const RmctPyramid& other) const {
    if (numLayers() != other.numLayers()) return false;
    for (int layer = 0; layer < static_cast<int>(numLayers()); ++layer)
        if (getMono(layer) != other.getMono(layer) || getRmct(layer) != other.getRmct(layer))
            return false;
    return true;
}

std::ostream& operator<<(std::ostream& stream, const RmctPyramid& pyramid) {
    stream << "NumLayers = " << pyramid.numLayers() << "\n";
    for (int layer = 0; layer < static_cast<int>(pyramid.numLayers()); ++layer)
        stream << "    layer #" << layer << pyramid.getRmct(layer);
    return stream;
}

}  // namespace KZ
