#include "KZ_ImageData.h"

#include "KZ_Assert.h"
#include "KZ_Log.h"

namespace KZ {

void ImageData::print(std::ostream& stream) const {
    stream << static_cast<const void*>(this) << ": " << name() << "(" << size() << ", "
           << colorModeName(colorMode()) << ", " << computedRect_ << ")";
}

std::string ImageData::name() const {
    return joined("ImageData at ", static_cast<const void*>(this));
}

void ImageData::update() {
    lastSize_ = image_.size();
    lastColorMode_ = image_.colorMode();
}

void ImageData::compute(const Rect&) {
    KZ_ASSERT(
        0, *this << ". ImageData is not set, or void compute(const KZ::Rect&) is not overloaded");
}

const Image& ImageData::get() {
    return getClipped(rect());
}

const Image& ImageData::get(const Rect& rect) {
    return getClipped(rect.clipped(this->rect()));
}

void ImageData::get(const Rect& rect, Image& out) {
    const Rect clipped = rect.clipped(this->rect());
    if (clipped.area() == 0) {
        out.create(rect.size(), image_.colorMode());
        zero(out);
        KZ_LOG_WARNING("Rect fully outside of image " << rect);
        return;
    }
    Image part;
    part.createRef(getClipped(clipped), clipped);
    out.create(part);
}

Size ImageData::size() const {
    const int extra = image_.colorMode() == COLOR_MODE_INTEGRAL ? 1 : 0;
    return Size(image_.width() - extra, image_.height() - extra);
}

void ImageData::set(const Image& image) {
    if (image_.isCreated() &&
        (image_.colorMode() != image.colorMode() || image_.size() != image.size()))
        KZ_LOG_INFO("Setting image with different size "
                    << image.size() << " prev size " << image_.size() << " or colorMode "
                    << colorModeName(image.colorMode()) << " was "
                    << colorModeName(image_.colorMode()));
    image_.createRef(image);
    computedRect_ = rect();
}

const Image& ImageData::getClipped(const Rect& clipped) {
    if (!computedRect_.contains(clipped)) {
        compute(clipped);
        computedRect_ = clipped;
    }
    return image_;
}

}  // namespace KZ
