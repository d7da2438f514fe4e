#pragma once

#include <opencv2/core/mat.hpp>
#include <vector>

#include "KZ_Image.h"

namespace bench {

/// NV21 buffers of 640 by 480 from the sample clip, every tenth frame: the pictures that the
/// benchmarks run on, so that the scan meets real edges and textures.
const std::vector<std::vector<unsigned char>>& nv21Frames();

/// The frames as the detector gets them: grey, 320 by 240.
const std::vector<KZ::Image>& greyFrames();

/// A frame of the clip in which a palm is raised: NV21, 640 by 480.
const std::vector<unsigned char>& palmFrame();
KZ::Image greyPalmFrame();

/// The pixels of `image` (MONO or BGR) as a matrix, not copied.
cv::Mat view(const KZ::Image& image);

/// Grey image of random pixels.
KZ::Image noise(int width, int height, KZ::ColorMode mode);

}  // namespace bench
