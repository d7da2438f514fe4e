#include "Window.h"

#include <algorithm>

namespace training {

namespace {

std::vector<uint8_t> cut(const KZ::Image& image, const KZ::Point& corner, const KZ::Size& size) {
    std::vector<uint8_t> pixels;
    pixels.reserve(static_cast<size_t>(size.width) * size.height);
    for (int y = 0; y < size.height; ++y) {
        const unsigned char* row = image.data(corner.x, corner.y + y);
        pixels.insert(pixels.end(), row, row + size.width);
    }
    return pixels;
}

}  // namespace

Window cutWindow(const KZ::Image& view, const KZ::RmctPyramid& pyramid, int layer,
                 const KZ::Point& corner, const KZ::Size& size) {
    Window window;
    window.zoom = pyramid.zoomAtLayer(layer);
    window.rmct = cut(pyramid.getRmct(layer), corner, size);
    window.mono = cut(pyramid.getMono(layer), corner, size);
    // The scan finds a window's place in the view with these same truncations.
    const auto atBase = [&](int v) {
        return static_cast<int>(static_cast<float>(v) * window.zoom);
    };
    const KZ::Point origin(atBase(corner.x), atBase(corner.y));
    window.baseSize = KZ::Size(atBase(size.width), atBase(size.height));
    window.base = cut(view, origin, window.baseSize);
    return window;
}

}  // namespace training
