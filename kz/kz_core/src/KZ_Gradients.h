#pragma once

#include "KZ_Image.h"

namespace KZ {

/// The gradient of a MONO image by 3 by 3 Sobel sums u (horizontal) and v (vertical), two bytes a
/// pixel: the direction atan2(u, v) in four bins of 45 degrees, opposite directions alike, and
/// (|u| + |v|) >> 3. The border is 0, as is an image of less than 3 by 3.
void computeGradients(const Image& mono, Image& gradient);

}  // namespace KZ
