#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <string>

#include "KZ_ViInterfaceSingleton.h"
#include "VI_Interface.h"
#include "VI_State.h"

namespace testing_support {

/// An engine that keeps what it is given and does per frame what a test says.
class TestEngine : public KZ::ViInterface {
public:
    void setParameter(const char*, const char*) override {}
    int init() override { return 0; }
    KZ::ViResult& processFrame(const KZ::ViFrameParameters& params) override {
        frame.parameters = params.parameters;
        frame.images.clear();
        for (const auto& entry : params.images)
            if (entry.second.isCreated()) frame.images[entry.first].createRef(entry.second);
        result.reset();
        onFrame(result);
        return result;
    }

    KZ::ViFrameParameters frame;
    KZ::ViResult result;
    std::function<void(KZ::ViResult&)> onFrame = [](KZ::ViResult&) {};
};

/// Puts a TestEngine behind the VI_* functions for the length of a test.
class ViTest : public testing::Test {
protected:
    ViTest() : realEngine_(ViInterfaceSingleton::get().viInterface) {
        ViInterfaceSingleton::get().viInterface = KZ::SharedPtr<KZ::ViInterface>(engine);
        info().imageNames = {"bgr"};
        zoomTwice = false;
        viFrameParameters.reset();
    }
    ~ViTest() override {
        ViInterfaceSingleton::get().viInterface = realEngine_;
        zoomTwice = false;
        viFrameParameters.reset();
        viResult.reset();
    }

    ViEngineInfo& info() { return engine->getEngineInfo(); }
    static void expectNoLockHeld() {
        for (std::mutex* mutex : {&engineMutex, &viResultMutex}) {
            const bool isFree = mutex->try_lock();
            EXPECT_TRUE(isFree);
            if (isFree) mutex->unlock();
        }
    }

    TestEngine* const engine = new TestEngine;

private:
    const KZ::SharedPtr<KZ::ViInterface> realEngine_;
};

}  // namespace testing_support
