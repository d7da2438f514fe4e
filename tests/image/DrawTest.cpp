#include "KZ_Draw.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>

#include "KZ_Sobel.h"
#include "TestImages.h"

using namespace KZ;

namespace {

// The picture as text, one line a row, with "#" for drawn pixels.
std::string pictureOf(const Image& image) {
    std::string picture;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) picture += *image.data(x, y) != 0 ? '#' : '.';
        picture += '\n';
    }
    return picture;
}

}  // namespace

TEST(Draw, RectanglesAsPictures) {
    const float quarter = 1.5707964f;
    struct Row {
        const char* what;
        Rect rect;
        int thickness;
        float radians;
        const char* picture;
    };
    const Row rows[] = {
        {"outermost pixels", Rect(1, 1, 6, 4), 1, 0,
         ".......\n.#####.\n.#...#.\n.#####.\n.......\n"},
        {"thick", Rect(2, 2, 6, 4), 3, 0, ".......\n.######\n.######\n.######\n.######\n"},
        {"single pixel", Rect(3, 2, 4, 3), 1, 1, ".......\n.......\n...#...\n.......\n.......\n"},
        {"cut off", Rect(-9, 3, 5, 99), 1, 0, ".......\n.......\n.......\n#####..\n....#..\n"},
        {"quarter turn", Rect(1, 1, 6, 4), 1, quarter,
         "..###..\n..#.#..\n..#.#..\n..#.#..\n..###..\n"},
        {"around the image", Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), 1, 0.5f,
         ".......\n.......\n.......\n.......\n.......\n"},
        {"empty", Rect(3, 3, 3, 5), 1, 0, ".......\n.......\n.......\n.......\n.......\n"},
        {"no thickness", Rect(1, 1, 6, 4), 0, 0, ".......\n.......\n.......\n.......\n.......\n"},
        {"thicker than the image", Rect(1, 1, 6, 4), INT_MAX, 0,
         "#######\n#######\n#######\n#######\n#######\n"},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        GuardedImage guarded(Size(7, 5), COLOR_MODE_MONO, 3, 1);
        zero(guarded.image);
        drawRectangle(guarded.image, row.rect, Color::WHITE, row.thickness, row.radians);
        EXPECT_EQ(row.picture, pictureOf(guarded.image));
        EXPECT_TRUE(guarded.paddingKept());
    }
}

// A positive angle turns counter-clockwise on the screen: the right end of a flat bar rises.
TEST(Draw, TurnsCounterClockwise) {
    Image image(Size(41, 41), COLOR_MODE_MONO);
    zero(image);
    drawRectangle(image, Rect(5, 20, 36, 21), Color::WHITE, 1, 0.7853982f);
    EXPECT_EQ(255, *image.data(31, 9));
    EXPECT_EQ(255, *image.data(9, 31));
    EXPECT_EQ(0, *image.data(9, 9));
}

TEST(Draw, LinesPassThroughBothEndsWithoutGaps) {
    std::mt19937 random(5);
    for (int i = 0; i < 200; ++i) {
        Image image(Size(30, 20), COLOR_MODE_BGR);
        zero(image);
        const Point a(int(random() % 30), int(random() % 20)),
            b(int(random() % 30), int(random() % 20));
        drawLine(image, a, b, Color(1, 2, 3, 4), 1);
        EXPECT_EQ(3, image.data(a.x, a.y)[0]);
        EXPECT_EQ(1, image.data(b.x, b.y)[2]);
        int drawn = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 30; ++x) {
                if (image.data(x, y)[1] == 0) continue;
                ++drawn;
                const double dx = b.x - a.x, dy = b.y - a.y, length = std::hypot(dx, dy);
                const double off = std::fabs(dx * (y - a.y) - dy * (x - a.x));
                EXPECT_LE(off, 0.71 * length);
            }
        EXPECT_EQ(1 + std::max(std::abs(b.x - a.x), std::abs(b.y - a.y)), drawn);
    }
}

TEST(Sobel, DifferencesOfRandomImages) {
    for (const Size& size : oddSizes())
        for (const Rect& rect : rectsIn(size)) {
            const GuardedImage source(size, COLOR_MODE_MONO, 3, 1);
            GuardedImage target(size, COLOR_MODE_GRADIENT, 4, 2);
            SobelGradient(source.image, target.image, rect);
            EXPECT_TRUE(target.paddingKept());
            const Rect area = rect == Rect() ? Rect(size) : rect;
            for (int y = area.top; y < area.bottom; ++y)
                for (int x = area.left; x < area.right; ++x) {
                    int sums[2] = {};
                    const bool border =
                        x == 0 || y == 0 || x == size.width - 1 || y == size.height - 1;
                    for (int v = -1; v <= 1 && !border; ++v)
                        for (int u = -1; u <= 1; ++u) {
                            const int value = *source.image.data(x + u, y + v);
                            sums[0] += value * u * (2 - v * v);
                            sums[1] += value * v * (2 - u * u);
                        }
                    for (int c = 0; c < 2; ++c)
                        ASSERT_EQ(static_cast<signed char>(std::trunc(sums[c] / 8.0)),
                                  static_cast<signed char>(target.image.data(x, y)[c]))
                            << size << " " << x << " " << y;
                }
            EXPECT_TRUE(area.left == 0 || target.before(0, 0, 1) == target.image.data(0, 0)[1]);
        }
}
