#pragma once

#include <string>

namespace KZ {

/// From the last dot of the file's name on, such as ".ring"; empty without a dot.
std::string getFileExtention(const std::string& path);

/// Makes the folders that `path` lies in, as far as they are missing. False, with the platform's
/// error number left in `errno`, when one cannot be made.
bool createParentDirectories(const std::string& path);

}  // namespace KZ
