#pragma once

#include "KZ_ImageData.h"
#include "KZ_Yuv420Rows.h"

// The camera's planar format: width * height bytes of luma, then one pair of chroma bytes for each
// 2 by 2 block. It is described as an image of one byte a pixel whose height counts the chroma rows
// too, that is 3/2 of the picture's.

namespace KZ {

/// Size of the picture in a buffer described by `in`, halved with `zoomTwice`. All divisions
/// truncate, that of the height by 3 first.
Size getOutputSize(const Size& in, bool zoomTwice);

/// Converts the buffer that `in` describes (its width, height and data count; rows are tight) into
/// a BGR image of `getOutputSize`. A pair is (V, U), with `swapUV` (U, V). Full size: the pixels of
/// a block share its pair, and an odd last row or column is not written. Half size: the top-left
/// luma of each block with its pair. The rows of chroma are 2 * (width / 2) bytes apart.
void yuv420toBgr(const Image& in, Image& out, bool zoomTwice, bool swapRedBlue, bool swapUV);

/// The BGR or grey picture of a node that holds a buffer as above, made when it is first read.
class Yuv420Converter : public ImageData {
public:
    /// `source` must not be empty; it is kept alive.
    Yuv420Converter(SharedPtr<ImageData>& source, ColorMode mode, bool zoomTwice, bool swapRedBlue,
                    bool swapUV);

    std::string name() const override;
    std::string arguments() const override;
    void update() override;
    /// Converts the whole frame, whatever the rectangle. MONO is a view of the luma plane and comes
    /// in full size only; other modes but BGR are an assertion.
    void compute(const Rect& rect) override;

private:
    void referToLuma();

    SharedPtr<ImageData> source_;
    ColorMode colorMode_;
    bool zoomTwice_;
    bool swapRedBlue_;
    bool swapUV_;
};

}  // namespace KZ
