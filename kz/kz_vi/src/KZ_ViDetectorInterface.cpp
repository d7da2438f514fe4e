#include "KZ_ViDetectorInterface.h"

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cmath>
#include <vector>

#include "KZ_Assert.h"
#include "KZ_DebugImages.h"
#include "KZ_InheritedState.h"
#include "KZ_NumericState.h"
#include "KZ_StateTags.h"
#include "KZ_Stream.h"
#include "KZ_Utils.h"
#include "KZ_ViResultState.h"

namespace KZ {

namespace {

const int FRAMES_PER_PROFILE = 100;

using FrameNumState = NumericState<int, _FrameNumState>;
using FrameParametersState =
    InheritedState<std::map<std::string, std::string>, _FrameParametersState>;

template <typename Value>
std::string joinedKeys(const std::map<std::string, Value>& entries, const char* separator) {
    std::string keys;
    for (const auto& entry : entries) keys += entry.first + separator;
    return keys;
}

bool isLike(ImageData& node, const Image& image) {
    return node.getRaw().size() == image.size() && node.colorMode() == image.colorMode();
}

// Zero is added so that nothing comes out as -0.
float truncated(float value) {
    return std::trunc(value) + 0.f;
}

}  // namespace

ViDetectorInterface::ViDetectorInterface() {
    KZ_LOG_PLAIN("Build time: " << __DATE__ << " " << __TIME__ << "\n");
    commandLineParser_.add("", "--flip", "false", false, CommandLineParser::ValueType::BOOL,
                           "Flip output results position corresponding first image.");
    commandLineParser_.add("", "--size", "dummy", false, CommandLineParser::ValueType::STRING, "");
    stateAggregator_ = StateAggregator::newDetectorState();
}

ViEngineInfo& ViDetectorInterface::getEngineInfo() {
    if (!viEngineInfo_.imageNames.empty() && !imageDatas_.empty()) {
        KZ_ASSERT_EQ(viEngineInfo_.imageNames.size(), imageDatas_.size());
        for (size_t i = 0; i < viEngineInfo_.imageNames.size(); ++i)
            KZ_ASSERT(imageDatas_.count(viEngineInfo_.imageNames[i]),
                      viEngineInfo_.imageNames[i] << " in " << joinedKeys(imageDatas_, " "));
    }
    if (viEngineInfo_.imageNames.empty())
        for (const auto& entry : imageDatas_) viEngineInfo_.imageNames.push_back(entry.first);
    return viEngineInfo_;
}

void ViDetectorInterface::setParameter(const char* key, const char* value) {
    parameters_ += std::string(" --") + key;
    if (value && *value) parameters_ += std::string("=\"") + value + "\"";
}

int ViDetectorInterface::init() {
    init(parameters_);
    imagesInitialized_ = false;
    return 0;
}

void ViDetectorInterface::init(const std::string&) {}

void ViDetectorInterface::initWithImages(const std::string&,
                                         const std::map<std::string, Image>& images) {
    initImages(images);
}

void ViDetectorInterface::initImages(const std::map<std::string, Image>& images) {
    for (const auto& entry : images) {
        const Image& image = entry.second;
        const auto found = imageDatas_.find(entry.first);
        if (found == imageDatas_.end() || !isLike(*found->second, image)) {
            // Made before it is entered: the map never holds a name without a node.
            const SharedPtr<ImageData> node(new ImageData(image.size(), image.colorMode()));
            imageDatas_[entry.first] = node;
        }
        imageDatas_[entry.first]->set(image);
    }
}

void ViDetectorInterface::reset() {
    saveProfile();
    if (stateAggregator_) stateAggregator_->reset();
    frameNum_ = 0;
    ++resetCount_;
}

ViResult& ViDetectorInterface::processFrame(const ViFrameParameters& params) {
    KZ_LOG_INFO("------------------------- frameNum_ = " << frameNum_
                                                         << " ------------------------------");
    for (const auto& entry : params.parameters) {
        if (entry.first == "log")
            KZ_LOG_PLAIN(entry.second);
        else
            KZ_LOG_INFO(alignString(entry.first, 25) << " = " << entry.second);
    }
    stateAggregator_->get<FrameNumState>().value = frameNum_;
    if (&frameParameters_ != &params.parameters) frameParameters_ = params.parameters;
    takeImages(params.images);
    stateAggregator_->get<FrameParametersState>() = frameParameters_;
    stateAggregator_->get<ViResultState>();
    ViResultState::viResult.reset();
    DebugImages::reset();
    // What a detector leaves behind when it fails is no result.
    KZ_GUARD(detect();, ViResultState::viResult.reset(); catchAction());
    if (commandLineParser_.getBool("--flip")) flipResults();
    generateParameterKeyRing(ViResultState::viResult);
    if (++frameNum_ % FRAMES_PER_PROFILE == 0) saveProfile();
    KZ_LOG_INFO("------------------------- end of processing ------------------------------");
    return ViResultState::viResult;
}

void ViDetectorInterface::takeImages(const std::map<std::string, Image>& images) {
    // First of all, so that no derived data sees a graph of which half is new.
    for (const auto& entry : imageDatas_) entry.second->resetRecursive();
    if (imagesInitialized_)
        setImages(images);
    else
        initWithImages(parameters_, images);
    for (const auto& entry : imageDatas_) entry.second->updateRecursive();
    if (imagesInitialized_) return;
    imagesInitialized_ = true;
    parameters_.clear();
}

void ViDetectorInterface::setImages(const std::map<std::string, Image>& images) {
    for (auto it = images.begin(); it != images.end(); ++it) {
        KZ_ASSERT(imageDatas_.count(it->first) > 0, "no key '" << it->first << "' in imageDatas_");
        imageDatas_[it->first]->set(it->second);
    }
}

void ViDetectorInterface::flipResults() {
    KZ_ASSERT(!imageDatas_.empty(), "no image to flip the results in");
    const float width = static_cast<float>(imageDatas_.begin()->second->size().width);
    for (BaseRect<float>& rect : ViResultState::viResult.rects) {
        const float left = width - rect.right;
        rect = BaseRect<float>(truncated(left), truncated(rect.top), truncated(left + rect.width()),
                               truncated(rect.top + rect.height()));
    }
    for (BasePoint<float>& point : ViResultState::viResult.points) point.x = width - point.x - 1;
}

void ViDetectorInterface::generateParameterKeyRing(ViResult& result) {
    for (std::map<std::string, std::string>& entries : result.parameters)
        if (!entries.empty()) entries["key-ring"] = joinedKeys(entries, " ");
}

void ViDetectorInterface::saveProfile() {
    const std::string path = "/storage/emulated/0/tmp";
    if (access(path.c_str(), F_OK) == 0) return;
    size_t end = 0;
    do {
        end = path.find('/', end + 1);
        if (mkdir(path.substr(0, end).c_str(), 0777) != 0 && errno != EEXIST) {
            KZ_LOG_PLAIN("Failed mkdir " << path);
            KZ_LOG_INFO("Failed to create " << path);
            return;
        }
    } while (end != std::string::npos);
}

}  // namespace KZ
