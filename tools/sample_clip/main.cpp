#include <CLI/CLI.hpp>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <opencv2/videoio.hpp>
#include <stdexcept>

#include "Exposure.h"
#include "Phone.h"

namespace sample {

namespace {

namespace fs = std::filesystem;

std::ofstream openText(const fs::path& path) {
    std::ofstream file(path);
    if (!file) throw std::runtime_error("cannot write \"" + path.string() + "\"");
    return file;
}

std::string line(const char* format, double a, double b, double c, double d) {
    char text[128];
    std::snprintf(text, sizeof(text), format, a, b, c, d);
    return text;
}

void writeTruth(const Exposure& exposure, const fs::path& path) {
    std::ofstream file = openText(path);
    file << "frame,time_s,state,cx,cy,palm_width,angle,side\n";
    for (int i = 0; i < frameCount; ++i) {
        const FrameTruth truth = exposure.truth(i);
        char time[32];
        std::snprintf(time, sizeof(time), "%.4f", i / framesPerSecond);
        file << i << "," << time << "," << nameOf(truth.state) << ",";
        if (truth.hand) {
            file << line("%.1f,%.1f,%.1f,%.1f", truth.where.cx, truth.where.cy,
                         truth.where.palmWidth, truth.where.angle)
                 << (truth.left ? ",LEFT\n" : ",RIGHT\n");
        } else {
            file << ",,,,\n";
        }
    }
}

void writeAcceleration(const fs::path& path) {
    std::ofstream file = openText(path);
    file << "time_s,x,y,z\n";
    const int readings = int(frameCount / framesPerSecond * accelerometerRate);
    for (int i = 0; i < readings; ++i) {
        const double time = i / accelerometerRate;
        const hand::Vector3 a = accelerationAt(time);
        file << line("%.2f,%.3f,%.3f,%.3f\n", time, a.x, a.y, a.z);
    }
}

void writeVideo(const Exposure& exposure, const fs::path& path) {
    cv::VideoWriter writer(path.string(), cv::CAP_FFMPEG,
                           cv::VideoWriter::fourcc('a', 'v', 'c', '1'), framesPerSecond,
                           cv::Size(640, 480));
    if (!writer.isOpened()) throw std::runtime_error("cannot write \"" + path.string() + "\"");
    for (int i = 0; i < frameCount; ++i) {
        writer.write(exposure.frame(i));
        if (i % 10 == 0) std::cerr << "\r" << i << " of " << frameCount << " frames" << std::flush;
    }
    std::cerr << "\r" << frameCount << " of " << frameCount << " frames\n";
}

int run(int argc, char** argv) {
    CLI::App app("Renders the synthetic sample clip with its truth and accelerometer log");
    std::string mesh, folder;
    app.add_option("--mesh", mesh, "right.glb of the npm package @webxr-input-profiles/assets")
        ->required()
        ->check(CLI::ExistingFile);
    app.add_option("--out", folder, "Folder for raised_palm.mp4, truth.csv and acceleration.csv")
        ->required();
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? 0 : 2;
    }
    fs::create_directories(folder);
    const hand::HandMesh hand = hand::loadHandMesh(mesh);
    const Exposure exposure(hand);
    writeAcceleration(fs::path(folder) / "acceleration.csv");
    writeTruth(exposure, fs::path(folder) / "truth.csv");
    writeVideo(exposure, fs::path(folder) / "raised_palm.mp4");
    return 0;
}

}  // namespace

}  // namespace sample

int main(int argc, char** argv) {
    try {
        return sample::run(argc, argv);
    } catch (const std::exception& error) {
        std::cerr << "sample_clip: " << error.what() << "\n";
        return 1;
    }
}
