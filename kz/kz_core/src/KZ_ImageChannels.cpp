#include "KZ_PixelArithmetic.h"
#include "KZ_PixelRows.h"

namespace KZ {

void splitChannels(const Image& source, std::vector<Image>& channels) {
    KZ_ASSERT(isColor(source.colorMode()) || source.depth() == 1,
              "color mode not handled: " << colorModeName(source.colorMode()));
    const int count = source.depth();
    channels.resize(static_cast<size_t>(count));
    for (int c = 0; c < count; ++c) {
        Image& channel = channels[static_cast<size_t>(c)];
        channel.create(source.size(), COLOR_MODE_MONO);
        forRows<unsigned char, unsigned char>(source, channel, source.rect(),
                                              [=](const unsigned char* s, unsigned char* t, int n) {
                                                  for (int x = 0; x < n; ++x)
                                                      t[x] = s[count * x + c];
                                              });
    }
}

void mergeChannels(const std::vector<Image>& channels, Image& target, ColorMode mode) {
    const int count = static_cast<int>(depth(mode));
    KZ_ASSERT(isColor(mode) || count == 1, "color mode not handled: " << colorModeName(mode));
    KZ_ASSERT_EQ(static_cast<int>(channels.size()), count);
    for (const Image& channel : channels) {
        KZ_CHECK_COLOR_MODE(channel, COLOR_MODE_MONO);
        KZ_CHECK_SIZE(channel, channels[0].size());
    }
    target.create(channels[0].size(), mode);
    for (int c = 0; c < count; ++c)
        forRows<unsigned char, unsigned char>(channels[static_cast<size_t>(c)], target,
                                              target.rect(),
                                              [=](const unsigned char* s, unsigned char* t, int n) {
                                                  for (int x = 0; x < n; ++x)
                                                      t[count * x + c] = s[x];
                                              });
}

}  // namespace KZ
