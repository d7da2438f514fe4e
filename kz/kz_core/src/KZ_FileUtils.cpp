#include "KZ_FileUtils.h"

#include <sys/stat.h>

#include <cerrno>

namespace KZ {

std::string getFileExtention(const std::string& path) {
    const size_t slash = path.find_last_of('/');
    const size_t dot = path.find_last_of('.');
    if (dot == std::string::npos || (slash != std::string::npos && dot < slash)) return "";
    return path.substr(dot);
}

bool createParentDirectories(const std::string& path) {
    // From 1 on: the empty text before a leading slash is no folder.
    for (size_t slash = 0; (slash = path.find('/', slash + 1)) != std::string::npos;) {
        if (mkdir(path.substr(0, slash).c_str(), 0777) != 0 && errno != EEXIST) return false;
    }
    return true;
}

}  // namespace KZ
