#pragma once

#include <string>

namespace KZ {

/// Which of the two mirror images of an object: a bit mask. `RIGHT` is the object as trained,
/// `LEFT` its mirror image.
struct Side {
    enum Value { NONE = 0, RIGHT = 1, LEFT = 2, BOTH = 3 };
};

/// "NONE", "RIGHT", "LEFT" or "BOTH".
const char* sideName(Side::Value side);

}  // namespace KZ
