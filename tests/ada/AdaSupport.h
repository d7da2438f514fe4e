#pragma once

#include <cmath>
#include <list>
#include <random>
#include <vector>

#include "CascadedClassifier.h"
#include "KZ_Image.h"
#include "KZ_IntegralHog.h"
#include "KZ_IntegralImage.h"
#include "KZ_RmctTransform.h"
#include "PatchTransform.h"

// Random pictures and cascades, and their scores worked out pixel by pixel.

namespace ada_test {

class Random {
public:
    explicit Random(unsigned int seed) : engine_(seed) {}
    /// From `min` to `max`, both included.
    int between(int min, int max) {
        return min + static_cast<int>(engine_() % static_cast<unsigned int>(max - min + 1));
    }

private:
    std::mt19937 engine_;
};

inline KZ::Image randomImage(Random& random, const KZ::Size& size) {
    KZ::Image image(size, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            *image.data(x, y) = static_cast<unsigned char>(random.between(0, 255));
    return image;
}

/// Moves each pixel to `place(pixel)`.
template <typename Place>
KZ::Image moved(const KZ::Image& image, const KZ::Size& size, Place place) {
    KZ::Image result(size, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) {
            const KZ::Point p = place(KZ::Point(x, y));
            *result.data(p.x, p.y) = *image.data(x, y);
        }
    return result;
}

inline KZ::Image turned(const KZ::Image& image) {
    return moved(image, KZ::Size(image.height(), image.width()),
                 [&](const KZ::Point& p) { return KZ::Point(p.y, image.width() - 1 - p.x); });
}

inline KZ::Image mirrored(const KZ::Image& image) {
    return moved(image, image.size(),
                 [&](const KZ::Point& p) { return KZ::Point(image.width() - 1 - p.x, p.y); });
}

/// A frame and a layer of it, with what cascades read.
struct Planes {
    KZ::Image frame, mono, rmct, integral;
    float zoom;

    explicit Planes(const KZ::Image& picture, float layerZoom = 1) : frame(picture) {
        zoom = layerZoom;
        mono.create(KZ::Size(static_cast<int>(static_cast<float>(frame.width()) / zoom),
                             static_cast<int>(static_cast<float>(frame.height()) / zoom)),
                    KZ::COLOR_MODE_MONO);
        for (int y = 0; y < mono.height(); ++y)
            for (int x = 0; x < mono.width(); ++x)
                *mono.data(x, y) = *frame.data(inFrame(x), inFrame(y));
        KZ::computeRmct(mono, rmct);
        KZ::computeIntegral(frame, integral);
    }
    int inFrame(int coordinate) const {
        return static_cast<int>(static_cast<float>(coordinate) * zoom);
    }
};

/// Votes that live as long as the program.
inline const signed char* randomVotes(Random& random) {
    static std::list<std::vector<signed char>> pool;
    pool.emplace_back(256);
    for (signed char& vote : pool.back())
        vote = static_cast<signed char>(random.between(-128, 127));
    return pool.back().data();
}

inline KZ::Rect randomRect(Random& random, const KZ::Rect& outer, int minSide) {
    const int width = random.between(minSide, outer.width());
    const int height = random.between(minSide, outer.height());
    const int left = random.between(outer.left, outer.right - width);
    const int top = random.between(outer.top, outer.bottom - height);
    return KZ::Rect(left, top, left + width, top + height);
}

inline WeakClassifierRmct randomRmct(Random& random, const KZ::Size& size) {
    WeakClassifierRmct weak;
    weak.set(static_cast<signed char>(random.between(0, size.width - 1)),
             static_cast<signed char>(random.between(0, size.height - 1)));
    weak.setData(randomVotes(random));
    return weak;
}

/// One in three measures plain brightness, and a few have nothing around the inner rectangle.
inline WeakClassifierHaar randomHaar(Random& random, const KZ::Size& size) {
    WeakClassifierHaar weak;
    const KZ::Rect all = randomRect(random, KZ::Rect(size), 2);
    const KZ::Rect inner = random.between(0, 9) ? randomRect(random, all, 1) : all;
    weak.set(all, random.between(0, 2) ? inner : KZ::Rect(), 0);
    weak.setData(randomVotes(random));
    return weak;
}

inline WeakClassifierHog randomHog(Random& random, const KZ::Size& size) {
    WeakClassifierHog weak;
    weak.setBlock(randomRect(random, KZ::Rect(1, 1, size.width - 1, size.height - 1), 2));
    weak.setCell(randomRect(random, weak.block, 1));
    weak.setSector(static_cast<signed char>(random.between(0, 5)));
    weak.setData(randomVotes(random));
    return weak;
}

inline StrongClassifier randomStage(Random& random, const KZ::Size& size, int numRmct, int numHaar,
                                    int numHog, int threshold) {
    StrongClassifier stage;
    for (int i = 0; i < numRmct; ++i) stage.addRmctClassifier(randomRmct(random, size));
    for (int i = 0; i < numHaar; ++i) stage.addHaarClassifier(randomHaar(random, size));
    for (int i = 0; i < numHog; ++i) stage.addHogClassifier(randomHog(random, size));
    stage.setThreshold(threshold);
    return stage;
}

/// Three stages of all kinds, of which about an eighth of all windows pass.
inline CascadedClassifier randomCascade(Random& random, const KZ::Size& size, int numHog = 3) {
    CascadedClassifier cascade;
    cascade.setMonoSize(size);
    cascade.setName("square");
    cascade.addStrongClassifier(randomStage(random, size, 3, 0, 0, 0));
    cascade.addStrongClassifier(randomStage(random, size, 2, 3, 0, 0));
    cascade.addStrongClassifier(randomStage(random, size, 2, 2, numHog, 0));
    return cascade;
}

inline int referenceVote(const WeakClassifierRmct& weak, const KZ::Image& mono, int left, int top) {
    // Pixels of the border have the code of the pixel beside them.
    const int x = std::min(std::max(left + weak.x, 1), mono.width() - 2);
    const int y = std::min(std::max(top + weak.y, 1), mono.height() - 2);
    int sum = 20;
    for (int i = 0; i < 9; ++i)
        if (i != 4) sum += *mono.data(x + i % 3 - 1, y + i / 3 - 1);
    int code = 0;
    for (int i = 0; i < 9; ++i)
        if (i != 4) code = code * 2 + (sum / 8 < *mono.data(x + i % 3 - 1, y + i / 3 - 1));
    return weak.data[code];
}

inline int64_t pixelSum(const KZ::Image& image, const KZ::Rect& rect, int left, int top) {
    int64_t sum = 0;
    for (int y = rect.top; y < rect.bottom; ++y)
        for (int x = rect.left; x < rect.right; ++x) sum += *image.data(left + x, top + y);
    return sum;
}

inline int referenceVote(const WeakClassifierHaar& weak, const Planes& planes, int left, int top) {
    const auto zoomed = [&](const KZ::Rect& r) {
        return KZ::Rect(planes.inFrame(r.left), planes.inFrame(r.top), planes.inFrame(r.right),
                        planes.inFrame(r.bottom));
    };
    const KZ::Rect all = zoomed(weak.allRect);
    const KZ::Rect inner = zoomed(weak.posRect);
    const int64_t sum = pixelSum(planes.frame, all, planes.inFrame(left), planes.inFrame(top));
    if (inner.width() == 0) return weak.data[sum / (2 * all.area()) + 127];
    const int64_t rest = all.area() - inner.area();
    if (rest == 0) return weak.data[0];
    // Half of (mean of the inner part - mean of the rest), over the common denominator.
    const int64_t innerSum =
        pixelSum(planes.frame, inner, planes.inFrame(left), planes.inFrame(top));
    const int64_t contrast = innerSum * rest - (sum - innerSum) * inner.area();
    return weak.data[contrast / (2 * inner.area() * rest) + 127];
}

/// Horizontal and vertical difference at a pixel, as the gradient tables take them.
inline KZ::Point gradient(const KZ::Image& mono, int x, int y) {
    const auto at = [&](int dx, int dy) { return int{*mono.data(x + dx, y + dy)}; };
    const int gx = at(1, -1) + 2 * at(1, 0) + at(1, 1) - at(-1, -1) - 2 * at(-1, 0) - at(-1, 1);
    const int gy = at(-1, 1) + 2 * at(0, 1) + at(1, 1) - at(-1, -1) - 2 * at(0, -1) - at(1, -1);
    return KZ::Point(gx / 4, gy / 4);
}

inline int referenceVote(const WeakClassifierHog& weak, const KZ::Image& mono, int left, int top) {
    int64_t energy = 0, total = 0;
    const KZ::Rect& cell = weak.cell;
    for (int y = weak.block.top; y < weak.block.bottom; ++y)
        for (int x = weak.block.left; x < weak.block.right; ++x) {
            const KZ::Point g = gradient(mono, left + x, top + y);
            const int magnitude = KZ::getMagnitudes()[g.x + 256][g.y + 256];
            total += magnitude;
            if (cell.left <= x && x < cell.right && cell.top <= y && y < cell.bottom &&
                KZ::getHogUnsigned6()[g.x + 256][g.y + 256] == weak.sector)
                energy += magnitude;
        }
    return weak.data[256 * energy / (total + 1)];
}

/// The score of a stage that has not been activated.
inline int referenceScore(const StrongClassifier& stage, const Planes& planes, int left, int top) {
    int sum = 0;
    for (const auto& weak : stage.rmctClassifiers())
        sum += referenceVote(weak, planes.mono, left, top);
    for (const auto& weak : stage.haarClassifiers()) sum += referenceVote(weak, planes, left, top);
    for (const auto& weak : stage.hogClassifiers())
        sum += referenceVote(weak, planes.mono, left, top);
    return sum;
}

}  // namespace ada_test
