#include "KZ_ColorConversion.h"

#include "KZ_MonoRow.h"
#include "KZ_PixelRows.h"

namespace KZ {

namespace {

// Byte positions of the channels; the green one is always the second. A pixel has DEPTH bytes.
struct Bgr {
    static const int R = 2, G = 1, B = 0, DEPTH = 3;
};
struct Rgb {
    static const int R = 0, G = 1, B = 2, DEPTH = 3;
};
struct Rgba {
    static const int R = 0, G = 1, B = 2, DEPTH = 4;
};

// The rows come as local pointers that do not alias, which is what lets the compiler vectorise.
using Row = unsigned char* __restrict;
using ConstRow = const unsigned char* __restrict;
using RowKernel = void (*)(ConstRow source, Row target, int n);

int luma(int r, int g, int b) {
    return 66 * r + 129 * g + 25 * b;
}

template <typename Order>
void setAlpha(unsigned char* pixel) {
    if (Order::DEPTH == 4) pixel[3] = 255;
}

void rgbaToMonoRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x)
        t[x] = static_cast<unsigned char>(16 + (luma(s[4 * x], s[4 * x + 1], s[4 * x + 2]) >> 8));
}

template <typename Order>
void colorToYuvRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x) {
        const unsigned char* p = s + Order::DEPTH * x;
        const int r = p[Order::R], g = p[Order::G], b = p[Order::B];
        t[3 * x] = static_cast<unsigned char>(16 + ((luma(r, g, b) + 128) >> 8));
        t[3 * x + 1] = static_cast<unsigned char>(128 + ((-38 * r - 74 * g + 112 * b + 128) >> 8));
        t[3 * x + 2] = static_cast<unsigned char>(128 + ((112 * r - 94 * g - 18 * b + 128) >> 8));
    }
}

template <typename Order>
void yuvToColorRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x) {
        const int c = 298 * s[3 * x] - 4768, d = s[3 * x + 1] - 128, e = s[3 * x + 2] - 128;
        unsigned char* p = t + Order::DEPTH * x;
        p[Order::R] = saturatedByte((c + 409 * e + 128) >> 8);
        p[Order::G] = saturatedByte((c - 100 * d - 210 * e + 128) >> 8);
        p[Order::B] = saturatedByte((c + 519 * d + 128) >> 8);
        setAlpha<Order>(p);
    }
}

template <typename From, typename To>
void reorderRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x) {
        const unsigned char* p = s + From::DEPTH * x;
        unsigned char* q = t + To::DEPTH * x;
        q[To::R] = p[From::R];
        q[To::G] = p[From::G];
        q[To::B] = p[From::B];
        setAlpha<To>(q);
    }
}

template <typename Order>
void monoToColorRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x) {
        unsigned char* p = t + Order::DEPTH * x;
        p[0] = p[1] = p[2] = s[x];
        setAlpha<Order>(p);
    }
}

void monoToYuvRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x) {
        t[3 * x] = static_cast<unsigned char>(16 + (s[x] * 220 >> 8));
        t[3 * x + 1] = t[3 * x + 2] = 128;
    }
}

void yuvToMonoRow(ConstRow s, Row t, int n) {
    for (int x = 0; x < n; ++x) t[x] = s[3 * x];
}

// The common frame of the conversions below, which have checked the source's mode.
void convert(const Image& source, Image& target, ColorMode mode, const Rect& rect,
             RowKernel kernel) {
    const Rect region = regionOf(source, rect);
    target.create(source.size(), mode);
    forRows<unsigned char, unsigned char>(source, target, region, kernel);
}

}  // namespace

void bgrToMono(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_BGR);
    convert(source, target, COLOR_MODE_MONO, rect, monoRowVariants().back().bgr);
}

void rgbToMono(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGB);
    convert(source, target, COLOR_MODE_MONO, rect, monoRowVariants().back().rgb);
}

void rgbaToMono(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGBA);
    convert(source, target, COLOR_MODE_MONO, rect, rgbaToMonoRow);
}

void yuvToMono(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_YUV);
    convert(source, target, COLOR_MODE_MONO, rect, yuvToMonoRow);
}

void bgrToYuv(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_BGR);
    convert(source, target, COLOR_MODE_YUV, rect, colorToYuvRow<Bgr>);
}

void rgbToYuv(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGB);
    convert(source, target, COLOR_MODE_YUV, rect, colorToYuvRow<Rgb>);
}

void rgbaToYuv(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGBA);
    convert(source, target, COLOR_MODE_YUV, rect, colorToYuvRow<Rgba>);
}

void monoToYuv(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    convert(source, target, COLOR_MODE_YUV, rect, monoToYuvRow);
}

void yuvToBgr(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_YUV);
    convert(source, target, COLOR_MODE_BGR, rect, yuvToColorRow<Bgr>);
}

void yuvToRgb(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_YUV);
    convert(source, target, COLOR_MODE_RGB, rect, yuvToColorRow<Rgb>);
}

void yuvToRgba(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_YUV);
    convert(source, target, COLOR_MODE_RGBA, rect, yuvToColorRow<Rgba>);
}

void bgrToRgb(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_BGR);
    convert(source, target, COLOR_MODE_RGB, rect, reorderRow<Bgr, Rgb>);
}

void rgbToBgr(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGB);
    convert(source, target, COLOR_MODE_BGR, rect, reorderRow<Rgb, Bgr>);
}

void rgbaToBgr(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGBA);
    convert(source, target, COLOR_MODE_BGR, rect, reorderRow<Rgba, Bgr>);
}

void bgrToRgba(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_BGR);
    convert(source, target, COLOR_MODE_RGBA, rect, reorderRow<Bgr, Rgba>);
}

void rgbToRgba(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_RGB);
    convert(source, target, COLOR_MODE_RGBA, rect, reorderRow<Rgb, Rgba>);
}

void monoToBgr(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    convert(source, target, COLOR_MODE_BGR, rect, monoToColorRow<Bgr>);
}

void monoToRgb(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    convert(source, target, COLOR_MODE_RGB, rect, monoToColorRow<Rgb>);
}

void monoToRgba(const Image& source, Image& target, const Rect& rect) {
    KZ_CHECK_COLOR_MODE(source, COLOR_MODE_MONO);
    convert(source, target, COLOR_MODE_RGBA, rect, monoToColorRow<Rgba>);
}

}  // namespace KZ
