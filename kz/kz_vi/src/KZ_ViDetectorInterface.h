#pragma once

#include <map>
#include <string>

#include "KZ_CommandLineParser.h"
#include "KZ_ImageData.h"
#include "KZ_SharedPtr.h"
#include "KZ_StateAggregator.h"
#include "KZ_ViInterface.h"

namespace KZ {

/// Frame cycle of an engine around a detector. A derived engine supplies `detect`, which reads
/// `imageDatas_` and `frameParameters_` and fills `ViResultState::viResult`.
class ViDetectorInterface : public ViInterface {
public:
    ViDetectorInterface();

    /// Fills the list of image names from the first frame's images. Names given before must be
    /// those of the images, else it is an assertion.
    ViEngineInfo& getEngineInfo() override;
    /// Appends to the start-up options. A value must not hold a double quote: it goes in as it is.
    void setParameter(const char* key, const char* value) override;
    int init() override;
    /// Runs one frame. An exception of `detect` is logged and costs this frame's results and, by
    /// `catchAction`, what was tracked. An image that the first frame did not have is an assertion.
    ViResult& processFrame(const ViFrameParameters& params) override;
    void reset() override;
    void release() override { reset(); }

    /// Start-up of a derived engine; `parameters` is one command line with all options.
    virtual void init(const std::string& parameters);
    /// The same at the first frame, when the images are known.
    virtual void initWithImages(const std::string& parameters,
                                const std::map<std::string, Image>& images);
    virtual void detect() = 0;
    /// What to do after `detect` has thrown.
    virtual void catchAction() { reset(); }
    /// Mirrors rectangles and points of the result left to right, within the width of the first
    /// image.
    virtual void flipResults();

    /// Gives the image nodes their new content, and makes those that are missing or that have
    /// another size or mode.
    void initImages(const std::map<std::string, Image>& images);
    /// Makes the folder for profiles, "/storage/emulated/0/tmp", unless it exists.
    static void saveProfile();
    /// Adds to each non-empty map of parameters the entry "key-ring": its keys, each with a blank
    /// behind it.
    static void generateParameterKeyRing(ViResult& result);

protected:
    std::string parameters_;  ///< start-up options as one command line
    bool imagesInitialized_ = false;
    std::map<std::string, SharedPtr<ImageData>> imageDatas_;  ///< by image name
    std::map<std::string, std::string> frameParameters_;
    SharedPtr<StateAggregator> stateAggregator_;
    int frameNum_ = 0;  ///< frames since `reset`
    int resetCount_ = 0;
    CommandLineParser commandLineParser_;

private:
    void takeImages(const std::map<std::string, Image>& images);
    void setImages(const std::map<std::string, Image>& images);
};

}  // namespace KZ
