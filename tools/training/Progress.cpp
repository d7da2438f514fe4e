#include "Progress.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace training {

namespace {

double secondsBetween(std::chrono::steady_clock::time_point from,
                      std::chrono::steady_clock::time_point to) {
    return std::chrono::duration<double>(to - from).count();
}

}  // namespace

Progress::Progress(bool moving, double planned)
    : moving_(moving), planned_(planned), start_(std::chrono::steady_clock::now()) {}

Progress::~Progress() {
    clearMovingLine();
}

void Progress::line(const std::string& text) {
    clearMovingLine();
    std::fprintf(stderr, "%s\n", text.c_str());
    log_ += text + "\n";
}

void Progress::advance(double amount, const std::string& what) {
    done_ += amount;
    const auto now = std::chrono::steady_clock::now();
    if (!moving_ || secondsBetween(lastShown_, now) < 0.5) return;
    lastShown_ = now;
    const double left = std::max(planned_ - skipped_ - done_, 0.0);
    const double share = 1 - left / planned_;
    char head[64];
    std::snprintf(head, sizeof head, "[%3.0f%%] ", 100 * share);
    const std::string text =
        head + what + "  ETA " + clockText(secondsBetween(start_, now) * left / done_);
    std::fprintf(stderr, "\r%-*s", static_cast<int>(shown_), text.c_str());
    shown_ = text.size();
}

std::string Progress::clockText(double seconds) {
    const long whole = std::lround(seconds);
    char text[32];
    if (whole >= 3600) {
        std::snprintf(text, sizeof text, "%ld:%02ld:%02ld", whole / 3600, whole / 60 % 60,
                      whole % 60);
    } else {
        std::snprintf(text, sizeof text, "%02ld:%02ld", whole / 60, whole % 60);
    }
    return text;
}

void Progress::clearMovingLine() {
    if (shown_ > 0) std::fprintf(stderr, "\r%*s\r", static_cast<int>(shown_), "");
    shown_ = 0;
}

}  // namespace training
