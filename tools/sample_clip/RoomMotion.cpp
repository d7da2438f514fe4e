#include "RoomMotion.h"

#include <cmath>
#include <opencv2/imgproc.hpp>
#include <vector>

#include "Dice.h"
#include "RoomPaint.h"

namespace sample {

namespace {

using cv::Point;
using cv::Point2f;
using cv::Scalar;

// Drawing functions take 1/16 of a pixel, so that slow things do not jump.
constexpr int fraction = 4;
Point fixed(const Point2f& p) {
    return {int(std::lround(p.x * 16)), int(std::lround(p.y * 16))};
}

void limb(cv::Mat& image, const Point2f& a, const Point2f& b, const Scalar& colour, int width) {
    cv::line(image, fixed(a), fixed(b), colour, width, cv::LINE_AA, fraction);
}

void fill(cv::Mat& image, const std::vector<Point2f>& outline, const Scalar& colour) {
    std::vector<Point> points;
    for (const Point2f& p : outline) points.push_back(fixed(p));
    cv::fillPoly(image, std::vector<std::vector<Point>>{points}, colour, cv::LINE_AA, fraction);
}

Point2f swing(const Point2f& from, float length, float angle) {
    return {from.x + length * std::sin(angle), from.y + length * std::cos(angle)};
}

// A leaf from its stalk outwards, folded lengthwise: one half lighter.
void leaf(cv::Mat& image, const Point2f& stalk, float length, float angle, const Scalar& colour) {
    const Point2f tip = swing(stalk, length, angle);
    const auto edge = [&](float along, float aside) {
        return swing(swing(stalk, length * along, angle), length * aside, angle + float(CV_PI / 2));
    };
    fill(image, {stalk, edge(.3f, .17f), edge(.65f, .15f), tip}, colour);
    fill(image, {stalk, edge(.3f, -.17f), edge(.65f, -.15f), tip}, colour * 1.3);
    limb(image, stalk, tip, colour * .7, 1);
}

struct Stride {
    float x;          // of the hips
    float phase;      // of the legs
    float direction;  // 1 to the right
};

// First to the right, later back; out of the room in between.
Stride strideAt(float t) {
    const bool back = t > 7;
    const float gone = back ? t - 7.4f : t + .3f;
    return {back ? 830 - 128 * gone : -70 + 150 * gone, 6.2f * gone, back ? -1.f : 1.f};
}

void drawLeg(cv::Mat& room, const Stride& s, const Point2f& hips, float phase,
             const Scalar& colour) {
    const float thigh = .5f * std::sin(phase) * s.direction;
    const float shin = thigh - (.35f + .35f * std::cos(phase)) * s.direction;
    const Point2f knee = swing(hips, 80, thigh), foot = swing(knee, 78, shin);
    limb(room, hips, knee, colour, 34);
    limb(room, knee, foot, colour, 25);
    limb(room, foot, foot + Point2f(18 * s.direction, 4), {32, 34, 38}, 14);
}

void drawArm(cv::Mat& room, const Stride& s, const Point2f& shoulder, float phase,
             const Scalar& colour) {
    const float upper = .45f * std::sin(phase) * s.direction;
    const Point2f elbow = swing(shoulder, 62, upper);
    const Point2f wrist = swing(elbow, 52, upper + .4f * s.direction);
    limb(room, shoulder, elbow, colour, 24);
    limb(room, elbow, wrist, colour * .95, 19);
    limb(room, wrist, swing(wrist, 12, upper + .3f * s.direction), {112, 140, 178}, 15);
}

}  // namespace

void drawWindowView(cv::Mat& room, float t) {
    cv::Mat view = room(windowPane);
    for (int y = 0; y < view.rows; ++y) {
        view.row(y).setTo(Scalar(238 - y * .1, 228 - y * .12, 214 - y * .2));
    }
    Dice dice(23);
    for (int i = 0; i < 5; ++i) {
        const int left = i * 40 - 6, height = dice.whole(50, 104);
        cv::rectangle(view, cv::Rect(left, view.rows - height, 34, height),
                      Scalar(150, 158, 166) * dice.between(.7f, 1.1f), cv::FILLED);
        for (int y = 8; y < height; y += 14) {
            for (int x = 5; x < 30; x += 10) {
                cv::rectangle(view, cv::Rect(left + x, view.rows - height + y, 5, 7),
                              Scalar(96, 92, 90), cv::FILLED);
            }
        }
    }
    limb(view, {150, 245}, {128, 40}, {52, 62, 74}, 12);
    for (int i = 0; i < 170; ++i) {
        const float angle = dice.between(0, 6.283f), radius = dice.between(5, 88);
        const float sway =
            3.5f * std::sin(1.9f * t + radius * .03f) + 1.2f * std::sin(6 * t + float(i));
        const Point2f at(132 + radius * std::cos(angle) + sway,
                         72 + .75f * radius * std::sin(angle) + .4f * sway);
        const float light = dice.between(.6f, 1.25f);
        leaf(view, at, dice.between(10, 20),
             dice.between(-3, 3) + .25f * std::sin(4 * t + float(i)), Scalar(58, 118, 84) * light);
    }
    const Scalar bar(186, 194, 198);
    cv::rectangle(view, cv::Rect(view.cols / 2 - 4, 0, 8, view.rows), bar, cv::FILLED);
    cv::rectangle(view, cv::Rect(0, view.rows / 3, view.cols, 7), bar, cv::FILLED);
    // A curtain that the wind moves.
    for (int i = 0; i < 9; ++i) {
        const float x = float(i) * 7;
        const float blow = 9 * std::sin(1.4f * t + .25f * float(i));
        fill(view, {{x, 0}, {x + 7, 0}, {x + 7 + blow, 250}, {x + blow, 250}},
             Scalar(150, 160, 190) * (i % 2 ? .95 : .8));
    }
}

void drawWalker(cv::Mat& room, float t) {
    const Stride s = strideAt(t);
    const float bob = 4 * std::cos(2 * s.phase);
    const Point2f hips(s.x, 350 + bob), neck(s.x + 5 * s.direction, 218 + bob);
    const Scalar shirt(92, 76, 58), trousers(62, 52, 46);
    drawArm(room, s, neck + Point2f(0, 14), s.phase + float(CV_PI), shirt * .7);
    drawLeg(room, s, hips, s.phase, trousers * .75);
    drawLeg(room, s, hips, s.phase + float(CV_PI), trousers);
    fill(room,
         {neck + Point2f(-24, 4), neck + Point2f(22, 2), hips + Point2f(25, -50),
          hips + Point2f(22, 14), hips + Point2f(-24, 14), hips + Point2f(-28, -60)},
         shirt);
    limb(room, neck + Point2f(-10, 8), hips + Point2f(-14, -6), shirt * 1.2, 8);
    limb(room, neck, neck - Point2f(0, 16), {104, 132, 170}, 20);
    const Point2f head = neck + Point2f(4 * s.direction, -44);
    cv::ellipse(room, fixed(head), fixed({23, 30}), 6 * s.direction, 0, 360, {118, 148, 188},
                cv::FILLED, cv::LINE_AA, fraction);
    cv::ellipse(room, fixed(head - Point2f(5 * s.direction, 8)), fixed({24, 25}), 0, 0, 360,
                {36, 44, 58}, cv::FILLED, cv::LINE_AA, fraction);
    drawArm(room, s, neck + Point2f(0, 14), s.phase, shirt);
}

void drawMonitor(cv::Mat& room, float t) {
    cv::Mat screen = room(monitorScreen);
    screen.setTo(Scalar(74, 58, 46));
    const int scroll = int(26 * t);
    for (int y = -scroll % 7; y < screen.rows; y += 7) {
        Dice dice(uint32_t((y + scroll) / 7) * 7919 + 5);
        int x = 6 + 8 * dice.whole(0, 3);
        while (x < screen.cols - 20 && dice.whole(0, 6) > 0) {
            const int word = dice.whole(4, 18);
            cv::line(screen, {x, y}, {x + word, y}, Scalar(190, 200, 170) * dice.between(.6f, 1.1f),
                     2);
            x += word + 4;
        }
    }
}

void drawPlant(cv::Mat& room, float t) {
    Dice dice(31);
    for (int i = 0; i < 15; ++i) {
        const float lean = (float(i) - 7) * .17f + dice.between(-.08f, .08f);
        const float wind =
            .06f * std::sin(2.2f * t + .4f * float(i)) + .03f * std::sin(5.3f * t + float(i));
        const Point2f foot = Point2f(plantFoot) + Point2f(float(i - 7) * 2, -34);
        const float length = dice.between(46, 100);
        const Point2f bend = swing(foot, length * .6f, float(CV_PI) - lean - wind);
        limb(room, foot, bend, {46, 92, 62}, 2);
        leaf(room, bend, dice.between(40, 66), float(CV_PI) - 1.7f * lean - 2.2f * wind,
             Scalar(52, 112, 66) * dice.between(.65f, 1.2f));
    }
}

}  // namespace sample
