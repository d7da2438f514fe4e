#include "KZ_ViInterface.h"

#include "KZ_Assert.h"

namespace KZ {

int ViInterface::request(const std::string&, const void*) {
    return 0;
}

ColorMode ViInterface::parseImageName(const std::string& name) {
    struct Word {
        const char* text;
        ColorMode mode;
    };
    // A word comes before those that it begins with.
    static const Word words[] = {
        {"mono16", COLOR_MODE_MONO16},     {"mono", COLOR_MODE_MONO},
        {"bgr", COLOR_MODE_BGR},           {"yuv", COLOR_MODE_YUV},
        {"rgba", COLOR_MODE_RGBA},         {"rgb", COLOR_MODE_RGB},
        {"depth", COLOR_MODE_DEPTH},       {"gradient", COLOR_MODE_GRADIENT},
        {"rmct", COLOR_MODE_RMCT},         {"float2", COLOR_MODE_FLOAT2},
        {"float", COLOR_MODE_FLOAT},       {"ushort2", COLOR_MODE_USHORT2},
        {"integral", COLOR_MODE_INTEGRAL},
    };
    for (const Word& word : words)
        if (name.rfind(word.text, 0) == 0) return word.mode;
    KZ_ASSERT(0, "cannot parse color mode from " << name);
    return COLOR_MODE_UNDEFINED;
}

}  // namespace KZ
