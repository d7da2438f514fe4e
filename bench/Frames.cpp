#include "Frames.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <opencv2/imgproc.hpp>
#include <opencv2/videoio.hpp>
#include <random>

#include "KZ_ColorConversion.h"
#include "KZ_Yuv420Converter.h"

namespace bench {

namespace {

std::vector<unsigned char> toNv21(const cv::Mat& picture) {
    std::vector<unsigned char> nv21(static_cast<size_t>(picture.cols) * picture.rows * 3 / 2);
    cv::Mat full, chroma;
    cv::cvtColor(picture, full, cv::COLOR_BGR2YCrCb);
    cv::Mat luma(picture.rows, picture.cols, CV_8UC1, nv21.data());
    cv::extractChannel(full, luma, 0);
    cv::resize(full, chroma, cv::Size(picture.cols / 2, picture.rows / 2), 0, 0, cv::INTER_AREA);
    cv::Mat pairs(picture.rows / 2, picture.cols / 2, CV_8UC2,
                  nv21.data() + static_cast<size_t>(picture.cols) * picture.rows);
    const int crAndCb[] = {1, 0, 2, 1};
    cv::mixChannels(&chroma, 1, &pairs, 1, crAndCb, 2);
    return nv21;
}

std::vector<std::vector<unsigned char>> readClip() {
    cv::VideoCapture clip(RHD_SAMPLE);
    std::vector<std::vector<unsigned char>> frames;
    cv::Mat picture;
    for (int i = 0; clip.read(picture); ++i) {
        if (i % 10 == 0) frames.push_back(toNv21(picture));
    }
    if (frames.empty()) {
        std::fprintf(stderr, "bench: cannot read %s\n", RHD_SAMPLE);
        std::exit(2);
    }
    return frames;
}

KZ::Image toGrey(const std::vector<unsigned char>& nv21) {
    KZ::Image buffer, bgr, grey;
    buffer.createRef(const_cast<unsigned char*>(nv21.data()), KZ::Size(640, 720),
                     KZ::COLOR_MODE_BGR);
    KZ::yuv420toBgr(buffer, bgr, true, false, false);
    KZ::toMono(bgr, grey, KZ::Rect());
    return grey;
}

}  // namespace

const std::vector<std::vector<unsigned char>>& nv21Frames() {
    static const std::vector<std::vector<unsigned char>> frames = readClip();
    return frames;
}

const std::vector<KZ::Image>& greyFrames() {
    static const std::vector<KZ::Image> frames = [] {
        std::vector<KZ::Image> grey;
        for (const auto& frame : nv21Frames()) grey.push_back(toGrey(frame));
        return grey;
    }();
    return frames;
}

const std::vector<unsigned char>& palmFrame() {
    // Two seconds in, the clip shows its first palm.
    return nv21Frames()[std::min<size_t>(6, nv21Frames().size() - 1)];
}

KZ::Image greyPalmFrame() {
    return toGrey(palmFrame());
}

cv::Mat view(const KZ::Image& image) {
    const int type = image.colorMode() == KZ::COLOR_MODE_BGR ? CV_8UC3 : CV_8UC1;
    return cv::Mat(image.height(), image.width(), type, const_cast<unsigned char*>(image.data()),
                   static_cast<size_t>(image.stripLength()));
}

KZ::Image noise(int width, int height, KZ::ColorMode mode) {
    KZ::Image image(KZ::Size(width, height), mode);
    std::mt19937 random(1);
    for (int y = 0; y < height; ++y) {
        unsigned char* row = image.data(0, y);
        for (int i = 0; i < width * image.depth(); ++i) row[i] = random() & 255;
    }
    return image;
}

}  // namespace bench
