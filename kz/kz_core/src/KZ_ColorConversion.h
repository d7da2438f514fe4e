#pragma once

#include "KZ_Image.h"

// Conversions between image modes. Each takes a source of the mode in its name, creates the target
// at the source's full size and the target mode (its memory is reused when the geometry is the
// same), and converts the pixels of `rect`; the rest of the target keeps what it held. A rectangle
// of no width or height means the whole image. A source of another mode and a rectangle that sticks
// out are assertions, made before the target is touched. Source and target must be two images.

namespace KZ {

/// Studio-range luma 16 + ((66 R + 129 G + 25 B) >> 8), without a rounding term.
void bgrToMono(const Image& source, Image& target, const Rect& rect = Rect());
void rgbToMono(const Image& source, Image& target, const Rect& rect = Rect());
void rgbaToMono(const Image& source, Image& target, const Rect& rect = Rect());
void yuvToMono(const Image& source, Image& target, const Rect& rect = Rect());

/// Studio-range YUV, with a rounding term: Y may differ by one from what `bgrToMono` gives.
void bgrToYuv(const Image& source, Image& target, const Rect& rect = Rect());
void rgbToYuv(const Image& source, Image& target, const Rect& rect = Rect());
void rgbaToYuv(const Image& source, Image& target, const Rect& rect = Rect());
/// Maps grey 0 to 255 onto the studio range, with neutral chroma.
void monoToYuv(const Image& source, Image& target, const Rect& rect = Rect());

/// The inverse, saturated to 0 and 255; an alpha is 255.
void yuvToBgr(const Image& source, Image& target, const Rect& rect = Rect());
void yuvToRgb(const Image& source, Image& target, const Rect& rect = Rect());
void yuvToRgba(const Image& source, Image& target, const Rect& rect = Rect());

/// Reordered channels; an alpha is dropped or set to 255.
void bgrToRgb(const Image& source, Image& target, const Rect& rect = Rect());
void rgbToBgr(const Image& source, Image& target, const Rect& rect = Rect());
void rgbaToBgr(const Image& source, Image& target, const Rect& rect = Rect());
void bgrToRgba(const Image& source, Image& target, const Rect& rect = Rect());
void rgbToRgba(const Image& source, Image& target, const Rect& rect = Rect());

/// The grey value in all three colours; an alpha is 255.
void monoToBgr(const Image& source, Image& target, const Rect& rect = Rect());
void monoToRgb(const Image& source, Image& target, const Rect& rect = Rect());
void monoToRgba(const Image& source, Image& target, const Rect& rect = Rect());

/// value * scale, truncated and saturated to a byte.
void mono16ToMono(const Image& source, Image& target, float scale, const Rect& rect = Rect());
void mono16ToBgr(const Image& source, Image& target, float scale, const Rect& rect = Rect());
void mono16ToRgb(const Image& source, Image& target, float scale, const Rect& rect = Rect());
void mono16ToRgba(const Image& source, Image& target, float scale, const Rect& rect = Rect());

/// float(value) * scale.
void monoToFloat(const Image& source, Image& target, float scale, const Rect& rect = Rect());
void mono16ToFloat(const Image& source, Image& target, float scale, const Rect& rect = Rect());

/// offset + value * scale, truncated and saturated to a byte; a NaN gives 0.
void floatToMono(const Image& source, Image& target, float offset, float scale,
                 const Rect& rect = Rect());
void floatToBgr(const Image& source, Image& target, float offset, float scale,
                const Rect& rect = Rect());
/// The value as first component, 0 as second.
void floatToFloat2(const Image& source, Image& target, const Rect& rect = Rect());

/// Maps `minDepth` to 0 and `maxDepth` (which must be greater) to 255, truncated. Nearer gives 0;
/// farther wraps in the byte.
void depthToMono(const Image& source, Image& target, unsigned short minDepth,
                 unsigned short maxDepth, const Rect& rect = Rect());
/// False colours of `pixelToRGB`.
void depthToBgr(const Image& source, Image& target, unsigned short minDepth,
                unsigned short maxDepth, const Rect& rect = Rect());
void depthToRgb(const Image& source, Image& target, unsigned short minDepth,
                unsigned short maxDepth, const Rect& rect = Rect());

/// The false colour of one depth: from red at `minDepth` over yellow, green and cyan to blue at
/// `maxDepth`, which must be greater. Depths outside take the colour of the nearer end.
void pixelToRGB(unsigned short value, unsigned char& r, unsigned char& g, unsigned char& b,
                unsigned short minDepth, unsigned short maxDepth);

/// Any source mode that has a rule for the target mode; others are an assertion. A source of the
/// target mode is copied, and a rectangle then cut off at the image's border.
void toMono(const Image& source, Image& target, const Rect& rect = Rect());
void toBgr(const Image& source, Image& target, const Rect& rect = Rect());
void toRgb(const Image& source, Image& target, const Rect& rect = Rect());
void toRgba(const Image& source, Image& target, const Rect& rect = Rect());
void toYuv(const Image& source, Image& target, const Rect& rect = Rect());
/// The above by target mode, and the feature planes (RMCT, INTEGRAL, GRADIENT) of a mono source.
void toColorMode(const Image& source, Image& target, ColorMode mode, const Rect& rect = Rect());

}  // namespace KZ
