#pragma once

namespace KZ {

using uint = unsigned int;
using schar = signed char;

}  // namespace KZ
