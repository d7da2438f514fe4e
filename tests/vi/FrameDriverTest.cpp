#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>
#include <functional>
#include <new>

#include "KZ_DebugImages.h"
#include "KZ_InheritedState.h"
#include "KZ_NumericState.h"
#include "KZ_StateTags.h"
#include "KZ_Utils.h"
#include "KZ_ViDetectorInterface.h"
#include "KZ_ViResultState.h"
#include "KZ_Yuv420Converter.h"
#include "LogCapture.h"

using namespace KZ;
using namespace testing_support;

namespace {

// Folders of profiles that were asked for, and the error that the platform answers.
std::vector<std::string> madeFolders;
int folderError = EEXIST;

class Engine : public ViDetectorInterface {
public:
    using ViDetectorInterface::commandLineParser_;
    using ViDetectorInterface::frameNum_;
    using ViDetectorInterface::imageDatas_;
    using ViDetectorInterface::init;
    using ViDetectorInterface::parameters_;
    using ViDetectorInterface::resetCount_;
    using ViDetectorInterface::stateAggregator_;

    void init(const std::string& parameters) override {
        started += parameters;
        commandLineParser_.parse(parameters);
    }
    void detect() override { onFrame(); }

    std::string started;
    std::function<void()> onFrame = [] {};
};

ViFrameParameters frameOf(const Image& image) {
    ViFrameParameters params;
    params.images["mono"].createRef(image);
    return params;
}

}  // namespace

// The test's own: nothing is looked up or made at the root of the machine that runs it.
extern "C" int access(const char* path, int mode) noexcept {
    if (std::string(path).rfind("/storage", 0) == 0) return -1;
    return static_cast<int>(syscall(SYS_faccessat, AT_FDCWD, path, mode));
}

extern "C" int mkdir(const char* path, mode_t mode) noexcept {
    if (std::string(path).rfind("/storage", 0) != 0)
        return static_cast<int>(syscall(SYS_mkdirat, AT_FDCWD, path, mode));
    madeFolders.push_back(path);
    errno = folderError;
    return folderError ? -1 : 0;
}

TEST(FrameDriver, OptionsGatherAsOneCommandLine) {
    Engine engine;
    engine.setParameter("a", nullptr);
    engine.setParameter("size", "Size(2, 3)");
    EXPECT_EQ(" --a --size=\"Size(2, 3)\"", engine.parameters_);
    EXPECT_EQ(0, engine.init());
    EXPECT_EQ(engine.parameters_, engine.started);
    EXPECT_EQ("Size(2, 3)", engine.commandLineParser_.getString("--size"));
    engine.processFrame(frameOf(Image(Size(4, 4), COLOR_MODE_MONO)));
    EXPECT_EQ("", engine.parameters_);
}

TEST(FrameDriver, DetectorSeesImagesNumberAndParameters) {
    Engine engine;
    Image image(Size(4, 6), COLOR_MODE_MONO);
    zero(image);
    ViFrameParameters params = frameOf(image);
    params.parameters["key"] = "value";
    SharedPtr<Yuv420Converter> bgr;
    std::vector<int> seen;
    engine.onFrame = [&] {
        SharedPtr<ImageData>& root = engine.imageDatas_["mono"];
        if (!bgr)
            bgr = SharedPtr<Yuv420Converter>(
                new Yuv420Converter(root, COLOR_MODE_BGR, false, false, false));
        seen.push_back(bgr->get().data()[0]);
        seen.push_back(engine.stateAggregator_->get<NumericState<int, _FrameNumState>>().value);
        auto& parameters =
            engine.stateAggregator_
                ->get<InheritedState<std::map<std::string, std::string>, _FrameParametersState>>();
        EXPECT_EQ(params.parameters, parameters);
        ViResultState::viResult.floats.push_back(1);
        EXPECT_TRUE(DebugImages::debugImages_.empty());
        DebugImages::add(root->get(), "root", 1);
    };
    for (int i = 0; i < 3; ++i) {
        image.data()[0] = static_cast<unsigned char>(100 + i);
        image.data()[16] = image.data()[17] = 128;
        EXPECT_EQ(1u, engine.processFrame(params).floats.size());
        if (i == 1) engine.init();  // the images stay as they are, their content must not
    }
    EXPECT_EQ(std::vector<int>({116, 0, 117, 1, 118, 2}), seen);
    DebugImages::reset();

    params.images["other"].createRef(image);
    EXPECT_EQ("no key 'other' in imageDatas_\n", assertionOf([&] { engine.processFrame(params); }));
}

TEST(FrameDriver, ExceptionCostsResultsAndTrackingOnly) {
    Engine engine;
    const ViFrameParameters params = frameOf(Image(Size(4, 4), COLOR_MODE_MONO));
    engine.processFrame(params);
    engine.onFrame = [] {
        ViResultState::viResult.gestures = {"half"};
        KZ_ASSERT(0, "broken");
    };
    LogCapture log;
    EXPECT_TRUE(engine.processFrame(params).gestures.empty());
    EXPECT_NE(std::string::npos,
              log.text().find("during execution of command 'detect();' non-standart exception"));
    EXPECT_EQ(1, engine.resetCount_);
    EXPECT_EQ(1, engine.frameNum_);
}

TEST(FrameDriver, FlipsInTheFirstImageAndListsKeys) {
    Engine engine;
    engine.setParameter("flip", "true");
    engine.init();
    engine.onFrame = [] {
        ViResult& result = ViResultState::viResult;
        result.rects = {RectF(10.25f, 20.5f, 50.75f, 60.75f), RectF(320.5f, -1.5f, 321.25f, 0)};
        result.points = {PointF(10, 20)};
        result.points3d = {Point3d(10, 20, 30)};
        result.parameters = {{{"b", "1"}, {"a", "2"}}, {}, {{"key-ring", "old"}}};
    };
    const ViResult& result = engine.processFrame(frameOf(Image(Size(320, 4), COLOR_MODE_MONO)));
    EXPECT_EQ(RectF(269, 20, 309, 60), result.rects[0]);
    EXPECT_EQ("Rect(-1, -1, 0, 0)", toStr(result.rects[1]));
    EXPECT_EQ(PointF(309, 20), result.points[0]);
    EXPECT_EQ(Point3d(10, 20, 30), result.points3d[0]);
    EXPECT_EQ("a b ", result.parameters[0].at("key-ring"));
    EXPECT_TRUE(result.parameters[1].empty());
    EXPECT_EQ("key-ring ", result.parameters[2].at("key-ring"));
}

TEST(FrameDriver, ProfileFolderIsAskedForEveryHundredFramesAndOnReset) {
    Engine engine;
    const ViFrameParameters params = frameOf(Image(Size(1, 1), COLOR_MODE_MONO));
    const std::vector<std::string> all = {"/storage", "/storage/emulated", "/storage/emulated/0",
                                          "/storage/emulated/0/tmp"};
    madeFolders.clear();
    for (int i = 0; i < 99; ++i) engine.processFrame(params);
    EXPECT_TRUE(madeFolders.empty());
    engine.processFrame(params);
    EXPECT_EQ(all, madeFolders);
    madeFolders.clear();
    folderError = EROFS;
    LogCapture log;
    engine.release();
    folderError = EEXIST;
    EXPECT_EQ(std::vector<std::string>({"/storage"}), madeFolders);
    EXPECT_EQ("Failed mkdir /storage/emulated/0/tmp", log.text());
    EXPECT_EQ(0, engine.frameNum_);
}
