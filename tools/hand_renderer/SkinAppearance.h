#pragma once

#include <vector>

#include "HandMesh.h"

namespace hand {

/// Colours in linear RGB, 0 to 1.
struct SkinTone {
    Vector3 back;
    Vector3 palm;
};

/// A tone from light (0) to dark (1). Palms stay light in every tone.
SkinTone skinTone(float darkness);

struct SleeveColours {
    Vector3 yarn{.05f, .08f, .16f};
    Vector3 stripe{.30f, .32f, .34f};
};

/// Per vertex of the mesh.
struct Surface {
    std::vector<Vector3> albedo;
    std::vector<float> gloss;  ///< strength of the highlight, 0 for cloth
    std::vector<float> depth;  ///< how far light spreads below the surface, 0 for cloth, 1 for skin
};

/// Paints mottled skin, lines of the palm and the fingers, nails, and the sleeve.
Surface paintHand(const HandMesh& mesh, const SkinTone& tone, const SleeveColours& sleeve);

}  // namespace hand
