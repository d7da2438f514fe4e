#pragma once

#include <ostream>
#include <vector>

#include "KZ_Image.h"

namespace KZ {

/// Two zooms closer than this are the same zoom.
const float MAX_ZOOM_ERROR = 0.03f;

struct ImagePyramidLayer {
    float zoom = 0;
    Image image;
    bool computed = false;
};

/// MONO images of one picture at zooms start, start * step, ... (a layer of zoom z is smaller by
/// z), made layer by layer as they are asked for: the picture is halved again and again, and a
/// layer skips pixels of the halved picture below it. Layers at a power of two share its pixels.
class ImagePyramid {
public:
    ImagePyramid() = default;

    /// Lays the ladder out: `numLevels` >= 1, `start` >= 1, `step` > 1; else an assertion, and the
    /// ladder stays as it was.
    void init(unsigned int numLevels, float start, float step);
    /// Marks all layers as not computed, for the next picture; their memory is kept for it.
    void init();
    /// Computes every layer of a MONO image.
    void compute(const Image& image, bool ref);
    /// Computes a layer, unless it is computed. `rect` is in pixels of `image`; halved pictures are
    /// made inside it alone, so one rectangle serves all layers of a picture. With `ref` the
    /// pyramid refers to the pixels of `image`, which must then live as long; else it copies them.
    /// A layer whose zoom is within MAX_ZOOM_ERROR of a power of two takes that zoom.
    void computeMonoLayer(const Image& image, int layer, const Rect& rect, bool ref);
    void computeMonoLayer(const Image& image, int layer, bool ref);
    void swap(ImagePyramid& other);
    /// Gives the memory of all layers back; they are no longer computed.
    void freeMemory();

    unsigned int numLayers() const { return static_cast<unsigned int>(pyramid_.size()); }
    /// The nearest layer by ratio, at most the last; negative for a zoom well below the first.
    int layerAtZoom(float zoom) const;
    // A layer out of bounds is an assertion.
    float zoomAtLayer(int layer) const;
    bool isComputedLayer(int layer) const;
    const Image& getMono(int layer) const;

private:
    void checkLayer(int layer) const;
    void computeBase(const Image& image, bool ref);
    const ImagePyramidLayer& halvedBelow(float zoom, const Rect& rect);

    float start_ = 0;
    float step_ = 0;
    std::vector<ImagePyramidLayer> pyramid_;
    // Zooms 1, 2, 4, ... as far as the last layer of pyramid_.
    std::vector<ImagePyramidLayer> pyramidHalfStep_;
    // Whether the picture of zoom 1 is someone else's memory, which no copy may overwrite.
    bool baseIsRef_ = false;
};

std::ostream& operator<<(std::ostream& stream, const ImagePyramid& pyramid);

}  // namespace KZ
