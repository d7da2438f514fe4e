#include "Accelerometer.h"

#include <algorithm>
#include <fstream>
#include <sstream>

#include "Error.h"

namespace palm {

namespace {

bool parseRow(const std::string& line, AccelerationReading& reading) {
    std::istringstream stream(line);
    char comma[3] = {};
    std::string rest;
    stream >> reading.time >> comma[0] >> reading.x >> comma[1] >> reading.y >> comma[2] >>
        reading.z;
    const bool separated = comma[0] == ',' && comma[1] == ',' && comma[2] == ',';
    return !stream.fail() && separated && !(stream >> rest);
}

}  // namespace

AccelerometerLog AccelerometerLog::read(const std::string& path) {
    std::ifstream file(path);
    if (!file) throw InputError("cannot open the accelerometer log \"" + path + "\"");
    AccelerometerLog log;
    std::string line;
    for (int number = 1; std::getline(file, line); ++number) {
        AccelerationReading reading;
        if (parseRow(line, reading)) {
            if (!log.empty() && reading.time < log.readings_.back().time) {
                throw InputError(path + ":" + std::to_string(number) + ": the time goes back");
            }
            log.readings_.push_back(reading);
        } else if (number > 1 && line.find_first_not_of(" \t\r") != std::string::npos) {
            throw InputError(path + ":" + std::to_string(number) +
                             ": four numbers expected (time_s,x,y,z), found \"" + line + "\"");
        }
    }
    if (log.empty()) throw InputError(path + ": no reading in it (columns time_s,x,y,z expected)");
    return log;
}

const AccelerationReading* AccelerometerLog::at(double time) const {
    const auto next = std::upper_bound(
        readings_.begin(), readings_.end(), time,
        [](double t, const AccelerationReading& reading) { return t < reading.time; });
    return next == readings_.begin() ? nullptr : &*(next - 1);
}

}  // namespace palm
