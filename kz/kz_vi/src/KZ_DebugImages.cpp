#include "KZ_DebugImages.h"

#include <algorithm>
#include <cmath>

#include "KZ_ResampleImage.h"
#include "KZ_Utils.h"

namespace KZ {

std::vector<DebugImages::Record> DebugImages::debugImages_;

void DebugImages::add(const Image& image, const std::string& name, float zoom) {
    Record record;
    record.name = name;
    if (std::fabs(zoom - 1) <= 1e-6f * std::max(1.f, std::fabs(zoom)))
        record.image = image;
    else
        resizeImageNn(image, record.image, zoom);
    debugImages_.push_back(record);
}

void DebugImages::reset() {
    debugImages_.clear();
}

void DebugImages::save(const std::string& directory, const std::string& extension) {
    for (size_t i = 0; i < debugImages_.size(); ++i) {
        const Record& record = debugImages_[i];
        record.image.save(directory + "/" + toStr(static_cast<int>(i), 2, '0') + "_" + record.name +
                          extension);
    }
}

}  // namespace KZ
