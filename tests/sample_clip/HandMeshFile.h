#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <string>

#include "HandMesh.h"

/// The rigged hand that scripts/make_sample fetches; RHD_HAND_MESH names another place.
inline std::string handMeshPath() {
    const char* named = std::getenv("RHD_HAND_MESH");
    return named ? named
                 : RHD_SOURCE_DIR
               "/.cache/npm/node_modules/@webxr-input-profiles/assets/dist/profiles/generic-hand/"
               "right.glb";
}

/// A test over the mesh, which skips where it has not been fetched.
class WithHandMesh : public testing::Test {
protected:
    void SetUp() override {
        if (!std::filesystem::exists(handMeshPath())) {
            GTEST_SKIP() << "no hand mesh: run scripts/make_sample to fetch it";
        }
    }
    static const hand::HandMesh& mesh() {
        static const hand::HandMesh loaded = hand::loadHandMesh(handMeshPath());
        return loaded;
    }
};
