#include "VI_Interface.h"

#include <string>
#include <vector>

#include "KZ_Assert.h"
#include "KZ_DebugImages.h"
#include "KZ_Utils.h"
#include "KZ_ViInterfaceSingleton.h"
#include "VI_State.h"

std::mutex engineMutex;
KZ::ViFrameParameters viFrameParameters;
std::mutex viResultMutex;
KZ::ViResult viResult;
bool zoomTwice = false;

namespace {

using Lock = std::lock_guard<std::mutex>;

// Names that were handed out, by mode. Guarded by viResultMutex.
std::string possibleColorModes[KZ::COLOR_MODE_END];

const char* lastingName(KZ::ColorMode mode) {
    std::string& name = possibleColorModes[mode];
    if (name.empty()) name = KZ::toStr(mode);
    return name.c_str();
}

template <typename T>
const T* elementAt(const std::vector<T>& list, int i) {
    return static_cast<size_t>(i) < list.size() ? &list[i] : nullptr;
}

// What was set for a frame is gone when the frame is, also when it fails.
class FrameEnd {
public:
    FrameEnd() = default;
    FrameEnd(const FrameEnd&) = delete;
    FrameEnd& operator=(const FrameEnd&) = delete;
    ~FrameEnd() { viFrameParameters.reset(); }
};

KZ::ViResult& processFrame() {
    const Lock lock(engineMutex);
    const FrameEnd frameEnd;
    return ViInterfaceSingleton::get()->processFrame(viFrameParameters);
}

}  // namespace

const char* VI_GetVersion() {
    return ViInterfaceSingleton::get()->getEngineInfo().version.c_str();
}

void VI_SetParameter(const char* key, const char* value) {
    KZ_ASSERT_POINTER(key);
    const Lock lock(engineMutex);
    ViInterfaceSingleton::get()->setParameter(key, value);
}

void VI_Init() {
    const Lock lock(engineMutex);
    KZ::ViInterface& engine = *ViInterfaceSingleton::get().viInterface;
    engine.init();
    const auto& parameters = engine.getEngineInfo().parameters;
    const auto found = parameters.find("zoom-twice");
    if (found != parameters.end()) zoomTwice = KZ::fromStr<int>(found->second) != 0;
}

void VI_SetRoi(int x, int y, int width, int height) {
    const std::string text = KZ::joined("Rect(", x, ", ", y, ", ", width, ", ", height, ")");
    const Lock lock(engineMutex);
    viFrameParameters.parameters["rect"] = text;
}

void VI_SetFrameParameter(const char* key, const char* value) {
    KZ_ASSERT_POINTER(key);
    KZ_ASSERT_POINTER(value);
    const Lock lock(engineMutex);
    viFrameParameters.parameters.insert({key, value});
}

void VI_ProcessFrame() {
    const KZ::ViResult& result = processFrame();
    const Lock lock(viResultMutex);
    viResult = result;
}

void VI_Reset() {
    const Lock lock(engineMutex);
    ViInterfaceSingleton::get()->reset();
}

void VI_Release() {
    const Lock lock(engineMutex);
    ViInterfaceSingleton::get()->release();
}

int VI_GetGesture(const char** gesture, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT_POINTER(gesture);
    const Lock lock(viResultMutex);
    const std::string* name = elementAt(viResult.gestures, i);
    *gesture = name ? name->c_str() : "";
    return name != nullptr;
}

int VI_GetRect(float* x, float* y, float* width, float* height, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT(x && y && width && height, "null output");
    const Lock lock(viResultMutex);
    const KZ::RectF* found = elementAt(viResult.rects, i);
    const KZ::RectF rect = found ? *found : KZ::RectF();
    *x = rect.left;
    *y = rect.top;
    *width = rect.right;
    *height = rect.bottom;
    return found != nullptr;
}

int VI_GetPoint(float* x, float* y, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT(x && y, "null output");
    const Lock lock(viResultMutex);
    const KZ::PointF* found = elementAt(viResult.points, i);
    const KZ::PointF point = found ? *found : KZ::PointF();
    *x = point.x;
    *y = point.y;
    return found != nullptr;
}

int VI_GetPoint3d(float* x, float* y, float* z, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT(x && y && z, "null output");
    const Lock lock(viResultMutex);
    const KZ::Point3d* found = elementAt(viResult.points3d, i);
    const KZ::Point3d point = found ? *found : KZ::Point3d();
    *x = point.x;
    *y = point.y;
    *z = point.z;
    return found != nullptr;
}

int VI_GetFloat(float* value, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT_POINTER(value);
    const Lock lock(viResultMutex);
    const float* found = elementAt(viResult.floats, i);
    *value = found ? *found : 0;
    return found != nullptr;
}

int VI_GetParameter(const char* key, const char** value, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT_POINTER(key);
    KZ_ASSERT_POINTER(value);
    *value = nullptr;
    const Lock lock(viResultMutex);
    const auto* entries = elementAt(viResult.parameters, i);
    if (!entries) return 0;
    const auto entry = entries->find(key);
    if (entry == entries->end()) return 0;
    *value = entry->second.c_str();
    return 1;
}

int VI_GetFrame(const void** data, int* width, int* height, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT(data && width && height, "null output");
    const Lock lock(viResultMutex);
    const KZ::Image* image = elementAt(viResult.images, i);
    *data = image ? image->data() : nullptr;
    *width = image ? image->width() : 0;
    *height = image ? image->height() : 0;
    return image != nullptr;
}

int VI_GetFrameColorMode_(const char** colorMode, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT_POINTER(colorMode);
    const Lock lock(viResultMutex);
    const KZ::Image* image = elementAt(viResult.images, i);
    *colorMode = image ? lastingName(image->colorMode()) : nullptr;
    return image != nullptr;
}

int VI_GetDebugImage_(const char** name, const void** data, const char** colorMode, int* width,
                      int* height, int* stripLength, int i) {
    KZ_ASSERT_GE(i, 0);
    KZ_ASSERT(name && data && colorMode && width && height && stripLength, "null output");
    const Lock lock(viResultMutex);
    const KZ::DebugImages::Record* record = elementAt(KZ::DebugImages::debugImages_, i);
    *name = record ? record->name.c_str() : nullptr;
    *data = record ? record->image.data() : nullptr;
    *colorMode = record ? lastingName(record->image.colorMode()) : nullptr;
    *width = record ? record->image.width() : 0;
    *height = record ? record->image.height() : 0;
    *stripLength = record ? record->image.stripLength() : 0;
    return record != nullptr;
}

const ViEngineInfo* VI_GetEngineInfo_() {
    const Lock lock(engineMutex);
    return &ViInterfaceSingleton::get()->getEngineInfo();
}

int VI_Request_(const char* what, const void* data) {
    KZ_ASSERT_POINTER(what);
    const Lock lock(engineMutex);
    return ViInterfaceSingleton::get()->request(what, data);
}
