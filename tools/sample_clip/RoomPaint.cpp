#include "RoomPaint.h"

#include <algorithm>
#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "Dice.h"

namespace sample {

namespace {

using cv::Point;
using cv::Rect;
using cv::Scalar;

Scalar scaled(const Scalar& colour, double factor) {
    return colour * factor;
}

void box(cv::Mat& image, const Rect& rect, const Scalar& colour) {
    cv::rectangle(image, rect, colour, cv::FILLED);
}

// Lighter above and on the left, darker below and on the right.
void bevel(cv::Mat& image, const Rect& r, const Scalar& colour) {
    const Point right(r.x + r.width - 1, r.y), below(r.x, r.y + r.height - 1);
    const Point corner(right.x, below.y);
    cv::line(image, r.tl(), right, scaled(colour, 1.25));
    cv::line(image, r.tl(), below, scaled(colour, 1.15));
    cv::line(image, right, corner, scaled(colour, .6));
    cv::line(image, below, corner, scaled(colour, .55));
}

// Multiplies with noise of several sizes: plaster, wood, cloth.
void grain(cv::Mat image, Dice& dice, float strength, const cv::Size& coarse) {
    cv::Mat sum(image.size(), CV_32F, Scalar(1));
    for (int octave = 1; octave <= 3; ++octave) {
        cv::Mat small(std::max(2, image.rows * octave * 2 / coarse.height),
                      std::max(2, image.cols * octave * 2 / coarse.width), CV_32F);
        for (int i = 0; i < int(small.total()); ++i)
            small.at<float>(i / small.cols, i % small.cols) = dice.normal();
        cv::Mat large;
        cv::resize(small, large, image.size(), 0, 0, cv::INTER_CUBIC);
        sum += large * (strength / float(octave));
    }
    cv::Mat factors;
    cv::merge(std::vector<cv::Mat>(3, sum), factors);
    cv::multiply(image, factors, image, 1, CV_8U);
}

Scalar someColour(Dice& dice) {
    const float light = dice.between(45, 190);
    return {light * dice.between(.5f, 1.1f), light * dice.between(.6f, 1.05f),
            light * dice.between(.7f, 1.15f)};
}

void paintWall(cv::Mat& image, Dice& dice) {
    for (int y = 0; y < image.rows; ++y) {
        const double shade = 1 - .25 * y / image.rows;
        image.row(y).setTo(scaled({150, 168, 178}, shade));
    }
    for (int y = 8; y < image.rows; y += 26) {
        for (int x = y / 26 % 2 * 13; x < image.cols; x += 26) {
            const Point centre(x, y);
            cv::ellipse(image, centre, {4, 7}, 0, 0, 360, {132, 150, 166}, 1, cv::LINE_AA);
            cv::line(image, centre + Point(0, 8), centre + Point(0, 16), {138, 156, 162}, 1,
                     cv::LINE_AA);
        }
    }
    grain(image, dice, .03f, {60, 60});
}

int paintBook(cv::Mat& image, Dice& dice, const Point& foot) {
    const int width = dice.whole(7, 17), height = dice.whole(52, 84);
    const Rect spine(foot.x, foot.y - height, width, height);
    const Scalar colour = someColour(dice);
    box(image, spine, colour);
    bevel(image, spine, colour);
    const Scalar ink = scaled(colour, dice.whole(0, 1) ? .45 : 1.6);
    const int band = dice.whole(6, 16);
    cv::line(image, spine.tl() + Point(1, band), spine.tl() + Point(width - 2, band), ink, 2);
    // A title, too small to be read.
    for (int y = band + 7; y < height - 14; y += dice.whole(3, 5)) {
        const int reach = dice.whole(1, std::max(1, width / 2 - 2));
        cv::line(image, spine.tl() + Point(width / 2 - reach, y),
                 spine.tl() + Point(width / 2 + reach, y), ink);
    }
    return width + (dice.whole(0, 5) == 0 ? dice.whole(3, 9) : 1);
}

void paintCarton(cv::Mat& image, Dice& dice, const Point& foot) {
    const Rect carton(foot.x, foot.y - 58, 66, 58);
    const Scalar colour(88, 128, 162);
    box(image, carton, colour);
    grain(image(carton), dice, .06f, {20, 6});
    bevel(image, carton, colour);
    box(image, {carton.x + 26, carton.y, 13, 58}, {120, 160, 186});
    box(image, {carton.x + 6, carton.y + 34, 16, 14}, {215, 220, 222});
    for (int i = 0; i < 4; ++i) {
        cv::line(image, {carton.x + 8, carton.y + 37 + 3 * i},
                 {carton.x + 18, carton.y + 37 + 3 * i}, {60, 60, 60});
    }
}

void paintVase(cv::Mat& image, const Point& foot) {
    for (int y = 0; y < 64; ++y) {
        const double width = 10 + 12 * std::sin(y * .049) * std::sin(y * .049 + .4);
        for (int x = int(-width); x <= int(width); ++x) {
            const double shade = .55 + .5 * std::cos((x / width + .35) * 1.3);
            image.at<cv::Vec3b>(foot.y - y, foot.x + x) =
                cv::Vec3b(uchar(150 * shade), uchar(105 * shade), uchar(52 * shade));
        }
    }
    for (int i = -3; i <= 3; ++i) {
        cv::line(image, foot - Point(0, 62), foot - Point(-7 * i, 108 - 4 * i * i), {52, 92, 96}, 1,
                 cv::LINE_AA);
        cv::circle(image, foot - Point(-7 * i, 108 - 4 * i * i), 4, {90, 140, 205}, cv::FILLED,
                   cv::LINE_AA);
    }
}

void paintShelves(cv::Mat& image, Dice& dice) {
    const Rect unit(40, 40, 250, 420);
    const Scalar wood(52, 78, 112);
    box(image, unit, scaled(wood, .42));
    for (int y : {135, 238, 341, 448}) {
        int x = unit.x + 12;
        while (x < unit.x + unit.width - 30) x += paintBook(image, dice, {x, y});
        box(image, {unit.x, y, unit.width, 10}, wood);
        cv::line(image, {unit.x, y}, {unit.x + unit.width, y}, scaled(wood, 1.4));
        cv::line(image, {unit.x, y + 10}, {unit.x + unit.width, y + 10}, scaled(wood, .3), 2);
    }
    box(image, {128, 280, 72, 61}, scaled(wood, .42));
    paintCarton(image, dice, {132, 341});
    box(image, {200, 62, 60, 73}, scaled(wood, .42));
    paintVase(image, {232, 238});
    for (int x : {unit.x, unit.x + unit.width - 10}) {
        box(image, {x, unit.y, 10, unit.height}, wood);
        cv::line(image, {x, unit.y}, {x, unit.y + unit.height}, scaled(wood, 1.35));
    }
    box(image, {unit.x, unit.y - 8, unit.width, 12}, scaled(wood, 1.1));
    grain(image(unit), dice, .05f, {40, 9});
}

void paintPictures(cv::Mat& image, Dice& dice) {
    const Rect frame(330, 90, 96, 124);
    box(image, frame, {40, 52, 66});
    box(image, frame - Point(-5, -5) - cv::Size(10, 10), {205, 212, 214});
    const Rect print(frame.x + 16, frame.y + 18, 64, 86);
    box(image, print, {168, 140, 96});
    for (int i = 0; i < 26; ++i) {
        const Point at(print.x + dice.whole(8, 56), print.y + dice.whole(8, 78));
        cv::ellipse(image, at, {dice.whole(2, 8), dice.whole(2, 8)}, dice.whole(0, 90), 0, 360,
                    someColour(dice), cv::FILLED, cv::LINE_AA);
    }
    bevel(image, frame, {60, 75, 92});
    const Rect note(444, 130, 48, 64);
    box(image, note, {190, 206, 212});
    for (int y = 8; y < 58; y += 5) {
        cv::line(image, note.tl() + Point(6, y), note.tl() + Point(dice.whole(24, 42), y),
                 {70, 66, 74});
    }
    cv::circle(image, {468, 84}, 22, {60, 66, 72}, cv::FILLED, cv::LINE_AA);
    cv::circle(image, {468, 84}, 19, {214, 220, 222}, cv::FILLED, cv::LINE_AA);
    for (int hour = 0; hour < 12; ++hour) {
        const double angle = hour * CV_PI / 6;
        cv::circle(image, {int(468 + 15 * std::cos(angle)), int(84 + 15 * std::sin(angle))}, 1,
                   {50, 50, 50}, cv::FILLED, cv::LINE_AA);
    }
    cv::line(image, {468, 84}, {468, 74}, {40, 40, 40}, 2, cv::LINE_AA);
    cv::line(image, {468, 84}, {478, 90}, {40, 40, 40}, 1, cv::LINE_AA);
}

void paintWindowFrame(cv::Mat& image) {
    const Rect pane = windowPane;
    const Scalar paint(196, 204, 206);
    box(image, pane - Point(12, 12) + cv::Size(24, 24), paint);
    bevel(image, pane - Point(12, 12) + cv::Size(24, 24), paint);
    box(image, {pane.x - 20, pane.y + pane.height + 10, pane.width + 40, 12}, scaled(paint, .95));
    cv::line(image, {pane.x - 20, pane.y + pane.height + 22},
             {pane.x + pane.width + 20, pane.y + pane.height + 22}, scaled(paint, .5), 2);
}

// Paints into the front and notes the place as covered.
class FrontPainter {
public:
    FrontPainter(cv::Mat& front, cv::Mat& share) : front_(front), share_(share) {}

    void fill(const std::vector<Point>& outline, const Scalar& colour) {
        cv::fillPoly(front_, std::vector<std::vector<Point>>{outline}, colour);
        cv::fillPoly(share_, std::vector<std::vector<Point>>{outline}, 255);
    }
    void stroke(const Point& a, const Point& b, const Scalar& colour, int width) {
        cv::line(front_, a, b, colour, width);
        cv::line(share_, a, b, 255, width);
    }
    void rect(const Rect& r, const Scalar& colour) {
        box(front_, r, colour);
        box(share_, r, 255);
        bevel(front_, r, colour);
    }
    void disc(const Point& centre, const cv::Size& axes, const Scalar& colour) {
        cv::ellipse(front_, centre, axes, 0, 0, 360, colour, cv::FILLED);
        cv::ellipse(share_, centre, axes, 0, 0, 360, 255, cv::FILLED);
    }

private:
    cv::Mat& front_;
    cv::Mat& share_;
};

void paintChair(FrontPainter& paint) {
    const Scalar wood(46, 66, 92);
    for (int i = 0; i < 6; ++i) {
        const int x = 128 + 22 * i;
        paint.stroke({x, 392}, {x - 4 + i, 520}, scaled(wood, i % 2 ? 1.25 : 1.05), 7);
    }
    paint.stroke({112, 390}, {254, 386}, scaled(wood, 1.45), 13);
    paint.stroke({112, 396}, {104, 600}, wood, 11);
    paint.stroke({254, 392}, {262, 600}, scaled(wood, .9), 11);
}

void paintDesk(FrontPainter& paint, cv::Mat& front, Dice& dice) {
    paint.fill({{0, 520}, {760, 484}, {760, 600}, {0, 600}}, {70, 104, 140});
    grain(front(Rect(0, 484, 760, 116)), dice, .07f, {160, 8});
    paint.stroke({0, 520}, {760, 484}, {96, 136, 172}, 3);
}

void paintDeskThings(FrontPainter& paint, cv::Mat& front, Dice& dice) {
    paint.rect(monitorScreen - Point(7, 7) + cv::Size(14, 14), {40, 40, 42});
    paint.fill({{446, 443}, {466, 443}, {470, 488}, {442, 488}}, {48, 48, 50});
    paint.disc({456, 496}, {40, 8}, {44, 44, 46});
    // A mug, a stack of papers, a lamp, a keyboard.
    paint.rect({336, 462, 34, 44}, {52, 60, 168});
    paint.disc({353, 462}, {17, 5}, {30, 34, 90});
    for (int i = 0; i < 9; ++i) {
        const int x = 548 + dice.whole(-5, 5);
        paint.stroke({x, 506 - 3 * i}, {x + 62, 503 - 3 * i},
                     scaled({208, 214, 216}, dice.between(.7f, 1.1f)), 3);
    }
    paint.stroke({62, 500}, {62, 330}, {52, 52, 54}, 6);
    paint.fill({{34, 336}, {90, 336}, {78, 286}, {46, 286}}, {150, 190, 208});
    paint.disc({62, 508}, {30, 9}, {48, 48, 50});
    paint.fill({{330, 530}, {500, 522}, {514, 556}, {322, 566}}, {56, 56, 58});
    for (int row = 0; row < 4; ++row) {
        for (int column = 0; column < 14; ++column) {
            cv::rectangle(front, Rect(334 + 12 * column - row, 534 + 7 * row - column / 2, 9, 5),
                          Scalar(112, 112, 116), cv::FILLED);
        }
    }
    paint.fill({{612, 470}, {668, 470}, {660, 520}, {620, 520}}, {72, 96, 158});
    paint.rect({608, 462, 64, 12}, {84, 110, 176});
}

}  // namespace

cv::Mat paintBack(const cv::Size& size) {
    cv::Mat image(size, CV_8UC3);
    Dice dice(7);
    paintWall(image, dice);
    paintShelves(image, dice);
    paintPictures(image, dice);
    paintWindowFrame(image);
    return image;
}

void paintFront(cv::Mat& front, cv::Mat& share) {
    Dice dice(11);
    FrontPainter paint(front, share);
    paintDesk(paint, front, dice);
    paintChair(paint);
    paintDeskThings(paint, front, dice);
}

}  // namespace sample
