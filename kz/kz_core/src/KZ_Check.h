#pragma once

#include "KZ_Assert.h"
#include "KZ_Image.h"

namespace KZ {

/// Each is an assertion when the image is not as told.
void checkForCreation(const Image& image);
void checkColorMode(const Image& image, ColorMode colorMode);
void checkSize(const Image& image, const Size& size);
void checkImage(const Image& image, const Size& size, ColorMode colorMode);
/// Equal mode and size.
void checkImages(const Image& image1, const Image& image2);

}  // namespace KZ

// The same checks with the caller's own expression in the message.

#define KZ_CHECK_CREATED(image)                                                                 \
    do {                                                                                        \
        if (!(image).isCreated()) KZ_FAIL_("(" #image ").isCreated()", "image is not created"); \
    } while (0)

#define KZ_CHECK_COLOR_MODE(image, mode)                                                \
    do {                                                                                \
        if (!((image).colorMode() == (mode)))                                           \
            KZ_FAIL_("(" #image ").colorMode() == (" #mode ")",                         \
                     "have " << KZ::colorModeName((image).colorMode()) << ", but need " \
                             << KZ::colorModeName(mode));                               \
    } while (0)

#define KZ_CHECK_SIZE(image, wanted)                                          \
    do {                                                                      \
        if (!((image).size() == (wanted)))                                    \
            KZ_FAIL_("(" #image ").size() == (" #wanted ")",                  \
                     "have " << (image).size() << ", but need " << (wanted)); \
    } while (0)

#define KZ_CHECK_CONTAINS(outer, inner)                                                         \
    do {                                                                                        \
        if (!(outer).contains(inner))                                                           \
            KZ_FAIL_("(" #outer ").contains(" #inner ")", (inner) << " is out of " << (outer)); \
    } while (0)
