#include "KZ_Side.h"

namespace KZ {

const char* sideName(Side::Value side) {
    static const char* const NAMES[] = {"NONE", "RIGHT", "LEFT", "BOTH"};
    return NAMES[side & Side::BOTH];
}

}  // namespace KZ
