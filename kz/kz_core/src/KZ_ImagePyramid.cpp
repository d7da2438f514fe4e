#include "KZ_ImagePyramid.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "KZ_Check.h"
#include "KZ_ResizeImage.h"
#include "KZ_Truncate.h"

namespace KZ {

namespace {

bool isSameZoom(float a, float b) {
    return std::fabs(a - b) < MAX_ZOOM_ERROR;
}

Rect zoomedRect(const Rect& rect, float zoom) {
    return truncatedToInt(
        RectF(static_cast<float>(rect.left) / zoom, static_cast<float>(rect.top) / zoom,
              static_cast<float>(rect.right) / zoom, static_cast<float>(rect.bottom) / zoom));
}

bool canHalve(const Image& image) {
    return image.width() >= 2 && image.height() > 1;
}

// Fresh memory is cleared: cells outside the rectangle are neighbours of cells inside it. A header
// without pixels is what running out of memory left.
void createCleared(Image& image, const Size& size, ColorMode mode) {
    if (image.size() == size && image.colorMode() == mode && image.data()) return;
    image.create(size, mode);
    zero(image);
}

void markNotComputed(std::vector<ImagePyramidLayer>& layers) {
    for (ImagePyramidLayer& layer : layers) layer.computed = false;
}

void freeLayers(std::vector<ImagePyramidLayer>& layers) {
    for (ImagePyramidLayer& layer : layers) layer.image.reset();
    markNotComputed(layers);
}

ImagePyramidLayer layerOfZoom(float zoom) {
    ImagePyramidLayer layer;
    layer.zoom = zoom;
    return layer;
}

}  // namespace

void ImagePyramid::init(unsigned int numLevels, float start, float step) {
    KZ_ASSERT(numLevels >= 1, "numlevels must be >= 1");
    KZ_ASSERT(start >= 1.f, "start must be >= 1");
    KZ_ASSERT(step > 1.f, "step must be > 1, " << step);
    start_ = start;
    step_ = step;
    pyramid_.assign(numLevels, ImagePyramidLayer());
    init();

    pyramidHalfStep_.clear();
    const float limit = pyramid_.back().zoom + MAX_ZOOM_ERROR;
    for (float zoom = 1; zoom < limit; zoom *= 2) pyramidHalfStep_.push_back(layerOfZoom(zoom));
    baseIsRef_ = false;
}

void ImagePyramid::init() {
    markNotComputed(pyramid_);
    markNotComputed(pyramidHalfStep_);
    // Computing may have snapped a zoom to a power of two.
    float zoom = start_;
    for (ImagePyramidLayer& layer : pyramid_) {
        layer.zoom = zoom;
        zoom *= step_;
    }
}

void ImagePyramid::compute(const Image& image, bool ref) {
    for (int layer = 0; layer < static_cast<int>(numLayers()); ++layer)
        computeMonoLayer(image, layer, ref);
}

void ImagePyramid::computeMonoLayer(const Image& image, int layer, bool ref) {
    computeMonoLayer(image, layer, image.rect(), ref);
}

void ImagePyramid::computeMonoLayer(const Image& image, int layer, const Rect& rect, bool ref) {
    KZ_ASSERT(pyramidHalfStep_.size(), "Not inited pyramid");
    KZ_ASSERT(0 <= layer, "incorrect layer: " << layer);
    KZ_ASSERT(layer < (int)pyramid_.size(), "incorrect layer: " << layer);
    KZ_CHECK_COLOR_MODE(image, COLOR_MODE_MONO);
    ImagePyramidLayer& visible = pyramid_[static_cast<size_t>(layer)];
    if (visible.computed) return;
    computeBase(image, ref);
    if (layer == 0 && std::fabs(visible.zoom) < MAX_ZOOM_ERROR) {
        visible.image.createRef(pyramidHalfStep_[0].image);
        visible.computed = true;
        return;
    }
    const ImagePyramidLayer& base = halvedBelow(visible.zoom, rect);
    if (isSameZoom(visible.zoom, base.zoom)) {
        if (base.image.width() < 1) {
            visible.zoom = 0;
            return;
        }
        visible.image.createRef(base.image);
        visible.zoom = base.zoom;
    } else if (canHalve(base.image)) {
        zoomSkipImage(base.image, visible.image, visible.zoom / base.zoom,
                      zoomedRect(rect, base.zoom));
    } else {
        visible.image = base.image;
    }
    visible.computed = true;
}

void ImagePyramid::computeBase(const Image& image, bool ref) {
    ImagePyramidLayer& base = pyramidHalfStep_[0];
    if (base.computed) return;
    if (ref) {
        base.image.createRef(image);
    } else {
        if (baseIsRef_) base.image.reset();
        base.image = image;
    }
    baseIsRef_ = ref;
    base.computed = true;
}

// Computes the powers of two up to `zoom` and returns the last of them.
const ImagePyramidLayer& ImagePyramid::halvedBelow(float zoom, const Rect& rect) {
    size_t h = 1;
    for (; h < pyramidHalfStep_.size() && pyramidHalfStep_[h].zoom < zoom + MAX_ZOOM_ERROR; ++h) {
        ImagePyramidLayer& layer = pyramidHalfStep_[h];
        if (layer.computed) continue;
        const Image& below = pyramidHalfStep_[h - 1].image;
        if (canHalve(below)) {
            createCleared(layer.image, Size(below.width() / 2, below.height() / 2),
                          below.colorMode());
            scaleHalfImage(below, layer.image, zoomedRect(rect, layer.zoom * 0.5f));
        } else {
            layer.image = below;
        }
        layer.computed = true;
    }
    return pyramidHalfStep_[h - 1];
}

void ImagePyramid::swap(ImagePyramid& other) {
    std::swap(start_, other.start_);
    std::swap(step_, other.step_);
    pyramid_.swap(other.pyramid_);
    pyramidHalfStep_.swap(other.pyramidHalfStep_);
    std::swap(baseIsRef_, other.baseIsRef_);
}

void ImagePyramid::freeMemory() {
    freeLayers(pyramid_);
    freeLayers(pyramidHalfStep_);
    baseIsRef_ = false;
}

int ImagePyramid::layerAtZoom(float zoom) const {
    KZ_ASSERT(numLayers(), "pyramid has no layers");
    if (numLayers() == 1) return 0;
    const float z = zoom > 1.0f ? zoom : 1.0f;
    const float ratio = z / pyramid_[0].zoom;
    const float step = pyramid_[1].zoom / pyramid_[0].zoom;
    const double q = std::log(static_cast<double>(ratio)) / std::log(static_cast<double>(step));
    const double nearest = q > 0 ? std::floor(q + 0.5) : std::ceil(q - 0.5);
    // Two layers that were snapped to the same zoom make the quotient infinite or no number.
    return truncatedToInt(
        static_cast<float>(std::min(nearest, static_cast<double>(numLayers()) - 1)));
}

void ImagePyramid::checkLayer(int layer) const {
    KZ_ASSERT(0 <= layer && layer < (int)pyramid_.size(), "Layer out of bounds: " << layer);
}

float ImagePyramid::zoomAtLayer(int layer) const {
    checkLayer(layer);
    return pyramid_[static_cast<size_t>(layer)].zoom;
}

bool ImagePyramid::isComputedLayer(int layer) const {
    checkLayer(layer);
    return pyramid_[static_cast<size_t>(layer)].computed;
}

const Image& ImagePyramid::getMono(int layer) const {
    checkLayer(layer);
    return pyramid_[static_cast<size_t>(layer)].image;
}

std::ostream& operator<<(std::ostream& stream, const ImagePyramid& pyramid) {
    stream << "NumLayers = " << pyramid.numLayers() << "\n";
    for (int layer = 0; layer < static_cast<int>(pyramid.numLayers()); ++layer)
        stream << "    layer #" << layer << pyramid.getMono(layer);
    return stream;
}

}  // namespace KZ
