#include <cstdint>
#include <cstring>
#include <limits>
#include <string>

#include "KZ_Assert.h"
#include "KZ_ResizeImage.h"
#include "KZ_Utils.h"
#include "KZ_ViInterfaceSingleton.h"
#include "KZ_Yuv420Converter.h"
#include "VI_Interface.h"
#include "VI_State.h"

namespace {

// Android's numbers of image formats.
const int NV21 = 17;
const int YUV_420_888 = 35;
const int FLEX_RGB_888 = 41;

// A null frame ends the process at the misuse: its message shows the text behind the pointer.
void checkFrame(const void* frame) {
    if (frame) return;
    const char* volatile text = static_cast<const char*>(frame);
    KZ_FAIL_("(frame)", std::string(text, std::strlen(text)) << " == NULL");
}

int engineProperty(const char* key, int absent) {
    const auto& parameters = ViInterfaceSingleton::get()->getEngineInfo().parameters;
    const auto found = parameters.find(key);
    return found == parameters.end() ? absent : KZ::fromStr<int>(found->second);
}

int readImageFormat() {
    const int imageFormat = engineProperty("image-format", NV21);
    KZ_ASSERT(imageFormat == 17 || imageFormat == 35 || imageFormat == 41,
              "Unsupported image format for android: "
                  << imageFormat
                  << ". For now only (17)NV21, (35)YUV_421_888, (41)FLEX_RGB_888 iterpreted as "
                     "BGR24\n");
    return imageFormat;
}

// Also in bytes, at three a pixel, a picture's size is a number of 31 bits.
void checkSize(int width, int height) {
    const int64_t limit = std::numeric_limits<int32_t>::max() / 3;
    KZ_ASSERT(width >= 0 && height >= 0 && static_cast<int64_t>(width) * height <= limit,
              "wrong frame size " << KZ::Size(width, height));
}

void takeAsItIs(const KZ::Image& src, KZ::Image& result) {
    if (zoomTwice)
        KZ::zoomImageTwice(src, result);
    else
        result.createRef(src);
}

void convert(unsigned char* pixels, const KZ::Size& size, KZ::ColorMode mode, int imageFormat,
             KZ::Image& result) {
    KZ::Image src;
    if (imageFormat == FLEX_RGB_888) {
        src.createRef(pixels, size, KZ::COLOR_MODE_BGR);
        takeAsItIs(src, result);
        return;
    }
    src.createRef(pixels, size, mode);
    if (mode == KZ::COLOR_MODE_MONO) {
        takeAsItIs(src, result);
        return;
    }
    if (mode != KZ::COLOR_MODE_BGR)
        KZ_ASSERT(0, "unsupported color mode: " << KZ::colorModeName(mode));
    const bool swap = engineProperty("swap-red-blue", 0) != 0;
    KZ::yuv420toBgr(src, result, zoomTwice, swap, imageFormat == YUV_420_888);
}

}  // namespace

void VI_SetFrame(const void* frame, int width, int height, int i) {
    checkFrame(frame);
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT_LT(i, (int)ViInterfaceSingleton::get()->getEngineInfo().imageNames.size());
    const std::string name = ViInterfaceSingleton::get()->getEngineInfo().imageNames[i];
    const KZ::ColorMode mode = KZ::ViInterface::parseImageName(name);
    const int imageFormat = readImageFormat();
    checkSize(width, height);
    // Images hand out their pixels for writing too; nobody writes to those of a frame.
    unsigned char* pixels = static_cast<unsigned char*>(const_cast<void*>(frame));
    KZ::Image result;
    convert(pixels, KZ::Size(width, height), mode, imageFormat, result);
    KZ::Image picture;
    picture.createRef(result);  // fails for a picture without pixels, before anything is filed

    std::lock_guard<std::mutex> lock(engineMutex);
    viFrameParameters.images[name].createRef(picture);
}
