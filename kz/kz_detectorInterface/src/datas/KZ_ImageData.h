#pragma once

#include "KZ_BaseData.h"
#include "KZ_Image.h"

namespace KZ {

/// A node that holds an image. By itself it is a root: `set` gives it the pixels of a frame. A
/// derived class overrides `compute` and is asked for pixels at the first read of a frame.
class ImageData : public BaseData {
public:
    ImageData() = default;
    /// Creates the image; its pixels are not valid until `set`.
    ImageData(const Size& size, ColorMode mode) : image_(size, mode) {}

    void print(std::ostream& stream) const override;
    std::string name() const override;
    /// Nothing is valid after it. The pixels are not touched.
    void reset() override { computedRect_ = Rect(); }
    void update() override;
    /// Makes at least `rect` of `image_` valid. A plain image cannot: it is an assertion here.
    virtual void compute(const Rect& rect);

    /// The image, with its whole content valid.
    const Image& get();
    /// The image, with at least `rect`, clipped to the image, valid. What was valid outside of it
    /// no longer counts as valid.
    const Image& get(const Rect& rect);
    /// A copy of the part of `rect` that lies inside the image. A rectangle outside of it gives a
    /// zeroed picture of the rectangle's size and a warning.
    void get(const Rect& rect, Image& out);

    Rect rect() const { return Rect(size()); }
    /// Size of the picture; an integral image carries a row and a column more.
    Size size() const;
    /// The image as it is, without any computation.
    Image& getRaw() { return image_; }
    void checkImage() {}
    /// New content, all valid. The pixels are shared with `image`, not copied, so the owner of its
    /// memory keeps it for the frame. Another size or mode than before costs one info line; an
    /// empty image is an assertion.
    void set(const Image& image);
    ColorMode colorMode() const { return image_.colorMode(); }
    int stripLength() const { return image_.stripLength(); }

protected:
    Image image_;
    Rect computedRect_;  ///< part of `image_` that is valid for this frame
    Size lastSize_;      ///< as of the last `update`, like the mode
    ColorMode lastColorMode_ = COLOR_MODE_UNDEFINED;

private:
    const Image& getClipped(const Rect& clipped);
};

}  // namespace KZ
