#pragma once

#include <ostream>
#include <string>
#include <vector>

#include "KZ_Image.h"
#include "KZ_ImagePyramid.h"

namespace KZ {

/// An image pyramid of a MONO frame with the RMCT transform of each layer.
class RmctPyramid {
public:
    /// Lays the layers out; bad values are assertions, see ImagePyramid::init.
    void init(unsigned int numLevels, float start, float step);
    /// Starts so low that `zoom` is in the middle of the ladder, but not below `minStart`.
    void initRelative(unsigned int numLevels, float zoom, float step, float minStart);
    /// Copies the frame, MONO, and marks all layers as not computed.
    void setMono(const Image& mono);

    void compute();
    /// Computes every layer for `rect`, in pixels of the frame.
    void compute(const Rect& rect);
    void computeLayer(int layer);
    void computeLayer(int layer, const Rect& rect);
    /// Gives the memory of all layers back; the frame stays.
    void freeMemory();

    unsigned int numLayers() const { return pyramid_.numLayers(); }
    // A layer out of bounds is an assertion; one that is not computed may be any image.
    const Image& getMono(int layer) const { return pyramid_.getMono(layer); }
    const Image& getRmct(int layer) const;
    float zoomAtLayer(int layer) const;
    int layerAtZoom(float zoom) const { return pyramid_.layerAtZoom(zoom); }

    /// Writes directory + "/mono_" or "/rmct_" + number + extension for each layer.
    void save(const std::string& directory, const std::string& extension) const;
    bool operator==(const RmctPyramid& other) const;
    bool operator!=(const RmctPyramid& other) const { return !(*this == other); }

private:
    Image mono_;
    ImagePyramid pyramid_;
    std::vector<Image> rmct_;
};

std::ostream& operator<<(std::ostream& stream, const RmctPyramid& pyramid);

}  // namespace KZ
