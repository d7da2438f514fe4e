#include "KZ_Check.h"

namespace KZ {

void checkForCreation(const Image& image) {
    KZ_ASSERT(image.isCreated(), "image is not created");
}

void checkColorMode(const Image& image, ColorMode colorMode) {
    KZ_ASSERT(image.colorMode() == colorMode, "have " << colorModeName(image.colorMode())
                                                      << ", but need " << colorModeName(colorMode));
}

void checkSize(const Image& image, const Size& size) {
    KZ_ASSERT(image.size() == size, "have " << image.size() << ", but need " << size);
}

void checkImage(const Image& image, const Size& size, ColorMode colorMode) {
    checkColorMode(image, colorMode);
    checkSize(image, size);
}

void checkImages(const Image& image1, const Image& image2) {
    checkColorMode(image1, image2.colorMode());
    checkSize(image1, image2.size());
}

}  // namespace KZ
