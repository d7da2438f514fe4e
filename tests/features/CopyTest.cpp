#include "KZ_CopyImage.h"

#include <algorithm>

#include "LogCapture.h"
#include "TestImages.h"

using namespace KZ;

namespace {

TEST(CopyImage, ClipsToBothImages) {
    const int far = 2000000000;
    const struct {
        const char* what;
        Rect rect;
        Point to;
    } rows[] = {
        {"source clips left and top", Rect(-3, -2, 4, 5), Point(1, 1)},
        {"target clips", Rect(0, 0, 9, 8), Point(-4, 5)},
        {"both clip", Rect(-2, 3, 20, 30), Point(6, -1)},
        {"all-zero rectangle is the whole", Rect(), Point(2, 2)},
        {"an empty one is nothing", Rect(3, 3, 3, 5), Point(0, 0)},
        {"out of the target", Rect(0, 0, 9, 8), Point(far, 0)},
        {"out of the source", Rect(-far, -far, 2 - far, far), Point(-far, far)},
    };
    for (const auto& row : rows)
        for (const ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_BGR}) {
            SCOPED_TRACE(row.what);
            GuardedImage source(Size(9, 8), mode, 2), target(Size(7, 10), mode, 3, 2);
            copyImage(source.image, target.image, row.rect, row.to);
            EXPECT_TRUE(target.paddingKept());
            const Rect rect = row.rect == Rect() ? source.image.rect() : row.rect;
            expectValues(target.image, [&](int x, int y, int c) {
                const int64_t sx = int64_t(x) - row.to.x + rect.left;
                const int64_t sy = int64_t(y) - row.to.y + rect.top;
                const bool isCopied = sx >= std::max(rect.left, 0) &&
                                      sx < std::min(rect.right, 9) && sy >= std::max(rect.top, 0) &&
                                      sy < std::min(rect.bottom, 8);
                return isCopied ? byteAt(source.image, int(sx), int(sy), c)
                                : byteAt(target.before, x, y, c);
            });
        }
}

// Every pixel is that of the nearest place inside the rectangle.
TEST(CopyImageBorder, SmearsTheEdge) {
    const GuardedImage source(Size(8, 6), COLOR_MODE_BGR, 1);
    GuardedImage target(Size(8, 6), COLOR_MODE_BGR, 2, 2);
    for (const Rect rect : {Rect(2, 1, 5, 4), Rect(-3, 3, 1, 90), Rect(0, 0, 8, 6)}) {
        copyImageBorder(source.image, target.image, rect);
        EXPECT_TRUE(target.paddingKept());
        const Rect inner = rect.intersection(source.image.rect());
        expectValues(target.image, [&](int x, int y, int c) {
            return byteAt(source.image, std::clamp(x, inner.left, inner.right - 1),
                          std::clamp(y, inner.top, inner.bottom - 1), c);
        });
    }
    EXPECT_EQ("innerRect.area() != 0", testing_support::conditionOf([&] {
                  copyImageBorder(source.image, target.image, Rect(8, 0, 9, 4));
              }));
}

// Where pixel `p` of a 5 by 3 image goes.
Point turned(Point p, int quarters) {
    Size size(5, 3);
    for (int i = (quarters + 8) % 4; i > 0; --i) {
        p = Point(p.y, size.width - 1 - p.x);
        std::swap(size.width, size.height);
    }
    return p;
}

TEST(Turns, MovePixelsOfEveryDepth) {
    for (const ColorMode mode : {COLOR_MODE_MONO, COLOR_MODE_DEPTH, COLOR_MODE_BGR, COLOR_MODE_RGBA,
                                 COLOR_MODE_FLOAT2, COLOR_MODE_INTEGRAL_HOG_UNSIGNED6}) {
        const GuardedImage guarded(Size(5, 3), mode, 4);
        const Image& source = guarded.image;
        const auto expectMoved = [&](const Image& target, auto place) {
            expectValues(source, [&](int x, int y, int c) {
                const Point to = place(Point(x, y));
                return valueAt(target, to.x, to.y, c);
            });
        };
        Image target;
        for (int quarters = -5; quarters <= 6; ++quarters) {
            rotatePi4(source, target, quarters);
            ASSERT_EQ(quarters % 2 ? Size(3, 5) : Size(5, 3), target.size());
            expectMoved(target, [&](Point p) { return turned(p, quarters); });
        }
        transpose(source, target);
        expectMoved(target, [](Point p) { return Point(p.y, p.x); });
        flipLeftRight(source, target);
        expectMoved(target, [](Point p) { return Point(4 - p.x, p.y); });
        flipLeftRight(target);
        EXPECT_EQ(source, target);
        // In place by the two-argument forms too.
        rotatePi4(target, target, 1);
        transpose(target, target);
        flipLeftRight(target, target);
        EXPECT_EQ(source, target);
        flipTopBottom(target, target);
        expectMoved(target, [](Point p) { return Point(p.x, 2 - p.y); });
    }
}

}  // namespace
