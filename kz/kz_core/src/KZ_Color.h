#pragma once

#include <cstdint>

#include "KZ_ColorMode.h"

namespace KZ {

/// One word r << 24 | g << 16 | b << 8 | a.
class Color {
public:
    constexpr explicit Color(uint32_t word) : word_(word) {}
    constexpr Color(unsigned char r, unsigned char g, unsigned char b, unsigned char a)
        : word_(static_cast<uint32_t>(r) << 24 | static_cast<uint32_t>(g) << 16 |
                static_cast<uint32_t>(b) << 8 | a) {}

    constexpr int r() const { return static_cast<int>(word_ >> 24); }
    constexpr int g() const { return static_cast<int>(word_ >> 16 & 255); }
    constexpr int b() const { return static_cast<int>(word_ >> 8 & 255); }
    constexpr int a() const { return static_cast<int>(word_ & 255); }
    constexpr uint32_t word() const { return word_; }

    /// The word whose low bytes, lowest first, are a pixel of `mode`: MONO, BGR, RGB, RGBA or YUV;
    /// any other mode is an assertion.
    uint32_t prepareColor(ColorMode mode) const;

    static const Color WHITE, BLACK, RED, GREEN, BLUE, YELLOW, ORANGE, VIOLET, GRAY, BROWN, PINK,
        TRANSPARENT_;

private:
    uint32_t word_;
};

inline constexpr Color Color::WHITE{0xFFFFFFFFu};
inline constexpr Color Color::BLACK{0x000000FFu};
inline constexpr Color Color::RED{0xFF0000FFu};
inline constexpr Color Color::GREEN{0x00FF00FFu};
inline constexpr Color Color::BLUE{0x0000FFFFu};
inline constexpr Color Color::YELLOW{0xFFFF00FFu};
inline constexpr Color Color::ORANGE{0xFFA500FFu};
inline constexpr Color Color::VIOLET{0xEE82EEFFu};
inline constexpr Color Color::GRAY{0x696969FFu};
inline constexpr Color Color::BROWN{0xA52A2AFFu};
inline constexpr Color Color::PINK{0xFFC0CBFFu};
inline constexpr Color Color::TRANSPARENT_{0x00000000u};

}  // namespace KZ
