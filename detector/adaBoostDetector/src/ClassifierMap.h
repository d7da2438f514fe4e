#pragma once

// What generated sources of cascades include, and their short names.

#include <cstddef>
#include <map>
#include <string>
#include <vector>

#include "BaseDetector.h"
#include "CascadedClassifier.h"
#include "ClassifierRing.h"
#include "KZ_AngleRange.h"
#include "KZ_SharedPtr.h"
#include "KZ_Side.h"
#include "KZ_Utils.h"
#include "PatternDetector.h"

namespace KZ {

using schar = signed char;

}  // namespace KZ

/// Constant, so that the tables lie in read-only memory, which processes share.
typedef const signed char cData;
typedef std::map<std::string, std::string> mapStringString;
