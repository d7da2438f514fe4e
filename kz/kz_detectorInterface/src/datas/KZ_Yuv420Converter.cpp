#include "KZ_Yuv420Converter.h"

#include "KZ_Assert.h"
#include "KZ_Log.h"

namespace KZ {

Size getOutputSize(const Size& in, bool zoomTwice) {
    const int f = zoomTwice ? 2 : 1;
    return Size(in.width / f, in.height / 3 * 2 / f);
}

void yuv420toBgr(const Image& in, Image& out, bool zoomTwice, bool swapRedBlue, bool swapUV) {
    out.create(getOutputSize(in.size(), zoomTwice), COLOR_MODE_BGR);
    const int64_t f = zoomTwice ? 2 : 1;
    const int64_t pitch = in.width();
    const int pairs = in.width() / 2;
    const int rowsPerPair = zoomTwice ? 1 : 2;
    const unsigned char* luma = in.data();
    const unsigned char* chroma = luma + out.height() * f * out.width() * f;
    const YuvRow convert = yuvRowVariants().back().row(zoomTwice, swapRedBlue, swapUV);
    for (int y = 0; y < out.height(); y += rowsPerPair) {
        for (int i = 0; i < rowsPerPair; ++i)
            convert(luma + i * pitch, chroma, out.data(0, y + i), pairs);
        luma += 2 * pitch;
        chroma += 2 * static_cast<int64_t>(pairs);
    }
}

Yuv420Converter::Yuv420Converter(SharedPtr<ImageData>& source, ColorMode mode, bool zoomTwice,
                                 bool swapRedBlue, bool swapUV)
    : ImageData(getOutputSize(source->size(), zoomTwice), mode),
      source_(source),
      colorMode_(mode),
      zoomTwice_(zoomTwice),
      swapRedBlue_(swapRedBlue),
      swapUV_(swapUV) {
    addParent(source);
}

std::string Yuv420Converter::name() const {
    std::string text = "Yuv420Converter" + arguments();
    const char* separator = " of (";
    for (const SharedPtr<BaseData>& parent : parents_) {
        text += separator + parent->name();
        separator = ", ";
    }
    return parents_.empty() ? text : text + ")";
}

std::string Yuv420Converter::arguments() const {
    return joined(colorModeName(colorMode_), " zoomTwice_ = ", zoomTwice_, " swapRedBlue_ ",
                  swapRedBlue_, " swapUV_ ", swapUV_);
}

void Yuv420Converter::update() {
    image_.create(getOutputSize(source_->size(), zoomTwice_), colorMode_);
    ImageData::update();
}

void Yuv420Converter::compute(const Rect&) {
    if (colorMode_ == COLOR_MODE_MONO) {
        KZ_ASSERT((zoomTwice_) == (false), "for mono only zoom 1 is supported");
        referToLuma();
        return;
    }
    KZ_ASSERT((colorMode_) == (COLOR_MODE_BGR), "Only mono and bgr are supported ");
    yuv420toBgr(source_->get(), image_, zoomTwice_, swapRedBlue_, swapUV_);
}

void Yuv420Converter::referToLuma() {
    const Image& buffer = source_->get();
    // The node hands out its image for reading only, so the source is not written through it.
    image_.createRef(const_cast<unsigned char*>(buffer.data()),
                     getOutputSize(buffer.size(), zoomTwice_), COLOR_MODE_MONO);
}

}  // namespace KZ
