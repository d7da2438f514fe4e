#include "KZ_ColorMode.h"

#include "KZ_Assert.h"

namespace KZ {

namespace {

struct ColorModeInfo {
    const char* name;
    unsigned int depth;
};

const ColorModeInfo COLOR_MODES[COLOR_MODE_END] = {
    {"COLOR_MODE_UNDEFINED", 0},
    {"COLOR_MODE_MONO", 1},
    {"COLOR_MODE_MONO16", 2},
    {"COLOR_MODE_DEPTH", 2},
    {"COLOR_MODE_GRADIENT", 2},
    {"COLOR_MODE_RMCT", 1},
    {"COLOR_MODE_BGR", 3},
    {"COLOR_MODE_RGB", 3},
    {"COLOR_MODE_YUV", 3},
    {"COLOR_MODE_RGBA", 4},
    {"COLOR_MODE_INTEGRAL", 4},
    {"COLOR_MODE_FLOAT", 4},
    {"COLOR_MODE_INTEGRAL_HOG_UNSIGNED6", 28},
    {"COLOR_MODE_INTEGRAL_HOG_SIGNED12", 52},
    {"COLOR_MODE_FLOAT2", 8},
    {"COLOR_MODE_USHORT2", 4},
};

bool isInTable(ColorMode mode) {
    return static_cast<unsigned int>(mode) < static_cast<unsigned int>(COLOR_MODE_END);
}

}  // namespace

unsigned int depth(ColorMode mode) {
    if (!isInTable(mode)) KZ_ASSERT(false, static_cast<int>(mode));
    return COLOR_MODES[mode].depth;
}

bool isColor(ColorMode mode) {
    return mode >= COLOR_MODE_BGR && mode <= COLOR_MODE_RGBA;
}

const char* colorModeName(ColorMode mode) {
    return isInTable(mode) ? COLOR_MODES[mode].name : "COLOR_MODE_END";
}

}  // namespace KZ
