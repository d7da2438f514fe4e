#include "DetectorResult.h"

void DetectorResult::reset() {
    found = false;
    name.clear();
    location.reset();
    reserved = 0;
    score = KZ::maxValue<float>();
}
