#include <assimp/postprocess.h>
#include <assimp/scene.h>

#include <algorithm>
#include <assimp/Importer.hpp>
#include <map>
#include <stdexcept>
#include <tuple>

#include "HandMesh.h"

namespace hand {

namespace {

const char* const jointNames[FOREARM] = {
    "wrist",
    "thumb-metacarpal",
    "thumb-phalanx-proximal",
    "thumb-phalanx-distal",
    "thumb-tip",
    "index-finger-metacarpal",
    "index-finger-phalanx-proximal",
    "index-finger-phalanx-intermediate",
    "index-finger-phalanx-distal",
    "index-finger-tip",
    "middle-finger-metacarpal",
    "middle-finger-phalanx-proximal",
    "middle-finger-phalanx-intermediate",
    "middle-finger-phalanx-distal",
    "middle-finger-tip",
    "ring-finger-metacarpal",
    "ring-finger-phalanx-proximal",
    "ring-finger-phalanx-intermediate",
    "ring-finger-phalanx-distal",
    "ring-finger-tip",
    "pinky-finger-metacarpal",
    "pinky-finger-phalanx-proximal",
    "pinky-finger-phalanx-intermediate",
    "pinky-finger-phalanx-distal",
    "pinky-finger-tip",
};

Vector3 vectorOf(const aiVector3D& v) {
    return {v.x, v.y, v.z};
}

Transform transformOf(const aiMatrix4x4& m) {
    return {normalized({m.a1, m.b1, m.c1}),
            normalized({m.a2, m.b2, m.c2}),
            normalized({m.a3, m.b3, m.c3}),
            {m.a4, m.b4, m.c4}};
}

// The file doubles a vertex at every seam of its texture, which we do not use.
class Welder {
public:
    int indexOf(const Vector3& p, std::vector<Vector3>& positions) {
        const auto entry = known_.emplace(std::make_tuple(p.x, p.y, p.z), int(positions.size()));
        if (entry.second) positions.push_back(p);
        return entry.first->second;
    }

private:
    std::map<std::tuple<float, float, float>, int> known_;
};

std::vector<int> weldVertices(const aiMesh& source, HandMesh& mesh) {
    Welder welder;
    std::vector<int> target(source.mNumVertices);
    for (unsigned i = 0; i < source.mNumVertices; ++i) {
        target[i] = welder.indexOf(vectorOf(source.mVertices[i]), mesh.positions);
    }
    for (unsigned i = 0; i < source.mNumFaces; ++i) {
        const aiFace& face = source.mFaces[i];
        if (face.mNumIndices != 3) continue;
        const Triangle t{target[face.mIndices[0]], target[face.mIndices[1]],
                         target[face.mIndices[2]]};
        if (t.a != t.b && t.b != t.c && t.c != t.a) mesh.triangles.push_back(t);
    }
    return target;
}

void addInfluence(Influence& influence, int joint, float weight) {
    for (int i = 0; i < 4; ++i) {
        // A doubled vertex brings its weights twice.
        if (influence.weight[i] > 0 && influence.joint[i] == joint) return;
        if (influence.weight[i] > 0) continue;
        influence.joint[i] = joint;
        influence.weight[i] = weight;
        return;
    }
}

const aiBone& boneOf(const aiMesh& source, const char* name) {
    for (unsigned i = 0; i < source.mNumBones; ++i) {
        if (source.mBones[i]->mName == aiString(name)) return *source.mBones[i];
    }
    throw std::runtime_error("the joint \"" + std::string(name) + "\" is missing");
}

void readJoints(const aiMesh& source, const std::vector<int>& target, HandMesh& mesh) {
    mesh.influences.resize(mesh.positions.size());
    for (int joint = 0; joint < FOREARM; ++joint) {
        const aiBone& bone = boneOf(source, jointNames[joint]);
        mesh.joints[joint] = transformOf(aiMatrix4x4(bone.mOffsetMatrix).Inverse());
        for (unsigned i = 0; i < bone.mNumWeights; ++i) {
            addInfluence(mesh.influences[target[bone.mWeights[i].mVertexId]], joint,
                         bone.mWeights[i].mWeight);
        }
    }
    for (Influence& influence : mesh.influences) {
        float sum = 0;
        for (float weight : influence.weight) sum += weight;
        if (!(sum > 0)) throw std::runtime_error("a vertex hangs on no joint");
        for (float& weight : influence.weight) weight /= sum;
    }
}

// From the file's axes to ours: the wrist's own axes are -z to the fingers, +y out of the back.
void standUpright(HandMesh& mesh) {
    const Transform axes{{-1, 0, 0}, {0, 0, -1}, {0, -1, 0}, {}};
    const Transform upright = axes * inverse(mesh.joints[WRIST]);
    for (Vector3& p : mesh.positions) p = apply(upright, p);
    for (int joint = 0; joint < FOREARM; ++joint) mesh.joints[joint] = upright * mesh.joints[joint];
    mesh.joints[FOREARM] = mesh.joints[WRIST];
}

HandMesh importScene(const aiScene* scene, const char* error) {
    if (!scene) throw std::runtime_error(error);
    if (scene->mNumMeshes != 1) throw std::runtime_error("one mesh expected");
    HandMesh mesh;
    const std::vector<int> target = weldVertices(*scene->mMeshes[0], mesh);
    readJoints(*scene->mMeshes[0], target, mesh);
    standUpright(mesh);
    mesh.handVertices = mesh.skinVertices = int(mesh.positions.size());
    if (mesh.joints[jointOf(THUMB, 3)].origin.x <= 0) {
        throw std::runtime_error("a left hand; the right one is needed, the left is its mirror");
    }
    return mesh;
}

}  // namespace

HandMesh importHandMesh(const std::string& path) {
    Assimp::Importer importer;
    const aiScene* scene = importer.ReadFile(path, aiProcess_Triangulate);
    try {
        return importScene(scene, importer.GetErrorString());
    } catch (const std::runtime_error& error) {
        throw std::runtime_error("cannot read a hand from \"" + path + "\": " + error.what());
    }
}

}  // namespace hand
