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

/// A picture with `grey(x, y)` at each pixel.
template <typename Grey>
KZ::Image imageOf(const KZ::Size& size, Grey grey) {
    KZ::Image image(size, KZ::COLOR_MODE_MONO);
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x)
            *image.data(x, y) = static_cast<unsigned char>(grey(x, y));
    return image;
}

inline KZ::Image randomImage(Random& random, const KZ::Size& size) {
    return imageOf(size, [&](int, int) { return random.between(0, 255); });
}

/// A quarter turn that takes the right edge to the top.
inline KZ::Image turned(const KZ::Image& image) {
    return imageOf(KZ::Size(image.height(), image.width()),
                   [&](int x, int y) { return *image.data(image.width() - 1 - y, x); });
}

inline KZ::Image mirrored(const KZ::Image& image) {
    return imageOf(image.size(),
                   [&](int x, int y) { return *image.data(image.width() - 1 - x, y); });
}

/// A frame and a layer of it, with what cascades read.
struct Planes {
    KZ::Image frame, mono, rmct, integral;
    float zoom;

    explicit Planes(const KZ::Image& picture, float layerZoom = 1)
        : frame(picture), zoom(layerZoom) {
        const KZ::Size size(static_cast<int>(static_cast<float>(frame.width()) / zoom),
                            static_cast<int>(static_cast<float>(frame.height()) / zoom));
        mono = imageOf(size, [&](int x, int y) { return *frame.data(inFrame(x), inFrame(y)); });
        KZ::computeRmct(mono, rmct);
        KZ::computeIntegral(frame, integral);
    }
    int inFrame(int coordinate) const {
        return static_cast<int>(static_cast<float>(coordinate) * zoom);
    }
    KZ::Rect inFrame(const KZ::Rect& r) const {
        return KZ::Rect(inFrame(r.left), inFrame(r.top), inFrame(r.right), inFrame(r.bottom));
    }
};

/// `vote(index)` for each index, in memory that lives as long as the program.
template <typename Vote>
const signed char* votesOf(Vote vote) {
    static std::list<std::vector<signed char>> pool;
    pool.emplace_back();
    for (int i = 0; i < 256; ++i) pool.back().push_back(static_cast<signed char>(vote(i)));
    return pool.back().data();
}

inline const signed char* randomVotes(Random& random) {
    return votesOf([&](int) { return random.between(-128, 127); });
}

inline KZ::Rect randomRect(Random& random, const KZ::Rect& outer, int minSide) {
    const int width = random.between(minSide, outer.width());
    const int height = random.between(minSide, outer.height());
    const int left = random.between(outer.left, outer.right - width);
    const int top = random.between(outer.top, outer.bottom - height);
    return KZ::Rect(left, top, left + width, top + height);
}

inline WeakClassifierHaar haarOf(const KZ::Rect& all, const KZ::Rect& inner,
                                 const signed char* votes) {
    WeakClassifierHaar weak;
    weak.set(all, inner, 0);
    weak.setData(votes);
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

/// Of the Haar classifiers one in three measures plain brightness, and a few have nothing around
/// the inner rectangle.
inline StrongClassifier randomStage(Random& random, const KZ::Size& size, int numRmct, int numHaar,
                                    int numHog, int threshold = 0) {
    StrongClassifier stage;
    for (int i = 0; i < numRmct; ++i) {
        WeakClassifierRmct weak;
        weak.set(static_cast<signed char>(random.between(0, size.width - 1)),
                 static_cast<signed char>(random.between(0, size.height - 1)));
        weak.setData(randomVotes(random));
        stage.addRmctClassifier(weak);
    }
    for (int i = 0; i < numHaar; ++i) {
        const KZ::Rect all = randomRect(random, KZ::Rect(size), 2);
        const KZ::Rect inner = random.between(0, 9) ? randomRect(random, all, 1) : all;
        stage.addHaarClassifier(
            haarOf(all, random.between(0, 2) ? inner : KZ::Rect(), randomVotes(random)));
    }
    for (int i = 0; i < numHog; ++i) stage.addHogClassifier(randomHog(random, size));
    stage.setThreshold(threshold);
    return stage;
}

inline CascadedClassifier cascadeOf(const KZ::Size& size,
                                    const std::vector<StrongClassifier>& stages) {
    CascadedClassifier cascade;
    cascade.setMonoSize(size);
    cascade.setName("square");
    for (const StrongClassifier& stage : stages) cascade.addStrongClassifier(stage);
    return cascade;
}

/// Three stages of all kinds, of which about an eighth of all windows pass.
inline CascadedClassifier randomCascade(Random& random, const KZ::Size& size, int numHog = 3) {
    const StrongClassifier first = randomStage(random, size, 3, 0, 0);
    const StrongClassifier second = randomStage(random, size, 2, 3, numHog / 3);
    return cascadeOf(size, {first, second, randomStage(random, size, 2, 2, numHog)});
}

inline int referenceVote(const WeakClassifierRmct& weak, const Planes& planes, int left, int top) {
    const KZ::Image& mono = planes.mono;
    // Pixels of the border have the code of the pixel beside them.
    const int x = std::min(std::max(left + weak.x, 1), mono.width() - 2);
    const int y = std::min(std::max(top + weak.y, 1), mono.height() - 2);
    int sum = 20, code = 0;
    for (int i = 0; i < 9; ++i)
        if (i != 4) sum += *mono.data(x + i % 3 - 1, y + i / 3 - 1);
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
    const KZ::Rect all = planes.inFrame(weak.allRect), inner = planes.inFrame(weak.posRect);
    const auto sumIn = [&](const KZ::Rect& rect) {
        return pixelSum(planes.frame, rect, planes.inFrame(left), planes.inFrame(top));
    };
    const int64_t sum = sumIn(all), rest = all.area() - inner.area();
    if (inner.width() == 0) return weak.data[sum / (2 * all.area()) + 127];
    if (rest == 0) return weak.data[0];
    // Half of (mean of the inner part - mean of the rest), over the common denominator.
    const int64_t innerSum = sumIn(inner);
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

inline int referenceVote(const WeakClassifierHog& weak, const Planes& planes, int left, int top) {
    int64_t energy = 0, total = 0;
    for (int y = weak.block.top; y < weak.block.bottom; ++y)
        for (int x = weak.block.left; x < weak.block.right; ++x) {
            const KZ::Point g = gradient(planes.mono, left + x, top + y);
            const int magnitude = KZ::getMagnitudes()[g.x + 256][g.y + 256];
            total += magnitude;
            if (weak.cell.contains(KZ::Rect(x, y, x + 1, y + 1)) &&
                KZ::getHogUnsigned6()[g.x + 256][g.y + 256] == weak.sector)
                energy += magnitude;
        }
    return weak.data[256 * energy / (total + 1)];
}

/// The score of a stage that has not been activated.
inline int referenceScore(const StrongClassifier& stage, const Planes& planes, int left, int top) {
    int sum = 0;
    const auto add = [&](const auto& list) {
        for (const auto& weak : list) sum += referenceVote(weak, planes, left, top);
    };
    add(stage.rmctClassifiers());
    add(stage.haarClassifiers());
    add(stage.hogClassifiers());
    return sum;
}

}  // namespace ada_test
