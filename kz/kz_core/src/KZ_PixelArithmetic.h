#pragma once

#include <vector>

#include "KZ_Image.h"

// Operations pixel by pixel. The source is MONO where nothing else is said; the target is created
// at the source's size and mode, and only the pixels of `rect` are written: a rectangle of no width
// or height means the whole image. Two sources must agree in mode and size. Assertions are made
// before the target is touched. A target may be one of the sources. Below, s, s1, s2 are source
// values, t the target value, and products with a float are truncated.

namespace KZ {

/// t = s + v, limited to 0 ... 255.
void addValue(const Image& source, Image& target, unsigned char v, const Rect& rect = Rect());
void addValue(const Image& source, Image& target, int v, const Rect& rect = Rect());
/// FLOAT: t = s + v.
void addValueF(const Image& source, Image& target, float v, const Rect& rect = Rect());
/// t = max(s - v, 0).
void subtractValue(const Image& source, Image& target, unsigned char v, const Rect& rect = Rect());
/// t = s * k, limited to 0 ... 255.
void multiplyValue(const Image& source, Image& target, float k, const Rect& rect = Rect());
/// BGR or RGB: the same on each channel.
void multiplyValueColor(const Image& source, Image& target, float k, const Rect& rect = Rect());
/// MONO16: t = s * k, limited to 0 ... 65535.
void multiplyValueS(const Image& source, Image& target, float k, const Rect& rect = Rect());
/// FLOAT: t = s * k.
void multiplyValueF(const Image& source, Image& target, float k, const Rect& rect = Rect());
/// t = k * s + b, limited to 0 ... 255.
void linearTransform(const Image& source, Image& target, float k, float b,
                     const Rect& rect = Rect());
/// t = min(s, v).
void minImage(const Image& source, Image& target, unsigned char v, const Rect& rect = Rect());
/// t = 255 - s.
void invertMono(const Image& source, Image& target, const Rect& rect = Rect());

/// t = s < v ? 0 : 255.
void threshold(const Image& source, Image& target, unsigned int v, const Rect& rect = Rect());
/// t = low <= s < high ? 255 : 0.
void threshold(const Image& source, Image& target, unsigned int low, unsigned int high,
               const Rect& rect = Rect());
/// The same in place.
void threshold(Image& image, unsigned int v, const Rect& rect = Rect());
void threshold(Image& image, unsigned int low, unsigned int high, const Rect& rect = Rect());
/// DEPTH to MONO: t = low <= s < high ? 255 : 0.
void depthThreshold(const Image& source, Image& target, unsigned int low, unsigned int high,
                    const Rect& rect = Rect());
/// t = 255 where s exceeds the mean of the square of side 2 * `radius` + 1 around the pixel, cut
/// off at the image's border, by more than `offset`; else 0. `radius` must not be negative.
void adaptiveImage(const Image& source, Image& target, int radius, int offset,
                   const Rect& rect = Rect());

/// t = min(s1 + s2, 255).
void addImagesMono(const Image& source1, const Image& source2, Image& target,
                   const Rect& rect = Rect());
/// MONO16: t = min(s1 + s2, 65535).
void addImagesMono16(const Image& source1, const Image& source2, Image& target,
                     const Rect& rect = Rect());
/// FLOAT: t = s1 + s2. `addImagesF` is the same under its short name.
void addImagesFloat(const Image& source1, const Image& source2, Image& target,
                    const Rect& rect = Rect());
void addImagesF(const Image& source1, const Image& source2, Image& target,
                const Rect& rect = Rect());
/// The sum of MONO, MONO16 or FLOAT images by the rules above; other modes are an assertion.
void addImages(const Image& source1, const Image& source2, Image& target,
               const Rect& rect = Rect());
/// t = max(s1 - s2, 0).
void subtractImages(const Image& source1, const Image& source2, Image& target,
                    const Rect& rect = Rect());
/// FLOAT: t = s1 - s2.
void subtractImagesF(const Image& source1, const Image& source2, Image& target,
                     const Rect& rect = Rect());
/// FLOAT: t = s1 * s2; MONO: t = s1 * s2 / 255, truncated; other modes are an assertion.
void multiplyImages(const Image& source1, const Image& source2, Image& target,
                    const Rect& rect = Rect());
/// t = min(s1, s2).
void minImage(const Image& source1, const Image& source2, Image& target, const Rect& rect = Rect());
/// MONO pairs: t = |s1 - s2|; BGR pairs: the mean of the three channels' differences, truncated.
/// The target is MONO. Other modes are an assertion.
void absDiff(const Image& source1, const Image& source2, Image& target, const Rect& rect = Rect());
/// The blend s1 * (1 - k) + s2 * k in steps of 1/256, truncated; k lies in 0 ... 1.
void interpolateImages(const Image& source1, const Image& source2, Image& target, float k,
                       const Rect& rect = Rect());
void interpolateImagesBgr(const Image& source1, const Image& source2, Image& target, float k,
                          const Rect& rect = Rect());

/// Sum of the pixels of a MONO image.
uint64_t imageSum(const Image& image, const Rect& rect = Rect());
/// The sum divided by the number of pixels, both as floats.
float imageMean(const Image& image, const Rect& rect = Rect());
/// The mean of each channel of an image of 8-bit channels (MONO, RMCT, GRADIENT, BGR, RGB, YUV,
/// RGBA), truncated to a byte; writes `image.depth()` bytes to `out`. The area must not be empty.
void imageMean(const Image& image, unsigned char* out, const Rect& rect = Rect());
/// The largest pixel; 0 for an image of no pixels.
unsigned char imageMax(const Image& image, const Rect& rect = Rect());
/// Position of the largest or smallest pixel of a MONO, MONO16, DEPTH or FLOAT image, the first in
/// reading order among equals; other modes and an image of no pixels are assertions.
Point findGlobalMaximum(const Image& image, const Rect& rect = Rect());
Point findGlobalMinimum(const Image& image, const Rect& rect = Rect());
/// The extremum near pixel `p` of such an image to a fraction of a pixel: the vertex of the
/// parabola through the pixel and its two neighbours, for each axis alone, at most half a pixel
/// off. On the image's border, and where the three values are on a line, the axis stays at `p`.
PointF findPreciseLocalExtremum(const Image& image, const Point& p);

/// The channels of a BGR, RGB, YUV or RGBA image as MONO images of its size, in byte order; other
/// modes of one byte a pixel give one channel.
void splitChannels(const Image& source, std::vector<Image>& channels);
/// The reverse: as many MONO images of one size as `mode` has bytes.
void mergeChannels(const std::vector<Image>& channels, Image& target, ColorMode mode);

/// t = s + noise, rounded and limited to 0 ... 255: uniform from -amplitude to amplitude, or normal
/// with deviation `sigma`. Draws from the library's generator.
void addWhiteNoise(const Image& source, Image& target, float amplitude, const Rect& rect = Rect());
void addGaussianNoise(const Image& source, Image& target, float sigma, const Rect& rect = Rect());

}  // namespace KZ
