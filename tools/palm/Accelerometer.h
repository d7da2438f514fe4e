#pragma once

#include <string>
#include <vector>

namespace palm {

/// One reading of the phone's accelerometer, m/s2.
struct AccelerationReading {
    double time;  ///< seconds from the first frame
    float x, y, z;
};

/// Readings by time. An application would get them from its sensor callback; here they come from a
/// CSV file with the columns time_s, x, y, z and one header line.
class AccelerometerLog {
public:
    AccelerometerLog() = default;
    /// Throws InputError, naming file and line, for anything but rows of four numbers in order of
    /// time.
    static AccelerometerLog read(const std::string& path);

    /// The newest reading not later than `time`, or null before the first.
    const AccelerationReading* at(double time) const;
    bool empty() const { return readings_.empty(); }

private:
    std::vector<AccelerationReading> readings_;
};

}  // namespace palm
