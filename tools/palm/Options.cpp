#include "Options.h"

#include <CLI/CLI.hpp>
#include <cstdio>
#include <iostream>

#include "Error.h"

namespace palm {

namespace {

cv::Size parseSize(const std::string& text) {
    int width = 0, height = 0;
    char rest = 0;
    const int found = std::sscanf(text.c_str(), "%dx%d%c", &width, &height, &rest);
    const bool inRange = width >= 64 && height >= 64 && width <= 4096 && height <= 4096;
    if (found != 2 || !inRange || width % 2 != 0 || height % 2 != 0) {
        throw InputError(
            "--size: two even numbers from 64 to 4096 expected, such as 640x480, found \"" + text +
            "\"");
    }
    return cv::Size(width, height);
}

void check(const Options& options) {
    if (options.input.empty() == options.camera.empty()) {
        throw InputError(
            "give one input: a video, a picture, a folder of pictures, or --camera /dev/video0");
    }
    const int nearest = options.minDistance.value_or(30),
              farthest = options.maxDistance.value_or(100);
    if (nearest < 1 || farthest <= nearest) {
        throw InputError("--max-distance (" + std::to_string(farthest) +
                         ") must be above --min-distance (" + std::to_string(nearest) +
                         "), and both above 0");
    }
    const int fov = options.fovAngle.value_or(89);
    if (fov < 1 || fov > 179) throw InputError("--fov-angle must lie in 1 to 179 degrees");
    if (options.stillFrames < 1) throw InputError("--still-frames must be at least 1");
}

}  // namespace

Command readOptions(int argc, char** argv, Options& options) {
    CLI::App app("Finds raised open palms in a video, in pictures or in a camera's frames.",
                 "palm");
    std::string size;
    app.add_option("input", options.input, "video, picture or folder of pictures");
    app.add_option("--camera", options.camera, "camera instead of a file, such as /dev/video0");
    app.add_option("--size", size,
                   "size of the frames handed to the library; others are fitted in with a border "
                   "(default: the input's shape, long side 640)");
    app.add_option("--camera-angle", options.cameraAngle,
                   "degrees by which the camera is turned (a phone held upright: 270)")
        ->capture_default_str();
    app.add_flag("--flip", options.flip, "mirror the results left to right (front camera)");
    app.add_option("--min-distance", options.minDistance, "nearest hand distance (default 30)");
    app.add_option("--max-distance", options.maxDistance, "farthest hand distance (default 100)");
    app.add_option("--fov-angle", options.fovAngle,
                   "field of view across the diagonal, degrees (default 89)");
    app.add_option("--accelerometer", options.accelerometer,
                   "CSV of accelerometer readings (time_s,x,y,z); sets the camera angle too");
    app.add_option("--still-frames", options.stillFrames, "frames for which a picture is shown")
        ->capture_default_str();
    app.add_option("--json", options.json, "write the gestures as JSON to this file (- is stdout)");
    app.add_option("--video", options.video, "write the marked-up frames to this .mp4");
    app.add_option("--sheet", options.sheet, "write a sheet of marked-up frames to this .png");
    app.add_flag("--show", options.show, "show the marked-up frames in a window");
    app.add_flag("--stages", options.stages,
                 "tell for every frame what each stage of the detector kept, and draw it");
    app.add_flag("--verbose", options.verbose, "print the library's log records to stderr");
    try {
        app.parse(argc, argv);
    } catch (const CLI::CallForHelp&) {
        std::cout << app.help();
        return Command::STOP;
    } catch (const CLI::ParseError& error) {
        throw InputError(std::string(error.what()) + ". Try: palm --help");
    }
    if (!size.empty()) options.size = parseSize(size);
    check(options);
    return Command::RUN;
}

}  // namespace palm
