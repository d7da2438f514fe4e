#pragma once

#include <map>
#include <string>
#include <vector>

#include "KZ_ColorMode.h"
#include "KZ_ViFrameParameters.h"
#include "KZ_ViResult.h"

/// What an engine accepts.
struct ViEngineInfo {
    /// Names of the input images, in the order of the index of VI_SetFrame. Each begins with the
    /// word of its colour mode, see KZ::ViInterface::parseImageName.
    std::vector<std::string> imageNames;
    /// Properties as text: "zoom-twice" (0 or 1), "image-format" (17, 35 or 41), "swap-red-blue"
    /// (0 or 1).
    std::map<std::string, std::string> parameters;
    std::string version;
};

namespace KZ {

using ::ViEngineInfo;

/// An engine behind the VI_* functions. The caller serialises all calls but `getEngineInfo`, whose
/// answer is to stay as it is once `init` has returned.
class ViInterface {
public:
    virtual ~ViInterface() = default;
    ViInterface(const ViInterface&) = delete;
    ViInterface& operator=(const ViInterface&) = delete;

    virtual ViEngineInfo& getEngineInfo() { return viEngineInfo_; }
    /// Collects one option for the next `init`. `value` may be null: an option without a value.
    virtual void setParameter(const char* key, const char* value) = 0;
    /// Starts, or starts again, with the options collected so far.
    virtual int init() = 0;
    /// For engines that answer special requests; 0 when there is no answer.
    virtual int request(const std::string& what, const void* data);
    /// Processes one frame. The result belongs to the engine and holds until the next frame.
    virtual ViResult& processFrame(const ViFrameParameters& params) = 0;
    /// Forgets what was tracked, keeps the configuration.
    virtual void reset() {}
    virtual void release() {}

    /// Colour mode of the word that `name` begins with, such as "bgr" in "bgr-left". A name without
    /// such a word is an assertion.
    static ColorMode parseImageName(const std::string& name);

protected:
    ViInterface() = default;

    ViEngineInfo viEngineInfo_;
};

}  // namespace KZ

/// Makes the engine of this library; the caller owns it. The library that has another engine
/// defines this function differently.
KZ::ViInterface* getEngine();
