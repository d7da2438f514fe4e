#pragma once

#include <chrono>
#include <string>

namespace training {

/// What a long run tells its user on standard error: lines that stay, which also gather into the
/// training log, and, on a terminal, one line that moves, with the share done and the time left.
class Progress {
public:
    /// `planned` is the sum of all `advance` calls to come, in any unit of about equal cost.
    Progress(bool moving, double planned);
    ~Progress();

    /// A line that stays. Lines hold no clock times: the log belongs to the reproducible output.
    void line(const std::string& text);
    /// `amount` of the planned work was done; `what` says at which step the run is.
    void advance(double amount, const std::string& what);
    /// Work that an earlier run did; the forecast does not count it as speed.
    void skip(double amount) { skipped_ += amount; }

    const std::string& log() const { return log_; }
    void restoreLog(const std::string& log) { log_ = log; }

    /// "12:05" or "1:02:03".
    static std::string clockText(double seconds);

private:
    void clearMovingLine();

    const bool moving_;
    const double planned_;
    double done_ = 0, skipped_ = 0;
    std::string log_;
    size_t shown_ = 0;
    const std::chrono::steady_clock::time_point start_;
    std::chrono::steady_clock::time_point lastShown_;
};

}  // namespace training
