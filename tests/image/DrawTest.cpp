#include "KZ_Draw.h"

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
    const char* const nothing = ".......\n.......\n.......\n.......\n.......\n";
    const struct {
        const char* what;
        Rect rect;
        int thickness;
        float radians;
        const char* picture;
    } rows[] = {
        {"outermost pixels", Rect(1, 1, 6, 4), 1, 0,
         ".......\n.#####.\n.#...#.\n.#####.\n.......\n"},
        {"thick", Rect(2, 2, 6, 4), 3, 0, ".......\n.######\n.######\n.######\n.######\n"},
        {"single pixel", Rect(3, 2, 4, 3), 1, 1, ".......\n.......\n...#...\n.......\n.......\n"},
        {"cut off", Rect(-9, 3, 5, 99), 1, 0, ".......\n.......\n.......\n#####..\n....#..\n"},
        {"quarter turn", Rect(1, 1, 6, 4), 1, 1.5707964f,
         "..###..\n..#.#..\n..#.#..\n..#.#..\n..###..\n"},
        // The right end of a flat bar rises.
        {"counter-clockwise", Rect(1, 2, 6, 3), 1, 0.7853982f,
         ".......\n....#..\n...#...\n..#....\n.......\n"},
        {"around the image", Rect(INT_MIN, INT_MIN, INT_MAX, INT_MAX), 1, 0.5f, nothing},
        {"empty", Rect(3, 3, 3, 5), 1, 0, nothing},
        {"no thickness", Rect(1, 1, 6, 4), 0, 0, nothing},
        {"thicker than the image", Rect(1, 1, 6, 4), INT_MAX, 0,
         "#######\n#######\n#######\n#######\n#######\n"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.what);
        GuardedImage guarded(Size(7, 5), COLOR_MODE_MONO, 3);
        zero(guarded.image);
        drawRectangle(guarded.image, row.rect, Color::WHITE, row.thickness, row.radians);
        EXPECT_EQ(row.picture, pictureOf(guarded.image));
        EXPECT_TRUE(guarded.paddingKept());
    }
}

TEST(Draw, LinesPassThroughBothEndsWithoutGaps) {
    std::mt19937 random(5);
    for (int i = 0; i < 200; ++i) {
        Image image(Size(30, 20), COLOR_MODE_BGR);
        zero(image);
        const Point a(int(random() % 30), int(random() % 20)),
            b(int(random() % 30), int(random() % 20));
        drawLine(image, a, b, Color(1, 2, 3, 4), 1);
        EXPECT_EQ(3, byteAt(image, a.x, a.y, 0));
        EXPECT_EQ(1, byteAt(image, b.x, b.y, 2));
        int drawn = 0;
        for (int y = 0; y < 20; ++y)
            for (int x = 0; x < 30; ++x) {
                if (byteAt(image, x, y, 1) == 0) continue;
                ++drawn;
                const double dx = b.x - a.x, dy = b.y - a.y;
                EXPECT_LE(std::fabs(dx * (y - a.y) - dy * (x - a.x)), 0.71 * std::hypot(dx, dy));
            }
        EXPECT_EQ(1 + std::max(std::abs(b.x - a.x), std::abs(b.y - a.y)), drawn);
    }
}

TEST(Sobel, DifferencesOfRandomImages) {
    const auto run = [](const Image& source, const Image&, Image& target, const Rect& rect) {
        SobelGradient(source, target, rect);
    };
    expectOnViews(COLOR_MODE_MONO, COLOR_MODE_GRADIENT, run,
                  [](const Image& source, const Image&, int x, int y, int c) {
                      int sum = 0;
                      const bool border =
                          x == 0 || y == 0 || x == source.width() - 1 || y == source.height() - 1;
                      for (int i = -1; i <= 1 && !border; ++i)
                          for (int side = -1; side <= 1; side += 2) {
                              const int u = c ? i : side, v = c ? side : i;
                              sum += side * (2 - i * i) * byteAt(source, x + u, y + v);
                          }
                      return static_cast<unsigned char>(sum / 8);
                  });
}
